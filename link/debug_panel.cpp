#include "link/debug_panel.h"

namespace pelmora {

void DebugPanel::SetEcho(const QString& text) {
  echo_ = text;
  emit EchoChanged(echo_);
}

void DebugPanel::CommandInBuff_Click() {
  comm_.Fetch();
  SetEcho(QString::number(comm_.PortOpen() ? comm_.InBufferCount() : 0));
}

void DebugPanel::Echo_Click() {
  SetEcho({});
  comm_.ClearInBuffer();
}

}  // namespace pelmora
