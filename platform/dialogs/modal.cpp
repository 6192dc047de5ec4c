#include "platform/dialogs/modal.h"

#include <QAction>
#include <QApplication>
#include <QPointer>

namespace platform {

QWidget* ModalParent(QWidget* window) {
  QWidget* open = QApplication::activeModalWidget();
  return open ? open : window;
}

void TakeShortcutsOfParents(QDialog& dialog) {
  for (const QWidget* parent = dialog.parentWidget(); parent; parent = parent->parentWidget()) {
    for (QAction* action : parent->actions()) {
      if (action->shortcutContext() == Qt::ApplicationShortcut) dialog.addAction(action);
    }
  }
}

bool RunModal(QDialog& dialog, MainLoop& main_loop) {
  const QPointer<QWidget> active_before = QApplication::activeWindow();
  // An open menu or list would keep pointer and keyboard from the dialog.
  while (QWidget* popup = QApplication::activePopupWidget()) {
    if (!popup->close()) break;
  }
  TakeShortcutsOfParents(dialog);
  QObject::connect(&main_loop, &MainLoop::Ended, &dialog, &QDialog::reject);
  dialog.setWindowModality(Qt::ApplicationModal);
  dialog.show();
  // Shows which button has the focus: the toolkit does after the first Tab only.
  dialog.setAttribute(Qt::WA_KeyboardFocusChange);
  const bool accepted = dialog.exec() == QDialog::Accepted;
  // A window manager turns to the dialog's parent.
  if (active_before && active_before->isVisible()) active_before->activateWindow();
  return accepted;
}

}  // namespace platform
