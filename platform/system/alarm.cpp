#include "platform/system/alarm.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <QSocketNotifier>

namespace platform {

Alarm::Alarm() : descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
  if (descriptor_ < 0) qFatal("no timer: %s", qPrintable(qt_error_string()));
  auto* notifier = new QSocketNotifier(descriptor_, QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    quint64 expirations = 0;
    // Nothing is read when the alarm was stopped or set anew after it had expired.
    if (read(descriptor_, &expirations, sizeof expirations) < 0) return;
    active_ = false;
    emit Rang();
  });
}

Alarm::~Alarm() {
  close(descriptor_);
}

void Alarm::SetFor(Clock::time_point time) {
  active_ = true;
  // The steady clock is CLOCK_MONOTONIC.
  const std::chrono::nanoseconds since_start = time.time_since_epoch();
  const auto seconds = std::chrono::floor<std::chrono::seconds>(since_start);
  itimerspec setting{};
  setting.it_value.tv_sec = seconds.count();
  setting.it_value.tv_nsec = (since_start - seconds).count();
  timerfd_settime(descriptor_, TFD_TIMER_ABSTIME, &setting, nullptr);
}

void Alarm::Stop() {
  active_ = false;
  constexpr itimerspec kDisarmed{};
  timerfd_settime(descriptor_, 0, &kDisarmed, nullptr);
}

}  // namespace platform
