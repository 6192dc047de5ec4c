// The "Serial Comm Debug" panel: a look at the receive buffer.
#pragma once

#include "platform/controls/text_field.h"
#include "platform/serial/ms_comm.h"

namespace pelmora {

class DebugPanel {
 public:
  DebugPanel(platform::MSComm& comm, platform::TextField& echo);

  // "InBuff": shows in `Echo` how many received bytes are waiting; "0" when no port is open.
  void CommandInBuff_Click();

  // A click into `Echo` empties it and throws the waiting bytes away. During a read this changes
  // the read's course: the bytes will not come again.
  void Echo_Click();

 private:
  platform::MSComm& comm_;
  platform::TextField& echo_;
};

}  // namespace pelmora
