// How many of the bytes written to a serial line it can't have carried yet, by its speed alone. The
// operating system says of some lines that they are empty while bytes are still on their way
// (adapters and pseudo terminals do).
#pragma once

#include <algorithm>
#include <chrono>

namespace platform {

class LineBacklog {
 public:
  using Clock = std::chrono::steady_clock;

  // Nothing is on its way yet; the line carries a byte in `byte_time`.
  explicit LineBacklog(Clock::duration byte_time = {}) : byte_time_(byte_time) {}
  Clock::duration ByteTime() const { return byte_time_; }

  void Write(int bytes, Clock::time_point now) {
    free_ = std::max(free_, now) + bytes * byte_time_;
  }

  // Bytes that have not left yet, the one being sent included.
  int Bytes(Clock::time_point now) const {
    if (free_ <= now) return 0;
    return static_cast<int>((free_ - now + byte_time_ - Clock::duration(1)) / byte_time_);
  }

 private:
  Clock::duration byte_time_;
  Clock::time_point free_{};  // when the line has carried the last byte
};

}  // namespace platform
