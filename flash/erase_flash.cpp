#include "flash/erase_flash.h"

namespace pelmora {

bool EraseFlash::Erase() {
  if (!parts_.serial_port.RequireConnection()) return false;
  Declaration& data = parts_.data;
  data.EraseMode = true;
  parts_.board.Send(Command::kErase);
  data.AbortRequest = false;
  data.AckReceived = false;
  BoardWait wait = parts_.BeginWait();
  do {
    if (data.AckReceived) {
      data.AckReceived = false;
      data.EraseMode = false;
      parts_.Say(QStringLiteral("Data Flash Erased"));
      return true;
    }
  } while (wait.Turn());
  data.EraseMode = false;
  data.AbortRequest = false;
  parts_.ProgressBarFlash.hide();
  parts_.Say(kAbortedText);
  return false;
}

}  // namespace pelmora
