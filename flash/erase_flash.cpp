#include "flash/erase_flash.h"

namespace pelmora {

BoardOperation::Answer EraseFlash::Erase() {
  using Answer = BoardOperation::Answer;
  if (!link_.Port().RequireConnection()) return Answer::kAborted;
  const Answer answer = [this] {
    BoardOperation operation(link_, Mode::kErase);
    operation.Send(kEraseCommand);
    return operation.WaitForAck();
  }();
  if (answer == Answer::kReceived) link_.Say(QStringLiteral("Data Flash Erased"));
  if (answer == Answer::kAborted) link_.Say(kAbortedText);
  return answer;
}

}  // namespace pelmora
