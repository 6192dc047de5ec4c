// When bytes that follow each other on a serial line arrive.
#pragma once

#include <algorithm>
#include <chrono>

namespace simboard {

// How fast the line is, in both directions independently.
enum class Pace {
  kUnpaced,  // as fast as the pseudo terminal takes the bytes
  k9600,     // 9600 baud, no parity, 8 data bits, 2 stop bits: 11 bits, 1.146 ms, for each byte
};

// One direction of the line. The deadlines of bytes that follow each other without a gap add up, so
// a thread that wakes late for one of them does not slow the line down.
class LineClock {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  explicit LineClock(Pace pace)
      : byte_time_(pace == Pace::k9600 ? kByteTime : TimePoint::duration{}) {}

  // When the next byte arrives, given when its sender has it ready.
  TimePoint Arrival(TimePoint ready) const { return std::max(free_, ready) + byte_time_; }
  // The next byte has passed.
  void Pass(TimePoint ready) { free_ = Arrival(ready); }
  // The line was held up until now: the byte that waited for it arrives at once, and those after it
  // at the line's pace.
  void Resume(TimePoint now) { free_ = std::max(free_, now - byte_time_); }

 private:
  // 11 bits at 9600 baud, rounded up.
  static constexpr std::chrono::nanoseconds kByteTime{1'145'834};

  std::chrono::nanoseconds byte_time_;
  TimePoint free_{};  // when the line has carried the last byte
};

}  // namespace simboard
