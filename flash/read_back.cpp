#include "flash/read_back.h"

#include "core/flash_image.h"

namespace pelmora {
namespace {

// A whole reply of a full flash.
constexpr int kReadBufferBytes = kHeaderBytes + kFlashCapacity;

}  // namespace

ReadBack::ReadBack(const FlashParts& parts, SequenceData& sequence_data, StepList& step_list,
                   platform::ListBox& list_sequence, QLabel& label_seq)
    : parts_(parts),
      sequence_data_(sequence_data),
      step_list_(step_list),
      list_sequence_(list_sequence),
      label_seq_(label_seq) {}

void ReadBack::CommandRead_Click() {
  parts_.Echo.clear();
  step_list_.CommandClearAll_Click();
  if (!parts_.serial_port.RequireConnection()) return;
  const bool received = Receive();
  parts_.data.ReadMode = false;
  parts_.Command1.setEnabled(false);
  parts_.serial_port.SetIdleReceive();
  if (!received) {
    Fail(QStringLiteral("Reading Error!"));
  } else if (parts_.data.RxCount < kStepBytes) {
    Fail(QStringLiteral("Nothing to Read!"));
  } else if (!DecodeSteps(parts_.data)) {
    Fail(QStringLiteral("Reading Error!"));
  } else {
    ShowFirstSequence();
    End(QStringLiteral("Data Flash Read!"));
  }
}

// Sends the command and waits for the reply. False when the wait was cut short and nothing of the
// reply is to be kept.
bool ReadBack::Receive() {
  parts_.comm.SetInputLen(0);
  parts_.comm.Input();
  parts_.comm.SetInBufferSize(kReadBufferBytes);
  parts_.comm.SetInputLen(kHeaderBytes);
  parts_.comm.SetRThreshold(kHeaderBytes);
  parts_.ProgressBarFlash.SetValue(0);
  parts_.ProgressBarFlash.show();
  parts_.data.ReadMode = true;
  parts_.data.AckReceived = false;
  parts_.Command1.setEnabled(true);
  BoardWait wait = parts_.BeginWait();
  parts_.board.Send(Command::kRead);
  do {
    if (parts_.data.AckReceived) return true;
  } while (wait.Turn());
  parts_.data.AbortRequest = false;
  // With this word showing, the receive handler has kept what had arrived as the step data.
  return parts_.Echo.text() == kOverflowWord;
}

void ReadBack::ShowFirstSequence() {
  parts_.data.CurSeq = 0;
  // Lines composed while the read was waiting would stand above the sequence's own.
  list_sequence_.Clear();
  sequence_data_.ResetBreakPoints();
  sequence_data_.DataToBuffer();
  label_seq_.setText(SequenceCaption(parts_.data.CurSeq));
}

void ReadBack::Fail(const QString& text) {
  LimitStepCounts(parts_.data);
  End(text);
}

void ReadBack::End(const QString& text) {
  parts_.ProgressBarFlash.hide();
  parts_.Say(text);
}

}  // namespace pelmora
