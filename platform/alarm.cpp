#include "platform/alarm.h"

#include <QSocketNotifier>
#include <algorithm>

#ifdef Q_OS_LINUX
#include <sys/timerfd.h>
#include <unistd.h>
#endif

namespace platform {

Alarm::Alarm(QObject* parent) : QObject(parent) {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, &Alarm::Ring);
#ifdef Q_OS_LINUX
  descriptor_ = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
  if (descriptor_ < 0) return;
  auto* notifier = new QSocketNotifier(descriptor_, QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    quint64 expirations = 0;
    if (read(descriptor_, &expirations, sizeof expirations) == sizeof expirations) Ring();
  });
#endif
}

Alarm::~Alarm() {
#ifdef Q_OS_LINUX
  if (descriptor_ >= 0) close(descriptor_);
#endif
}

void Alarm::SetFor(Clock::time_point time) {
  active_ = true;
#ifdef Q_OS_LINUX
  if (descriptor_ >= 0) {
    // The steady clock is the one that the timer was made for. Zero would disarm it.
    const auto since_start = std::max(time.time_since_epoch(), Clock::duration(1));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(since_start);
    itimerspec setting{};
    setting.it_value.tv_sec = static_cast<time_t>(seconds.count());
    setting.it_value.tv_nsec =
        static_cast<long>(std::chrono::nanoseconds(since_start - seconds).count());
    timerfd_settime(descriptor_, TFD_TIMER_ABSTIME, &setting, nullptr);
    return;
  }
#endif
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now());
  timer_.start(std::max(left, std::chrono::milliseconds(0)));
}

void Alarm::Stop() {
  active_ = false;
#ifdef Q_OS_LINUX
  constexpr itimerspec kDisarmed{};
  if (descriptor_ >= 0) timerfd_settime(descriptor_, 0, &kDisarmed, nullptr);
#endif
  timer_.stop();
}

void Alarm::Ring() {
  // One that was stopped after it had expired does not ring.
  if (!active_) return;
  active_ = false;
  emit Rang();
}

}  // namespace platform
