// Undo and redo of the changes of the sequences, by the toolkit's undo stack. A step of it holds
// the states before and after the change. What happens between two changes and is none (another
// sequence is shown, a line selected, a breakpoint set, a sequence stored) is in the states as
// well, up to the moment of an undo or redo.
#pragma once

#include <QByteArray>
#include <QString>
#include <QUndoStack>
#include <array>
#include <memory>
#include <optional>

#include "core/table_snapshot.h"

namespace pelmora {

class EditedSequence;

// Everything that the edited sequence owns, as it is at one moment.
struct SequenceState {
  TableSnapshot Table;
  // The lines of the step list with their breakpoint marks, each ended by a line feed. UTF-8, which
  // takes half the memory of the list's own texts.
  QByteArray Lines;
  int Selected = -1;
  std::array<QString, 6> Labels;
};

// What is particular about a change.
struct ChangeTraits {
  // The line to be selected after an undo, where the selection has run ahead of the change.
  std::optional<int> selected = {};
  // Changes that follow each other with the same number here, and nothing between them, are one
  // step; none when the last has led back to where the first began.
  std::optional<int> run = {};
};

class History {
 public:
  // The time during which something changes the sequences. Changes made while one is open belong
  // to the outermost: together they are one step, under its name. A change that leaves the
  // stored table and the lines of the list as they were is no step.
  class Change {
   public:
    // `name` is what follows "Undo" and "Redo".
    Change(History& history, const char* name, const ChangeTraits& traits = {})
        : history_(history) {
      history_.Begin(name, traits);
    }
    ~Change() { history_.End(); }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

   private:
    History& history_;
  };

  // `edited`, whose states are kept, outlives the history.
  explicit History(EditedSequence& edited);

  // Not while a change is open: its end would record what was undone.
  bool CanUndo() const { return open_ == 0 && stack_.canUndo(); }
  bool CanRedo() const { return open_ == 0 && stack_.canRedo(); }
  // The names of the changes that these would undo and redo; empty when there is none.
  QString UndoName() const { return stack_.undoText(); }
  QString RedoName() const { return stack_.redoText(); }
  // Restore the state before, or after, that change; an undo followed by its redo restores what was
  // there before the undo. Nothing happens when it can't be done.
  void Undo() {
    if (CanUndo()) stack_.undo();
  }
  void Redo() {
    if (CanRedo()) stack_.redo();
  }

  // The next change begins a step of its own, whatever its run.
  void EndRun() { last_run_.reset(); }

 private:
  class Step;
  using StatePointer = std::shared_ptr<const SequenceState>;

  void Begin(const char* name, const ChangeTraits& traits);
  void End();
  StatePointer Capture();
  // Restores a state and returns the one that it replaces.
  StatePointer Exchange(const StatePointer& state);

  EditedSequence& edited_;
  QUndoStack stack_;
  int open_ = 0;  // changes, one inside the other
  // Of the outermost.
  QString name_;
  std::optional<int> run_;
  StatePointer before_;

  std::optional<int> last_run_;  // of the latest change, as long as another can follow it
  int step_id_ = 0;              // steps with the same one are merged
  StatePointer latest_;          // the state last seen or restored, with which the next one shares
};

}  // namespace pelmora
