#include "platform/push_button.h"

#include <QPointer>
#include <QShortcutEvent>

namespace platform {

PushButton::PushButton(const QString& caption, QWidget* parent) : QPushButton(caption, parent) {
  setFocusPolicy(Qt::StrongFocus);
}

bool PushButton::event(QEvent* event) {
  // The toolkit animates a mnemonic's click and leaves the focus where it was; by the time of the
  // click the field would still hold an uncommitted entry.
  if (event->type() != QEvent::Shortcut || static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
    return QPushButton::event(event);
  }
  const QPointer<PushButton> self(this);
  setFocus(Qt::ShortcutFocusReason);
  if (self) click();
  return true;
}

}  // namespace platform
