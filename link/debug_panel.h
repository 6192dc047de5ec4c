// The "Serial Comm Debug" panel: the text of `Echo`, and a look at the receive buffer.
#pragma once

#include <QObject>
#include <QString>

#include "platform/serial/ms_comm.h"

namespace pelmora {

// Status words in `Echo`; an aborted read looks for the second.
inline constexpr char kErrorWord[] = "Error!";
inline constexpr char kOverflowWord[] = "Overflow!";

class DebugPanel : public QObject {
  Q_OBJECT
 public:
  explicit DebugPanel(platform::MSComm& comm) : comm_(comm) {}

  // What `Echo` shows: a received byte, a status word, a count, or nothing. It is more than a
  // display: an aborted read looks at it.
  const QString& Echo() const { return echo_; }
  void SetEcho(const QString& text);

  // "InBuff": shows in `Echo` how many received bytes are waiting; "0" when no port is open.
  void CommandInBuff_Click();

  // A click into `Echo` empties it and throws the waiting bytes away. During a read this changes
  // the read's course: the bytes will not come again.
  void Echo_Click();

 signals:
  void EchoChanged(const QString& text);

 private:
  platform::MSComm& comm_;
  QString echo_;
};

}  // namespace pelmora
