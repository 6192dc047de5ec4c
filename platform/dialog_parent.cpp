#include "platform/dialog_parent.h"

#include <QApplication>
#include <QMainWindow>

namespace platform {

QWidget* DialogParent() {
  if (QWidget* dialog = QApplication::activeModalWidget()) return dialog;
  if (QWidget* active = QApplication::activeWindow()) return active;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && qobject_cast<QMainWindow*>(window)) return window;
  }
  return nullptr;
}

}  // namespace platform
