#include "platform/drop_down_list.h"

#include <QKeyEvent>
#include <QWheelEvent>

namespace platform {

DropDownList::DropDownList(QWidget* parent) : QComboBox(parent) {
  setFocusPolicy(Qt::StrongFocus);
  connect(this, &QComboBox::activated, this, &DropDownList::Click);
}

void DropDownList::RefreshToolTips() {
  if (!ToolTip) return;
  for (int i = 0; i < count(); ++i) setItemData(i, ToolTip(itemData(i).toInt()), Qt::ToolTipRole);
}

void DropDownList::showPopup() {
  RefreshToolTips();
  QComboBox::showPopup();
}

bool DropDownList::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && ToolTip) {
    setToolTip(currentIndex() < 0 ? QString() : ToolTip(currentData().toInt()));
  }
  return QComboBox::event(event);
}

void DropDownList::keyPressEvent(QKeyEvent* event) {
  // On a closed list the toolkit chooses the next entry at once, entry by entry on the way to the
  // one that is meant. An entry is chosen from the open list only.
  const bool leaves = event->matches(QKeySequence::Cancel) || event->key() == Qt::Key_Tab ||
                      event->key() == Qt::Key_Backtab;
  const bool plain = (event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) == 0;
  const bool moves = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down ||
                     event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown ||
                     event->key() == Qt::Key_Home || event->key() == Qt::Key_End;
  const bool types = !event->text().isEmpty() && event->text().at(0).isPrint();
  if (!leaves && plain && (moves || types)) {
    showPopup();
    event->accept();
    return;
  }
  QComboBox::keyPressEvent(event);
}

void DropDownList::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

}  // namespace platform
