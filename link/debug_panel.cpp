#include "link/debug_panel.h"

namespace pelmora {

DebugPanel::DebugPanel(platform::MSComm& comm, platform::TextField& echo)
    : comm_(comm), echo_(echo) {}

void DebugPanel::CommandInBuff_Click() {
  echo_.setText(QString::number(comm_.PortOpen() ? comm_.InBufferCount() : 0));
}

void DebugPanel::Echo_Click() {
  echo_.clear();
  comm_.ClearInBuffer();
}

}  // namespace pelmora
