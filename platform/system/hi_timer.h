// The periodic timer: an interval in milliseconds, an enabled state, a tick on the user-interface
// thread.
#pragma once

#include <QObject>
#include <chrono>

#include "platform/system/alarm.h"

namespace platform {

class HiTimer : public QObject {
  Q_OBJECT
 public:
  // Milliseconds; below 1 counts as 1. Set inside a tick it governs the wait until the next one;
  // set while enabled outside a tick it governs the wait after the running one.
  virtual void SetInterval(int milliseconds) = 0;

  // Enabling starts a full wait from now, also when the timer is enabled already. A disabled timer
  // delivers no further tick.
  virtual void SetEnabled(bool enabled) = 0;
  virtual bool Enabled() const = 0;

 signals:
  // The tick.
  void Timer();
};

// The timer that keeps real time. It does not drift: a tick is due at the previous one's due time
// plus the interval, so that one tick's lateness is not added to the next. When that time
// has passed as well, after a stall, it goes on a full interval from now: missed ticks are not
// made up for. A tick that waits (in a message box, say) is not entered again meanwhile, unless it
// enables the timer anew.
class SystemHiTimer : public HiTimer {
 public:
  SystemHiTimer() { connect(&alarm_, &Alarm::Rang, this, &SystemHiTimer::Wake); }

  void SetInterval(int milliseconds) override;
  void SetEnabled(bool enabled) override;
  bool Enabled() const override { return enabled_; }

 private:
  using Clock = Alarm::Clock;

  void Wake();
  void TickAt(Clock::time_point due);

  Alarm alarm_;
  Clock::time_point due_;
  std::chrono::milliseconds interval_{20};
  bool enabled_ = false;
};

}  // namespace platform
