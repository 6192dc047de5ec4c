#include "flash/read_back.h"

#include <optional>

#include "core/board_codec.h"
#include "link/read_operation.h"

namespace pelmora {
namespace {

constexpr char kErrorText[] = "Reading Error!";

}  // namespace

void ReadBack::CommandRead_Click() {
  const History::Change change = edited_.BeginChange("Read Seq.");
  debug_panel_.SetEcho({});
  std::optional<SequencesEmptiedByRead> emptied(link_);
  edited_.ClearAll();
  if (!link_.Port().RequireConnection()) return;
  const Outcome outcome = Transfer();
  if (outcome.replaced) emptied.reset();
  link_.Say(outcome.text);
}

ReadBack::Outcome ReadBack::Transfer() {
  ReadOperation operation(link_,
                          [this](const FlashHeader& header) { return edited_.TakeHeader(header); });
  operation.BeginTransfer(0);
  operation.Send(kReadCommand);
  // With this word showing, the bytes that had arrived have been kept as the step data.
  if (operation.WaitForAck() != BoardOperation::Answer::kReceived &&
      debug_panel_.Echo() != kOverflowWord) {
    return {kErrorText};
  }
  const ReadReply& reply = link_.Reply();
  if (reply.RxCount < kStepBytes) return {"Nothing to Read!"};
  if (!edited_.TakeReply(reply.Header, link_.FlashImage())) return {kErrorText};
  return {"Data Flash Read!", true};
}

}  // namespace pelmora
