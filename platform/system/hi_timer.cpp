#include "platform/system/hi_timer.h"

#include <QPointer>
#include <algorithm>

namespace platform {
namespace {

using Milliseconds = std::chrono::milliseconds;

}  // namespace

SystemHiTimer::SystemHiTimer(QObject* parent) : HiTimer(parent) {
  connect(&alarm_, &Alarm::Rang, this, &SystemHiTimer::Wake);
}

void SystemHiTimer::SetInterval(int milliseconds) {
  interval_ = std::max(1, milliseconds);
}

void SystemHiTimer::SetEnabled(bool enabled) {
  enabled_ = enabled;
  if (enabled) {
    ArmFor(Clock::now() + Milliseconds(interval_));
  } else {
    alarm_.Stop();
  }
}

void SystemHiTimer::Wake() {
  const Clock::time_point tick_due = due_;

  const QPointer<SystemHiTimer> self(this);
  emit Timer();
  if (!self || !enabled_ || alarm_.Active()) return;

  const auto now = Clock::now();
  const auto interval = Milliseconds(interval_);
  const auto next = tick_due + interval;
  ArmFor(next < now ? now + interval : next);
}

void SystemHiTimer::ArmFor(Clock::time_point due) {
  due_ = due;
  alarm_.SetFor(due);
}

}  // namespace platform
