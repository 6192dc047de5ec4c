// The step list and its editing commands. Every change is made to the list's lines first and then
// read back into the edit buffer.
#pragma once

#include <QLabel>

#include "core/declaration.h"
#include "edit/sequence_data.h"
#include "edit/step_fields.h"
#include "platform/list_box.h"
#include "platform/message_box.h"

namespace pelmora {

// The labels that name the current sequence and step.
struct SequenceLabels {
  QLabel* LabelSeq;
  QLabel* LabelSeqEmu;
  QLabel* LabelStep;
  QLabel* CommandOffset;  // "OffSet Seq. n", a label despite its name
  QLabel* LabelOffset;
};

// Writes `CommandOffset` and `LabelOffset` for the current sequence.
void ShowOffset(const SequenceLabels& labels, const Declaration& data);

class StepList {
 public:
  StepList(Declaration& data, SequenceData& sequence_data, StepFields& step_fields,
           platform::ListBox& list_sequence, const SequenceLabels& labels,
           platform::MessageBox& message_box);

  void CommandAdd_Click();
  void CommandRem_Click();
  void CommandReplace_Click();
  void CommandClear_Click();

  // Empties all 16 sequences and makes sequence 0 current; nothing is asked. Loading a file and
  // reading the flash begin with it.
  void CommandClearAll_Click();

  // "--->": selects and shows the next line, after the last one the first. The playback tick calls
  // it.
  void CommandUp_Click();
  // "<---": selects and shows the previous line, before the first one the last.
  void CommandDwn_Click();

  // Dragging: the line on which a mouse button went down moves to the one on which it went up.
  // `line` is -1 when the pointer was on none.
  void ListSequence_MouseDown(int line);
  void ListSequence_MouseUp(int line);
  void ListSequence_DblClick();

 private:
  bool InsertStep();
  void RemoveSelected();
  void SelectAndShow(int line);
  void ShowLabels();

  Declaration& data_;
  SequenceData& sequence_data_;
  StepFields& step_fields_;
  platform::ListBox& list_sequence_;
  const SequenceLabels labels_;
  platform::MessageBox& message_box_;
};

}  // namespace pelmora
