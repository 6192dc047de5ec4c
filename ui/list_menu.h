// The step list's context menu, and the keys that belong to it: undo and redo, cut, copy and paste,
// moving and showing a step, the window "Movement".
#pragma once

#include <QAction>
#include <QKeySequence>
#include <QList>
#include <QMenu>
#include <QObject>
#include <functional>

#include "edit/edited_sequence.h"
#include "edit/step_clipboard.h"
#include "edit/step_list.h"
#include "platform/controls/list_box.h"

namespace pelmora {

class ListMenu : public QObject {
  Q_OBJECT
 public:
  // The keys of undo, redo, the clipboard and "Movement" work in the whole window; a text field
  // that has the focus keeps those that it knows itself. All that is given outlives the menu.
  ListMenu(platform::ListBox& list, EditedSequence& edited, StepClipboard& clipboard,
           StepList& step_list, QObject* parent);

  // The keys of undo, redo and "Movement" work in this window, too.
  void ShareKeysWith(QWidget& window) { window.addActions({undo_, redo_, movement_}); }
  // The item's check mark: whether the window "Movement" is shown. Emits nothing.
  void SetMovementShown(bool shown) { movement_->setChecked(shown); }

 signals:
  // The operator wants the window "Movement" to be shown, or hidden.
  void MovementWanted(bool shown);

 private:
  using Action = std::function<void()>;

  QAction* AddItem(const QString& text, Action action);
  // Its keys work in the whole window; held down they don't repeat.
  QAction* AddKeyItem(const QString& text, const QList<QKeySequence>& keys, Action action);
  // Does it to the line that the menu was opened on, wherever playback has gone since.
  Action ToLine(Action action);
  void Prepare();
  void Close();
  void MoveBy(int distance);

  platform::ListBox& list_;
  EditedSequence& edited_;
  StepList& step_list_;
  QMenu menu_;
  int line_ = -1;  // that the menu was opened on, -1 for none and while it is closed
  QAction* undo_ = nullptr;
  QAction* redo_ = nullptr;
  QAction* cut_ = nullptr;
  QAction* copy_ = nullptr;
  QAction* copy_sequence_ = nullptr;
  QAction* move_up_ = nullptr;
  QAction* move_down_ = nullptr;
  QAction* show_step_ = nullptr;
  QAction* movement_ = nullptr;
};

}  // namespace pelmora
