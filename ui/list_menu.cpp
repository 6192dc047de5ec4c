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

ListMenu::ListMenu(platform::ListBox& list, const ListMenuHandlers& handlers, QObject* parent)
    : QObject(parent), list_(list), handlers_(handlers), menu_(&list) {
  menu_.setObjectName(QStringLiteral("ListMenu"));
  const ListMenuHandlers& h = handlers_;
  undo_ = AddUndoItem(kUndo, {Qt::CTRL | Qt::Key_Z}, [&h] { h.undo.Undo_Click(); });
  redo_ = AddUndoItem(kRedo, {Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y},
                      [&h] { h.undo.Redo_Click(); });
  menu_.addSeparator();
  cut_ = AddClipboardItem(QStringLiteral("Cu&t"), Qt::CTRL | Qt::Key_X,
                          [&h] { h.clipboard.Cut_Click(); });
  copy_ = AddClipboardItem(QStringLiteral("&Copy"), Qt::CTRL | Qt::Key_C,
                           [&h] { h.clipboard.Copy_Click(); });
  copy_sequence_ =
      AddClipboardItem(QStringLiteral("Copy &Sequence"), Qt::CTRL | Qt::SHIFT | Qt::Key_C,
                       [&h] { h.clipboard.CopySequence_Click(); });
  AddClipboardItem(QStringLiteral("&Paste"), Qt::CTRL | Qt::Key_V,
                   [&h] { h.clipboard.Paste_Click(); });
  menu_.addSeparator();
  // The list takes these keys itself; here they are only shown.
  move_up_ = AddItem(QStringLiteral("&Move Up\tCtrl+Up"), [this] { MoveBy(-1); });
  move_down_ = AddItem(QStringLiteral("Move &Down\tCtrl+Down"), [this] { MoveBy(1); });
  show_step_ =
      AddItem(QStringLiteral("S&how Step\tEnter"), [&h] { h.step_list.ListSequence_DblClick(); });
  menu_.addSeparator();
  movement_ =
      AddItem(QStringLiteral("Mo&vement"), [this] { emit MovementWanted(movement_->isChecked()); });
  movement_->setCheckable(true);
  movement_->setShortcut(Qt::CTRL | Qt::Key_M);
  movement_->setAutoRepeat(false);
  list_.window()->addAction(movement_);

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

QAction* ListMenu::AddUndoItem(const QString& text, const QList<QKeySequence>& keys,
                               Action action) {
  QAction* item = AddItem(text, std::move(action));
  item->setShortcuts(keys);
  list_.window()->addAction(item);
  return item;
}

QAction* ListMenu::AddClipboardItem(const QString& text, const QKeySequence& keys, Action action) {
  QAction* item = AddItem(text, std::move(action));
  item->setShortcut(keys);
  item->setAutoRepeat(false);
  list_.window()->addAction(item);
  return item;
}

void ListMenu::Prepare() {
  const UndoCommands& undo = handlers_.undo;
  Name(*undo_, undo.CanUndo(), kUndo, undo.UndoName());
  Name(*redo_, undo.CanRedo(), kRedo, undo.RedoName());
  const int line = handlers_.edited.ListIndex();
  const int lines = handlers_.edited.ListCount();
  for (QAction* item : {cut_, copy_, show_step_}) item->setEnabled(line >= 0);
  copy_sequence_->setEnabled(lines > 0);
  move_up_->setEnabled(line > 0);
  move_down_->setEnabled(line >= 0 && line + 1 < lines);
}

void ListMenu::MoveBy(int distance) {
  const int line = handlers_.edited.ListIndex();
  handlers_.step_list.ListSequence_MoveLine(line, line + distance);
}

}  // namespace pelmora
