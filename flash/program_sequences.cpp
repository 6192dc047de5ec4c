#include "flash/program_sequences.h"

#include <QString>
#include <algorithm>
#include <optional>

#include "core/board_codec.h"
#include "flash/erase_flash.h"

namespace pelmora {
namespace {

using Answer = BoardOperation::Answer;

// A slider or a playback sends its bytes whenever it moves, and the board takes what comes for step
// data.
constexpr char kDisturbedText[] =
    "Something else was sent to the board while its flash was written: a slider moved, or a "
    "playback or a switch was used. The flash is not what the sequences are. Program again.";

// The bar moves about a hundred times in a transfer of `total` bytes: once in so many bytes.
int ProgressInterval(int total) {
  return std::max(1, (total - 1) / 100 + 1);
}

struct ProgramOutcome {
  QString text;  // empty when everything has been said
  bool disturbed = false;
};

bool RefuseOversize(const BoardLink& link, const EditedSequence& edited) {
  if (HeaderFits(edited.Data())) return false;
  link.Say(CapacityText());
  return true;
}

// When the transfer was aborted, the index of the last byte written. No acknowledgement is awaited
// for a last block that is shorter than the others.
std::optional<int> SendStepData(BoardOperation& operation, int total, const BoardLink& link,
                                const EditedSequence& edited) {
  for (int i = 0; i < total; ++i) {
    operation.Send(std::array{StagedByte(link.FlashImage(), i)});
    if (i % ProgressInterval(edited.Data().TotalBytes) == 0) operation.MoveBar(i);
    if ((i + 1) % kBlockBytes == 0 && operation.WaitForAck() != Answer::kReceived) return i;
  }
  // The line may have failed while the last bytes were written.
  return total > 0 && operation.Aborted() ? std::optional(total - 1) : std::nullopt;
}

ProgramOutcome ProgramFlash(BoardLink& link, DebugPanel& debug_panel,
                            const EditedSequence& edited) {
  // Begun before the erase: a connection made anew during its wait is not the one that was erased.
  BoardOperation operation(link, Mode::kProgram);
  debug_panel.SetEcho({});
  const Answer erased = EraseFlash(link);
  if (erased == Answer::kAborted) return {};
  // The sequences may have grown during the erase.
  if (RefuseOversize(link, edited)) return {};
  // Never send to a board that was not erased: another erase may have run inside this one, or the
  // port have been reopened while its message was open.
  if (erased == Answer::kTakenOver || operation.Aborted()) return {kAbortedText};
  const int total = edited.Data().TotalBytes;
  operation.BeginTransfer(total - 1);
  operation.Stage(edited.Data());
  operation.Send(ProgramCommand(edited.Data()));
  if (operation.WaitForAck() != Answer::kReceived) return {kAbortedText};
  if (const std::optional<int> last_sent = SendStepData(operation, total, link, edited)) {
    return {kAbortedText + QString::number(*last_sent)};
  }
  return {QStringLiteral("Data Flash Programmed!"), operation.Disturbed()};
}

}  // namespace

void CommandFlash_Click(BoardLink& link, DebugPanel& debug_panel, const EditedSequence& edited) {
  if (!link.Port().RequireConnection() || RefuseOversize(link, edited)) return;
  const ProgramOutcome outcome = ProgramFlash(link, debug_panel, edited);
  if (!outcome.text.isEmpty()) link.Say(outcome.text);
  if (outcome.disturbed) link.Say(kDisturbedText);
}

}  // namespace pelmora
