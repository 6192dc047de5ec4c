#include "edit/step_list.h"

#include <QString>

#include "core/step_line.h"
#include "link/serial_port.h"

namespace pelmora {

void ShowOffset(const SequenceLabels& labels, const Declaration& data) {
  labels.CommandOffset->setText(QStringLiteral("OffSet Seq. %1").arg(data.CurSeq));
  labels.LabelOffset->setText(QStringLiteral("%1 bytes").arg(data.SeqOffset[data.CurSeq]));
}

StepList::StepList(Declaration& data, SequenceData& sequence_data, StepFields& step_fields,
                   platform::ListBox& list_sequence, const SequenceLabels& labels,
                   platform::MessageBox& message_box)
    : data_(data),
      sequence_data_(sequence_data),
      step_fields_(step_fields),
      list_sequence_(list_sequence),
      labels_(labels),
      message_box_(message_box) {}

void StepList::CommandAdd_Click() {
  InsertStep();
}

// False when the list is full; a message has then been shown and nothing has changed.
bool StepList::InsertStep() {
  if (list_sequence_.ListCount() >= kSteps) {
    message_box_.Show(TooManyLinesText(), kProgramTitle);
    return false;
  }
  sequence_data_.ResetBreakPoints();
  const int line = list_sequence_.ListIndex() + 1;
  list_sequence_.InsertItem(line, QString::fromStdString(EditorLine(step_fields_.AngleFields(),
                                                                    step_fields_.Duration())));
  sequence_data_.RebuildEditBuffer();
  list_sequence_.SetListIndex(line);
  sequence_data_.BufferToData();
  ShowLabels();
  return true;
}

void StepList::CommandRem_Click() {
  if (list_sequence_.ListCount() == 0) return;
  sequence_data_.ResetBreakPoints();
  if (list_sequence_.ListIndex() < 0) return;
  RemoveSelected();
}

void StepList::RemoveSelected() {
  const int line = list_sequence_.ListIndex();
  list_sequence_.RemoveItem(line);
  list_sequence_.SetListIndex(list_sequence_.ListCount() > line ? line : line - 1);
  sequence_data_.RebuildEditBuffer();
  sequence_data_.BufferToData();
  ShowLabels();
}

void StepList::CommandReplace_Click() {
  const int line = list_sequence_.ListIndex();
  if (line < 0 || !InsertStep()) return;
  list_sequence_.SetListIndex(line);
  CommandRem_Click();
}

void StepList::ShowLabels() {
  labels_.LabelStep->setText(StepCaption(list_sequence_.ListIndex()));
  ShowOffset(labels_, data_);
}

void StepList::CommandClear_Click() {
  list_sequence_.Clear();
  sequence_data_.ResetBreakPoints();
  labels_.LabelStep->setText(NoStepCaption());
}

void StepList::CommandClearAll_Click() {
  list_sequence_.Clear();
  sequence_data_.ResetBreakPoints();
  sequence_data_.DataInit();
  data_.CurSeq = 0;
  labels_.LabelSeq->setText(SequenceCaption(0));
  labels_.LabelStep->setText(NoStepCaption());
}

void StepList::CommandUp_Click() {
  const int lines = list_sequence_.ListCount();
  if (lines == 0) return;
  const int line = list_sequence_.ListIndex();
  SelectAndShow(line == lines - 1 ? 0 : line + 1);
}

void StepList::CommandDwn_Click() {
  const int line = list_sequence_.ListIndex();
  if (line < 0) return;
  SelectAndShow(line == 0 ? list_sequence_.ListCount() - 1 : line - 1);
}

void StepList::SelectAndShow(int line) {
  list_sequence_.SetListIndex(line);
  step_fields_.ShowSelectedStep(list_sequence_.ListIndex());
}

void StepList::ListSequence_MouseDown(int line) {
  data_.DragFromIndex = static_cast<std::int16_t>(line);
}

void StepList::ListSequence_MouseUp(int line) {
  const int from = data_.DragFromIndex;
  const int lines = list_sequence_.ListCount();
  // The list may have become shorter while the button was held.
  if (line == from || line < 0 || from < 0 || line >= lines || from >= lines) return;
  const QString text = list_sequence_.List(from);
  if (from < line) {
    list_sequence_.InsertItem(line + 1, text);
    list_sequence_.RemoveItem(from);
  } else {
    list_sequence_.InsertItem(line, text);
    list_sequence_.RemoveItem(from + 1);
  }
  list_sequence_.SetListIndex(line);
  sequence_data_.RebuildEditBuffer();
  sequence_data_.MatchBreakFlags();
}

void StepList::ListSequence_DblClick() {
  step_fields_.ShowSelectedStep(list_sequence_.ListIndex());
}

}  // namespace pelmora
