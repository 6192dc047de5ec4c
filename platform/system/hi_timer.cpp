#include "platform/system/hi_timer.h"

#include <algorithm>

namespace platform {

void SystemHiTimer::SetInterval(int milliseconds) {
  interval_ = std::chrono::milliseconds(std::max(1, milliseconds));
}

void SystemHiTimer::SetEnabled(bool enabled) {
  enabled_ = enabled;
  alarm_.Stop();
  if (enabled) TickAt(Clock::now() + interval_);
}

void SystemHiTimer::Wake() {
  emit Timer();
  if (!enabled_ || alarm_.Active()) return;
  const auto now = Clock::now();
  const auto next = due_ + interval_;
  TickAt(next < now ? now + interval_ : next);
}

void SystemHiTimer::TickAt(Clock::time_point due) {
  due_ = due;
  alarm_.SetFor(due);
}

}  // namespace platform
