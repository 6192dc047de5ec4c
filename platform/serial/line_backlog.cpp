#include "platform/serial/line_backlog.h"

#include <algorithm>

namespace platform {

void LineBacklog::Start(Clock::duration byte_time) {
  byte_time_ = byte_time;
  free_ = {};
}

void LineBacklog::Write(int bytes, Clock::time_point now) {
  free_ = std::max(free_, now) + bytes * byte_time_;
}

int LineBacklog::Bytes(Clock::time_point now) const {
  if (free_ <= now) return 0;
  return static_cast<int>((free_ - now + byte_time_ - Clock::duration(1)) / byte_time_);
}

}  // namespace platform
