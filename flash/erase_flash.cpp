#include "flash/erase_flash.h"

namespace pelmora {

BoardOperation::Answer EraseFlash(BoardLink& link) {
  using Answer = BoardOperation::Answer;
  if (!link.Port().RequireConnection()) return Answer::kAborted;
  const Answer answer = [&link] {
    BoardOperation operation(link, Mode::kErase);
    operation.Send(kEraseCommand);
    return operation.WaitForAck();
  }();
  if (answer == Answer::kReceived) link.Say(QStringLiteral("Data Flash Erased"));
  if (answer == Answer::kAborted) link.Say(kAbortedText);
  return answer;
}

}  // namespace pelmora
