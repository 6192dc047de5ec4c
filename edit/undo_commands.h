// "Undo" and "Redo" of the changes of the sequences.
#pragma once

#include "edit/edited_sequence.h"
#include "link/board_link.h"

namespace pelmora {

class UndoCommands {
 public:
  UndoCommands(EditedSequence& edited, const BoardLink& link)
      : changes_(edited.Changes()), link_(link) {}

  // Whether there is a change to undo or redo. Never while an operation waits for the board, which
  // is being sent what the sequences were, or is about to replace them.
  bool CanUndo() const { return !link_.Busy() && changes_.CanUndo(); }
  bool CanRedo() const { return !link_.Busy() && changes_.CanRedo(); }
  QString UndoName() const { return changes_.UndoName(); }
  QString RedoName() const { return changes_.RedoName(); }

  // Everything that `EditedSequence` owns becomes what it was before, or after, the change.
  // Nothing is sent, no slider moves and no message is shown.
  void Undo_Click() {
    if (CanUndo()) changes_.Undo();
  }
  void Redo_Click() {
    if (CanRedo()) changes_.Redo();
  }

 private:
  History& changes_;
  const BoardLink& link_;
};

}  // namespace pelmora
