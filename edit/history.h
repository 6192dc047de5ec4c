// Undo and redo of the changes of the sequences, by the toolkit's undo stack. A step of it holds
// the states before and after the change: what happens between two changes and is none (another
// sequence is shown, a line selected, a breakpoint set) is in the states as well.
#pragma once

#include <QString>
#include <QUndoStack>
#include <memory>
#include <optional>

#include "edit/sequence_state.h"

namespace pelmora {

class History {
 public:
  // That whose states are kept.
  class Subject {
   public:
    // The state now, sharing with `former` (null when there is none) what it has alike.
    virtual SequenceState State(const SequenceState* former) const = 0;
    virtual void Restore(const SequenceState& state) = 0;

   protected:
    ~Subject() = default;
  };

  // The time during which something changes the sequences. Changes made while one is open belong
  // to the outermost: together they are one step, under its name. A change that leaves all
  // sequences as they were, and the same one on the screen, is no step.
  class Change {
   public:
    // `name` is what follows "Undo" and "Redo". `selected` is the line to be selected after an
    // undo, where the selection has run ahead of the change.
    Change(History& history, const char* name, std::optional<int> selected = {})
        : history_(history) {
      history_.Begin(name, selected);
    }
    ~Change() { history_.End(); }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

   private:
    History& history_;
  };

  // `subject` outlives the history.
  explicit History(Subject& subject);

  // Not while a change is open: its end would record what was undone.
  bool CanUndo() const { return open_ == 0 && stack_.canUndo(); }
  bool CanRedo() const { return open_ == 0 && stack_.canRedo(); }
  // The names of the changes that these would undo and redo; empty when there is none.
  QString UndoName() const { return stack_.undoText(); }
  QString RedoName() const { return stack_.redoText(); }
  // Restore the state before, or after, that change. Nothing happens when it can't be done.
  void Undo();
  void Redo();

 private:
  class Step;
  using StatePointer = std::shared_ptr<const SequenceState>;

  void Begin(const char* name, std::optional<int> selected);
  void End();
  StatePointer Look();
  void Restore(const StatePointer& state);

  Subject& subject_;
  QUndoStack stack_;
  int open_ = 0;  // changes, one inside the other
  QString name_;  // of the outermost
  StatePointer before_;
  StatePointer latest_;  // the state last seen or restored, with which the next one shares
};

}  // namespace pelmora
