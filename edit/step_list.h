// The step list's editing commands, undo and redo, and the choice of the sequence that it shows.
#pragma once

#include "edit/edited_sequence.h"
#include "edit/step_fields.h"
#include "link/board_link.h"
#include "platform/system/message_box.h"

namespace pelmora {

class StepList {
 public:
  StepList(EditedSequence& edited, StepFields& step_fields, const BoardLink& link,
           platform::MessageBox& message_box)
      : edited_(edited), step_fields_(step_fields), link_(link), message_box_(message_box) {}

  void CommandAdd_Click();
  void CommandRem_Click() { edited_.Remove(); }
  void CommandReplace_Click();
  void CommandClear_Click() { edited_.Clear(); }
  // Empties all 16 sequences and makes sequence 0 current; nothing is asked.
  void CommandClearAll_Click() { edited_.ClearAll(); }

  // Whether there is a change to undo or redo. Never while an operation waits for the board, which
  // is being sent what the sequences were, or is about to replace them.
  bool CanUndo() const { return !link_.Busy() && edited_.Changes().CanUndo(); }
  bool CanRedo() const { return !link_.Busy() && edited_.Changes().CanRedo(); }
  // Everything that `EditedSequence` owns becomes what it was before, or after, the change.
  // Nothing is sent, no slider moves and no message is shown.
  void Undo_Click() {
    if (CanUndo()) edited_.Undo();
  }
  void Redo_Click() {
    if (CanRedo()) edited_.Redo();
  }

  // "+": the next sequence, up to 15. "-": the previous one, down to 0.
  void CommandMoreSeq_Click() { edited_.ShowSequence(edited_.Data().CurSeq + 1); }
  void CommandLessSeq_Click() { edited_.ShowSequence(edited_.Data().CurSeq - 1); }

  // "--->": selects and shows the next line, after the last one the first. The playback tick calls
  // it.
  void CommandUp_Click();
  // "<---": selects and shows the previous line, before the first one the last.
  void CommandDwn_Click();

  // Selects a line and shows its step in the editor.
  void SelectAndShow(int line);

  // "Set/Reset Break" on the selected line, and "Reset  All Break".
  void CommandBrk_Click() { edited_.ToggleBreak(); }
  void CommandResBrk_Click() { edited_.ResetBreakPoints(); }

  // Dragging: the line on which a mouse button went down moves to the one on which it went up.
  // `line` is -1 when the pointer was on none.
  void ListSequence_MouseDown(int line) { DragFromIndex = line; }
  void ListSequence_MouseUp(int line) { ListSequence_MoveLine(DragFromIndex, line); }
  // A step moves to the place of another line.
  void ListSequence_MoveLine(int from, int to);
  void ListSequence_DblClick() { step_fields_.ShowSelectedStep(); }

 private:
  bool HasRoom();

  EditedSequence& edited_;
  StepFields& step_fields_;
  const BoardLink& link_;
  platform::MessageBox& message_box_;
  // The line on which a mouse button was last pressed in the list, -1 when on none.
  int DragFromIndex = -1;
};

}  // namespace pelmora
