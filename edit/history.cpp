#include "edit/history.h"

#include <QUndoCommand>
#include <utility>

namespace pelmora {
namespace {

constexpr int kMostSteps = 500;

}  // namespace

class History::Step : public QUndoCommand {
 public:
  Step(History& history, StatePointer before, StatePointer after)
      : QUndoCommand(history.name_),
        history_(history),
        before_(std::move(before)),
        after_(std::move(after)) {}

  void undo() override { history_.Restore(before_); }

  void redo() override {
    // The stack redoes a step that it is given, which has been done already.
    if (std::exchange(given_, true)) history_.Restore(after_);
  }

 private:
  History& history_;
  const StatePointer before_;
  const StatePointer after_;
  bool given_ = false;
};

History::History(Subject& subject) : subject_(subject) {
  stack_.setUndoLimit(kMostSteps);
}

void History::Undo() {
  if (CanUndo()) stack_.undo();
}

void History::Redo() {
  if (CanRedo()) stack_.redo();
}

void History::Begin(const char* name, std::optional<int> selected) {
  if (++open_ > 1) return;
  name_ = QString::fromLatin1(name);
  SequenceState before = *Look();
  before.Selected = selected.value_or(before.Selected);
  before_ = std::make_shared<const SequenceState>(std::move(before));
}

void History::End() {
  if (--open_ > 0) return;
  const StatePointer before = std::exchange(before_, nullptr);
  const StatePointer after = Look();
  if (!SameSequences(*before, *after)) stack_.push(new Step(*this, before, after));
}

History::StatePointer History::Look() {
  latest_ = std::make_shared<const SequenceState>(subject_.State(latest_.get()));
  return latest_;
}

void History::Restore(const StatePointer& state) {
  subject_.Restore(*state);
  latest_ = state;
}

}  // namespace pelmora
