#include "edit/history.h"

#include <QUndoCommand>
#include <utility>

#include "core/step_line.h"
#include "edit/edited_sequence.h"

namespace pelmora {
namespace {

constexpr int kMostSteps = 500;

// Whether both hold the same table and the same lines. The selection and the breakpoints don't
// count.
bool SameSequences(const SequenceState& one, const SequenceState& other) {
  return SameTable(one.Table, other.Table) &&
         (one.Lines == other.Lines || WithoutBreakMarks(one.Lines.toStdString()) ==
                                          WithoutBreakMarks(other.Lines.toStdString()));
}

}  // namespace

class History::Step : public QUndoCommand {
 public:
  Step(History& history, StatePointer before, StatePointer after)
      : QUndoCommand(history.name_),
        history_(history),
        id_(history.step_id_),
        before_(std::move(before)),
        after_(std::move(after)) {}

  int id() const override { return id_; }

  // Called with a step of the same id, just done.
  bool mergeWith(const QUndoCommand* later) override {
    after_ = static_cast<const Step*>(later)->after_;
    setObsolete(SameSequences(*before_, *after_));
    return true;
  }

  // What has been done since the change without being one, such as a store, stays with the state
  // that the redo brings back; and the other way round.
  void undo() override { after_ = history_.Exchange(before_); }

  void redo() override {
    // The stack redoes a step that it is given, which has been done already.
    if (std::exchange(given_, true)) before_ = history_.Exchange(after_);
  }

 private:
  History& history_;
  const int id_;
  StatePointer before_;
  StatePointer after_;
  bool given_ = false;
};

History::History(EditedSequence& edited) : edited_(edited) {
  stack_.setUndoLimit(kMostSteps);
}

void History::Begin(const char* name, const ChangeTraits& traits) {
  if (++open_ > 1) return;
  name_ = QString::fromLatin1(name);
  run_ = traits.run;
  SequenceState before = *Capture();
  before.Selected = traits.selected.value_or(before.Selected);
  before_ = std::make_shared<const SequenceState>(std::move(before));
}

void History::End() {
  if (--open_ > 0) return;
  const StatePointer before = std::exchange(before_, nullptr);
  const StatePointer after = Capture();
  if (!run_ || run_ != last_run_) ++step_id_;
  last_run_ = run_;
  if (!SameSequences(*before, *after)) stack_.push(new Step(*this, before, after));
}

History::StatePointer History::Capture() {
  latest_ = std::make_shared<const SequenceState>(edited_.State(latest_.get()));
  return latest_;
}

History::StatePointer History::Exchange(const StatePointer& state) {
  StatePointer former = Capture();
  edited_.Restore(*state);
  latest_ = state;
  return former;
}

}  // namespace pelmora
