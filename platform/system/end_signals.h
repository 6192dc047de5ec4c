// The system's requests to end: SIGTERM, SIGINT (Ctrl+C in the terminal) and SIGHUP (the terminal
// or the session is gone). Unhandled they would end the program at once, without a last word to the
// board.
#pragma once

#include <QObject>

namespace platform {

class EndSignals : public QObject {
  Q_OBJECT
 public:
  // To be made at the very start of `main`, before anything that starts a thread. From then on the
  // signals wait.
  EndSignals();
  ~EndSignals() override;

  // To be called once the application is there: `Requested` is emitted from its event loops from
  // now on, also for a signal that came before.
  void Watch();

 signals:
  void Requested();

 private:
  int descriptor_ = -1;
};

}  // namespace platform
