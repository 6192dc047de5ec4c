#include "flash/program_sequences.h"

#include <algorithm>

#include "core/flash_image.h"
#include "edit/sequence_data.h"

namespace pelmora {
namespace {

constexpr int kBlockBytes = 256;

// The bar moves about a hundred times in a transfer of `total` bytes: once in so many bytes.
int ProgressInterval(int total) {
  return std::max(1, (total - 1) / 100 + 1);
}

}  // namespace

ProgramSequences::ProgramSequences(const FlashParts& parts, EraseFlash& erase_flash)
    : parts_(parts), erase_flash_(erase_flash) {}

void ProgramSequences::CommandFlash_Click() {
  if (!parts_.serial_port.RequireConnection() || RefuseOversize()) return;
  Declaration& data = parts_.data;
  // Begun before the erase: a connection made anew during its wait is not the one that was erased.
  BoardWait wait = parts_.BeginWait();
  data.ProgramMode = true;
  parts_.Echo.clear();
  if (!erase_flash_.Erase()) {
    data.ProgramMode = false;
    return;
  }
  data.AbortRequest = false;
  // The sequences may have grown during the erase.
  if (RefuseOversize()) {
    data.ProgramMode = false;
    return;
  }
  parts_.Command1.setEnabled(true);
  parts_.ProgressBarFlash.SetValue(0);
  parts_.ProgressBarFlash.show();
  parts_.ProgressBarFlash.SetScaleMaximum(data.TotalBytes - 1);
  EncodeSteps(data);
  const int total = data.TotalBytes;
  if (SendHeader(wait) == Transfer::kCut) {
    End(kAbortedText);
    return;
  }
  int last_sent = 0;
  if (SendStepData(wait, total, last_sent) == Transfer::kCut) {
    End(kAbortedText + QString::number(last_sent));
    return;
  }
  End(QStringLiteral("Data Flash Programmed!"));
}

bool ProgramSequences::RefuseOversize() {
  if (HeaderFits(parts_.data)) return false;
  parts_.Say(CapacityText());
  return true;
}

ProgramSequences::Transfer ProgramSequences::SendHeader(BoardWait& wait) {
  // While the erase's message was open, the board may have made place for another one.
  if (wait.Cut()) return Transfer::kCut;
  parts_.board.Send(Command::kProgram);
  for (const std::uint8_t byte : EncodeHeader(parts_.data)) parts_.board.Send(byte);
  // No acknowledgement can be taken between the last send and here.
  parts_.data.AckReceived = false;
  do {
    if (parts_.data.AckReceived) return Transfer::kDone;
  } while (wait.Turn());
  return Transfer::kCut;
}

// `last_sent` is the index of the last step-data byte written. No acknowledgement is awaited for a
// last block that is shorter than the others.
ProgramSequences::Transfer ProgramSequences::SendStepData(BoardWait& wait, int total,
                                                          int& last_sent) {
  Declaration& data = parts_.data;
  for (int i = 0; i < total; ++i) {
    data.AckReceived = false;
    parts_.board.Send(data.FlashImage[static_cast<std::size_t>(i / kStepBytes)]
                                     [static_cast<std::size_t>(i % kStepBytes)]);
    last_sent = i;
    if (i % ProgressInterval(data.TotalBytes) == 0) parts_.ProgressBarFlash.SetValue(i);
    if ((i + 1) % kBlockBytes != 0) continue;
    while (!data.AckReceived) {
      if (!wait.Turn()) return Transfer::kCut;
    }
  }
  if (!wait.Cut()) return Transfer::kDone;
  // The line failed while the last bytes were written; the turn lets that be said first.
  wait.Turn(platform::Events::Idle::kReturn);
  return Transfer::kCut;
}

void ProgramSequences::End(const QString& text) {
  parts_.data.ProgramMode = false;
  parts_.data.AbortRequest = false;
  parts_.Command1.setEnabled(false);
  parts_.ProgressBarFlash.hide();
  parts_.Say(text);
}

void ProgramSequences::Command1_Click() {
  parts_.data.AbortRequest = true;
  parts_.Command1.setEnabled(false);
}

}  // namespace pelmora
