// The main loop: handlers that wait inside the user-interface thread process pending events here,
// and learn from it that the program is ending.
#pragma once

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QObject>
#include <utility>

namespace platform {

class MainLoop : public QObject {
  Q_OBJECT
 public:
  enum class Idle {
    kSleep,   // nothing pending: sleep until there is an event, and process it
    kReturn,  // nothing pending: return at once
  };

  // Processes pending events; any other handler of the window may run inside the call. Waiting
  // loops call it once per turn, with `kSleep` so that the wait costs no processor time. Once the
  // program is ending it returns at once and processes nothing.
  void DoEvents(Idle idle = Idle::kSleep) {
    if (ending_) return;
    QCoreApplication::processEvents(idle == Idle::kSleep ? QEventLoop::WaitForMoreEvents
                                                         : QEventLoop::AllEvents);
  }

  // True from the first call of `End`. A waiting loop that finds it set ends as an aborted one.
  bool Ending() const { return ending_; }

  // The program is ending: emits `Ended` (open message boxes and dialogs close on it) and wakes
  // every wait. A second call does nothing.
  void End() {
    if (std::exchange(ending_, true)) return;
    emit Ended();
    QAbstractEventDispatcher::instance()->wakeUp();
  }

 signals:
  void Ended();

 private:
  bool ending_ = false;
};

}  // namespace platform
