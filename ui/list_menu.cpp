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

ListMenu::ListMenu(platform::ListBox& list, const EditedSequence& edited, StepClipboard& clipboard,
                   StepList& step_list, QObject* parent)
    : QObject(parent), list_(list), edited_(edited), step_list_(step_list), menu_(&list) {
  menu_.setObjectName(QStringLiteral("ListMenu"));
  undo_ = AddKeyItem(kUndo, {Qt::CTRL | Qt::Key_Z}, [this] { step_list_.Undo_Click(); });
  redo_ = AddKeyItem(kRedo, {Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y},
                     [this] { step_list_.Redo_Click(); });
  for (QAction* item : {undo_, redo_}) item->setAutoRepeat(true);
  menu_.addSeparator();
  cut_ = AddKeyItem("Cu&t", {Qt::CTRL | Qt::Key_X}, [&clipboard] { clipboard.Cut_Click(); });
  copy_ = AddKeyItem("&Copy", {Qt::CTRL | Qt::Key_C}, [&clipboard] { clipboard.Copy_Click(); });
  copy_sequence_ = AddKeyItem("Copy &Sequence", {Qt::CTRL | Qt::SHIFT | Qt::Key_C},
                              [&clipboard] { clipboard.CopySequence_Click(); });
  AddKeyItem("&Paste", {Qt::CTRL | Qt::Key_V}, [&clipboard] { clipboard.Paste_Click(); });
  menu_.addSeparator();
  // The list takes these keys itself; here they are only shown.
  move_up_ = AddItem("&Move Up\tCtrl+Up", [this] { MoveBy(-1); });
  move_down_ = AddItem("Move &Down\tCtrl+Down", [this] { MoveBy(1); });
  show_step_ = AddItem("S&how Step\tEnter", [this] { step_list_.ListSequence_DblClick(); });
  menu_.addSeparator();
  movement_ = AddKeyItem("Mo&vement", {Qt::CTRL | Qt::Key_M},
                         [this] { emit MovementWanted(movement_->isChecked()); });
  movement_->setCheckable(true);

  connect(&list_, &platform::ListBox::ContextMenuWanted, &menu_,
          [this](QPoint place) { menu_.popup(place); });
  connect(&menu_, &QMenu::aboutToShow, this, &ListMenu::Prepare);
  // The key of a disabled item wouldn't work while the menu is closed.
  connect(&menu_, &QMenu::aboutToHide, this, [this] {
    for (QAction* item : menu_.actions()) item->setEnabled(true);
  });
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

void ListMenu::Prepare() {
  const History& changes = edited_.Changes();
  Name(*undo_, step_list_.CanUndo(), kUndo, changes.UndoName());
  Name(*redo_, step_list_.CanRedo(), kRedo, changes.RedoName());
  const int line = edited_.ListIndex();
  const int lines = edited_.ListCount();
  for (QAction* item : {cut_, copy_, show_step_}) item->setEnabled(line >= 0);
  copy_sequence_->setEnabled(lines > 0);
  move_up_->setEnabled(line > 0);
  move_down_->setEnabled(line >= 0 && line + 1 < lines);
}

void ListMenu::MoveBy(int distance) {
  const int line = edited_.ListIndex();
  step_list_.ListSequence_MoveLine(line, line + distance);
}

}  // namespace pelmora
