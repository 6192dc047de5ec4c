// "Undo" and "Redo" of the changes of the sequences.
#pragma once

#include "edit/edited_sequence.h"
#include "link/board_link.h"

namespace pelmora {

class UndoCommands {
 public:
  UndoCommands(EditedSequence& edited, const BoardLink& link) : edited_(edited), link_(link) {}

  // Whether there is a change to undo or redo. Never while an operation waits for the board, which
  // is being sent what the sequences were, or is about to replace them.
  bool CanUndo() const { return !link_.Busy() && edited_.Changes().CanUndo(); }
  bool CanRedo() const { return !link_.Busy() && edited_.Changes().CanRedo(); }
  QString UndoName() const { return edited_.Changes().UndoName(); }
  QString RedoName() const { return edited_.Changes().RedoName(); }

  // Everything that `EditedSequence` owns becomes what it was before, or after, the change.
  // Nothing is sent, no slider moves and no message is shown.
  void Undo_Click() {
    if (CanUndo()) edited_.Undo();
  }
  void Redo_Click() {
    if (CanRedo()) edited_.Redo();
  }

 private:
  EditedSequence& edited_;
  const BoardLink& link_;
};

}  // namespace pelmora
