// How many of the bytes written to a serial line it can't have carried yet, by its speed alone. The
// operating system says of some lines that they are empty while bytes are still on their way
// (adapters and pseudo terminals do).
#pragma once

#include <chrono>

namespace platform {

class LineBacklog {
 public:
  using Clock = std::chrono::steady_clock;

  // The line carries a byte in `byte_time` from now on, and nothing is on its way.
  void Start(Clock::duration byte_time);

  void Write(int bytes, Clock::time_point now);

  // Bytes that have not left yet, the one being sent included.
  int Bytes(Clock::time_point now) const;

 private:
  Clock::duration byte_time_{};
  Clock::time_point free_{};  // when the line has carried the last byte
};

}  // namespace platform
