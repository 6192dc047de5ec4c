#include "flash/read_back.h"

#include "core/board_codec.h"

namespace pelmora {

ReadBack::ReadBack(BoardLink& link, EditedSequence& edited) : link_(link), edited_(edited) {
  link_.HeaderTaken = [this] {
    return edited_.TakeHeader(link_.Reply().Header, link_.Reply().RxCount);
  };
}

void ReadBack::CommandRead_Click() {
  const History::Change change(edited_.Changes(), "Read Seq.");
  link_.Echo().clear();
  edited_.ClearAll();
  if (!link_.Port().RequireConnection()) return;
  link_.Say(Transfer());
}

// What there is to say at the end.
QString ReadBack::Transfer() {
  BoardOperation operation(link_, Mode::kRead);
  operation.BeginTransfer(0);
  operation.Send(ReadCommand());
  // With this word showing, the receive handler has kept what had arrived as the step data.
  if (operation.WaitForAck() != BoardOperation::Answer::kReceived &&
      link_.Echo().text() != kOverflowWord) {
    return QStringLiteral("Reading Error!");
  }
  const ReadReply& reply = link_.Reply();
  if (reply.RxCount < kStepBytes) return QStringLiteral("Nothing to Read!");
  if (!edited_.TakeReply(reply.Header, reply.RxCount, link_.FlashImage())) {
    return QStringLiteral("Reading Error!");
  }
  return QStringLiteral("Data Flash Read!");
}

}  // namespace pelmora
