// Wakes the user-interface thread once, at a point in time, as exactly as the system can: the
// toolkit's own timers count in whole milliseconds and come up to two of them late.
#pragma once

#include <QObject>
#include <chrono>

namespace platform {

class Alarm : public QObject {
  Q_OBJECT
 public:
  using Clock = std::chrono::steady_clock;

  Alarm();
  ~Alarm() override;

  // Rings at `time`, or as soon as events are processed when that is past. A time set before is
  // forgotten.
  void SetFor(Clock::time_point time);
  void Stop();
  // Whether the alarm is set and has not rung yet.
  bool Active() const { return active_; }

 signals:
  void Rang();

 private:
  const int descriptor_;  // of the system's timer
  bool active_ = false;
};

}  // namespace platform
