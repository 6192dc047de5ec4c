#include "ui/list_menu.h"

#include <utility>

namespace pelmora {
namespace {

constexpr char kUndo[] = "&Undo";
constexpr char kRedo[] = "&Redo";

void Name(QAction& item, bool enabled, const QString& command, const QString& change) {
  item.setEnabled(enabled);
  item.setText(enabled ? command + QLatin1Char(' ') + change : command);
}

}  // namespace

ListMenu::ListMenu(platform::ListBox& list, EditedSequence& edited, StepClipboard& clipboard,
                   StepList& step_list, QObject* parent)
    : QObject(parent), list_(list), edited_(edited), step_list_(step_list), menu_(&list) {
  menu_.setObjectName(QStringLiteral("ListMenu"));
  undo_ = AddKeyItem(kUndo, {Qt::CTRL | Qt::Key_Z}, [this] { step_list_.Undo_Click(); });
  redo_ = AddKeyItem(kRedo, {Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y},
                     [this] { step_list_.Redo_Click(); });
  for (QAction* item : {undo_, redo_}) item->setAutoRepeat(true);
  menu_.addSeparator();
  cut_ =
      AddKeyItem("Cu&t", {Qt::CTRL | Qt::Key_X}, ToLine([&clipboard] { clipboard.Cut_Click(); }));
  copy_ =
      AddKeyItem("&Copy", {Qt::CTRL | Qt::Key_C}, ToLine([&clipboard] { clipboard.Copy_Click(); }));
  copy_sequence_ = AddKeyItem("Copy &Sequence", {Qt::CTRL | Qt::SHIFT | Qt::Key_C},
                              [&clipboard] { clipboard.CopySequence_Click(); });
  AddKeyItem("&Paste", {Qt::CTRL | Qt::Key_V}, ToLine([&clipboard] { clipboard.Paste_Click(); }));
  menu_.addSeparator();
  // The list takes these keys itself; here they are only shown.
  move_up_ = AddItem("&Move Up\tCtrl+Up", ToLine([this] { MoveBy(-1); }));
  move_down_ = AddItem("Move &Down\tCtrl+Down", ToLine([this] { MoveBy(1); }));
  show_step_ = AddItem("S&how Step\tEnter", ToLine([this] { step_list_.ListSequence_DblClick(); }));
  menu_.addSeparator();
  movement_ = AddKeyItem("Mo&vement", {Qt::CTRL | Qt::Key_M},
                         [this] { emit MovementWanted(movement_->isChecked()); });
  movement_->setCheckable(true);

  connect(&list_, &platform::ListBox::ContextMenuWanted, &menu_,
          [this](QPoint place) { menu_.popup(place); });
  connect(&menu_, &QMenu::aboutToShow, this, &ListMenu::Prepare);
  connect(&menu_, &QMenu::aboutToHide, this, &ListMenu::Close);
  // What was a line's index may be another line's now.
  connect(&edited_, &EditedSequence::SequenceChanged, &menu_, &QMenu::hide);
}

QAction* ListMenu::AddItem(const QString& text, Action action) {
  QAction* item = menu_.addAction(text);
  item->setObjectName(QStringLiteral("List") + text.section('\t', 0, 0).remove('&').remove(' '));
  item->setShortcutVisibleInContextMenu(true);
  connect(item, &QAction::triggered, this, std::move(action));
  return item;
}

QAction* ListMenu::AddKeyItem(const QString& text, const QList<QKeySequence>& keys, Action action) {
  QAction* item = AddItem(text, std::move(action));
  item->setShortcuts(keys);
  item->setAutoRepeat(false);
  list_.window()->addAction(item);
  return item;
}

ListMenu::Action ListMenu::ToLine(Action action) {
  return [this, action = std::move(action)] {
    if (line_ >= 0) edited_.Select(line_);
    action();
  };
}

void ListMenu::Prepare() {
  const History& changes = edited_.Changes();
  Name(*undo_, step_list_.CanUndo(), kUndo, changes.UndoName());
  Name(*redo_, step_list_.CanRedo(), kRedo, changes.RedoName());
  const int line = line_ = edited_.ListIndex();
  const int lines = edited_.ListCount();
  for (QAction* item : {cut_, copy_, show_step_}) item->setEnabled(line >= 0);
  copy_sequence_->setEnabled(lines > 0);
  move_up_->setEnabled(line > 0);
  move_down_->setEnabled(line >= 0 && line + 1 < lines);
}

// The toolkit hides the menu before it does what was chosen in it.
void ListMenu::Close() {
  // The key of a disabled item wouldn't work while the menu is closed.
  for (QAction* item : menu_.actions()) item->setEnabled(true);
  QMetaObject::invokeMethod(
      this, [this] { line_ = -1; }, Qt::QueuedConnection);
}

void ListMenu::MoveBy(int distance) {
  const int line = edited_.ListIndex();
  step_list_.ListSequence_MoveLine(line, line + distance);
}

}  // namespace pelmora
