#include "flash/read_back.h"

#include <optional>

#include "core/board_codec.h"
#include "link/read_operation.h"

namespace pelmora {
namespace {

constexpr char kErrorText[] = "Reading Error!";

struct ReadOutcome {
  const char* text;
  bool replaced = false;  // the sequences are the board's
};

ReadOutcome ReadFlash(BoardLink& link, const DebugPanel& debug_panel, EditedSequence& edited) {
  ReadOperation operation(
      link, [&edited](const FlashHeader& header) { return edited.TakeHeader(header); });
  operation.BeginTransfer(0);
  operation.Send(kReadCommand);
  // With this word showing, the bytes that had arrived have been kept as the step data.
  if (operation.WaitForAck() != BoardOperation::Answer::kReceived &&
      debug_panel.Echo() != kOverflowWord) {
    return {kErrorText};
  }
  const ReadReply& reply = link.Reply();
  if (reply.RxCount < kStepBytes) return {"Nothing to Read!"};
  if (!edited.TakeReply(reply.Header, link.FlashImage())) return {kErrorText};
  return {"Data Flash Read!", true};
}

}  // namespace

void CommandRead_Click(BoardLink& link, DebugPanel& debug_panel, EditedSequence& edited) {
  const History::Change change = edited.BeginChange("Read Seq.");
  debug_panel.SetEcho({});
  std::optional<SequencesEmptiedByRead> emptied(link);
  edited.ClearAll();
  if (!link.Port().RequireConnection()) return;
  const ReadOutcome outcome = ReadFlash(link, debug_panel, edited);
  if (outcome.replaced) emptied.reset();
  link.Say(outcome.text);
}

}  // namespace pelmora
