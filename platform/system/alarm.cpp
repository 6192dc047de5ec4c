#include "platform/system/alarm.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <algorithm>

namespace platform {

Alarm::Alarm(QObject* parent)
    : QObject(parent), descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
  if (descriptor_ < 0) qFatal("no timer: %s", qPrintable(qt_error_string()));
  auto* notifier = new QSocketNotifier(descriptor_, QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    quint64 expirations = 0;
    if (read(descriptor_, &expirations, sizeof expirations) == sizeof expirations) Ring();
  });
}

Alarm::~Alarm() {
  close(descriptor_);
}

void Alarm::SetFor(Clock::time_point time) {
  active_ = true;
  // The steady clock is the one that the timer was made for. Zero would disarm it.
  const auto since_start = std::max(time.time_since_epoch(), Clock::duration(1));
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(since_start);
  itimerspec setting{};
  setting.it_value.tv_sec = static_cast<time_t>(seconds.count());
  setting.it_value.tv_nsec =
      static_cast<long>(std::chrono::nanoseconds(since_start - seconds).count());
  timerfd_settime(descriptor_, TFD_TIMER_ABSTIME, &setting, nullptr);
}

void Alarm::Stop() {
  active_ = false;
  constexpr itimerspec kDisarmed{};
  timerfd_settime(descriptor_, 0, &kDisarmed, nullptr);
}

void Alarm::Ring() {
  // One that was stopped after it had expired does not ring.
  if (!active_) return;
  active_ = false;
  emit Rang();
}

}  // namespace platform
