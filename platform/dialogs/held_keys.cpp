#include "platform/dialogs/held_keys.h"

#include <QKeyEvent>

namespace platform {

IgnoreHeldKeys::IgnoreHeldKeys(QObject* dialog) : QObject(dialog) {
  dialog->installEventFilter(this);
}

bool IgnoreHeldKeys::eventFilter(QObject*, QEvent* event) {
  return event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->isAutoRepeat();
}

}  // namespace platform
