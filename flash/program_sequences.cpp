#include "flash/program_sequences.h"

#include <algorithm>

#include "core/board_codec.h"

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

}  // namespace

void ProgramSequences::CommandFlash_Click() {
  if (!link_.Port().RequireConnection() || RefuseOversize()) return;
  const Outcome outcome = Transfer();
  if (!outcome.text.isEmpty()) link_.Say(outcome.text);
  if (outcome.disturbed) link_.Say(kDisturbedText);
}

ProgramSequences::Outcome ProgramSequences::Transfer() {
  // Begun before the erase: a connection made anew during its wait is not the one that was erased.
  BoardOperation operation(link_, Mode::kProgram);
  debug_panel_.SetEcho({});
  const Answer erased = erase_flash_.Erase();
  if (erased == Answer::kAborted) return {};
  // The sequences may have grown during the erase.
  if (RefuseOversize()) return {};
  // Never send to a board that was not erased: another erase may have run inside this one, or the
  // port have been reopened while its message was open.
  if (erased == Answer::kTakenOver || operation.Aborted()) return {kAbortedText};
  const int total = edited_.Data().TotalBytes;
  operation.BeginTransfer(total - 1);
  operation.Stage(edited_.Data());
  operation.Send(ProgramCommand(edited_.Data()));
  if (operation.WaitForAck() != Answer::kReceived) return {kAbortedText};
  if (const std::optional<int> last_sent = SendStepData(operation, total)) {
    return {kAbortedText + QString::number(*last_sent)};
  }
  return {QStringLiteral("Data Flash Programmed!"), operation.Disturbed()};
}

bool ProgramSequences::RefuseOversize() {
  if (HeaderFits(edited_.Data())) return false;
  link_.Say(CapacityText());
  return true;
}

// When the transfer was aborted, the index of the last byte written. No acknowledgement is awaited
// for a last block that is shorter than the others.
std::optional<int> ProgramSequences::SendStepData(BoardOperation& operation, int total) {
  for (int i = 0; i < total; ++i) {
    operation.Send(std::array{StagedByte(link_.FlashImage(), i)});
    if (i % ProgressInterval(edited_.Data().TotalBytes) == 0) operation.MoveBar(i);
    if ((i + 1) % kBlockBytes == 0 && operation.WaitForAck() != Answer::kReceived) return i;
  }
  // The line may have failed while the last bytes were written.
  return total > 0 && operation.Aborted() ? std::optional(total - 1) : std::nullopt;
}

}  // namespace pelmora
