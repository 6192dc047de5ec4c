#include "platform/controls/push_button.h"

#include <QKeyEvent>
#include <QShortcutEvent>

#include "platform/controls/lost_pointer.h"

namespace platform {

bool PushButton::event(QEvent* event) {
  if (TakesPointer(*event, *this)) {
    QMouseEvent release = ReleaseBeside(*this);
    mouseReleaseEvent(&release);
  }
  if (event->type() != QEvent::Shortcut) return QPushButton::event(event);
  const auto& mnemonic = static_cast<const QShortcutEvent&>(*event);
  if (mnemonic.isAmbiguous()) return QPushButton::event(event);
  setShortcutAutoRepeat(mnemonic.shortcutId(), false);
  // The toolkit animates a mnemonic's click and leaves the focus where it was; by the time of the
  // click the field would still hold an uncommitted entry.
  setFocus(Qt::ShortcutFocusReason);
  click();
  return true;
}

void PushButton::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (event->isAutoRepeat() && (enter || event->key() == Qt::Key_Space)) return;
  // The toolkit presses by Enter in dialogs only.
  if (enter) {
    click();
  } else {
    QPushButton::keyPressEvent(event);
  }
}

void PushButton::mouseDoubleClickEvent(QMouseEvent* event) {
  // Without this press the release that follows is no click.
  if (!double_click_presses_once_) QPushButton::mouseDoubleClickEvent(event);
}

}  // namespace platform
