// The step list's editing commands, and the choice of the sequence that it shows.
#pragma once

#include <string>

#include "edit/edited_sequence.h"
#include "edit/step_fields.h"
#include "platform/system/message_box.h"

namespace pelmora {

class StepList {
 public:
  StepList(EditedSequence& edited, StepFields& step_fields, platform::MessageBox& message_box)
      : edited_(edited), step_fields_(step_fields), message_box_(message_box) {}

  void CommandAdd_Click();
  void CommandRem_Click() { edited_.Remove(); }
  void CommandReplace_Click();
  void CommandClear_Click() { edited_.Clear(); }
  // Empties all 16 sequences and makes sequence 0 current; nothing is asked.
  void CommandClearAll_Click() { edited_.ClearAll(); }

  // "+": the next sequence, up to 15. "-": the previous one, down to 0.
  void CommandMoreSeq_Click() { edited_.ShowSequence(edited_.Data().CurSeq + 1); }
  void CommandLessSeq_Click() { edited_.ShowSequence(edited_.Data().CurSeq - 1); }

  // "--->": selects and shows the next line, after the last one the first. The playback tick calls
  // it.
  void CommandUp_Click();
  // "<---": selects and shows the previous line, before the first one the last.
  void CommandDwn_Click();

  // Dragging: the line on which a mouse button went down moves to the one on which it went up.
  // `line` is -1 when the pointer was on none.
  void ListSequence_MouseDown(int line) { DragFromIndex = line; }
  void ListSequence_MouseUp(int line) { ListSequence_MoveLine(DragFromIndex, line); }
  // A step moves to the place of another line.
  void ListSequence_MoveLine(int from, int to);
  void ListSequence_DblClick() { step_fields_.ShowSelectedStep(); }

 private:
  bool HasRoom();
  std::string NewLine();
  void SelectAndShow(int line);

  EditedSequence& edited_;
  StepFields& step_fields_;
  platform::MessageBox& message_box_;
  // The line on which a mouse button was last pressed in the list, -1 when on none.
  int DragFromIndex = -1;
};

}  // namespace pelmora
