#include "platform/dialogs/modal.h"

#include <QAction>
#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMainWindow>
#include <QPointer>
#include <QWindow>

namespace platform {
namespace {

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
    case QEvent::DragEnter:
      return true;
    default:
      return false;
  }
}

// Lets input through only to one dialog and what was opened from it.
class InputGuard : public QObject {
 public:
  explicit InputGuard(QDialog& dialog) : dialog_(&dialog) { qApp->installEventFilter(this); }

  bool eventFilter(QObject* target, QEvent* event) override {
    if (!IsInput(event->type()) || !dialog_) return false;
    if (event->type() == QEvent::KeyPress) {
      if (!static_cast<QKeyEvent*>(event)->isAutoRepeat()) {
        held_key_ = false;
      } else if (held_key_) {
        return true;
      }
    }
    if (MayHave(target)) return false;
    if (event->type() == QEvent::MouseButtonPress) QApplication::beep();
    return true;
  }

 private:
  bool MayHave(QObject* target) const {
    for (const QObject* object = target; object; object = object->parent()) {
      if (object == dialog_) return true;
    }
    if (const auto* action = qobject_cast<QAction*>(target)) {
      return action->shortcutContext() == Qt::ApplicationShortcut;
    }
    // None but the dialog's own can have opened since the others were closed.
    if (const auto* widget = qobject_cast<QWidget*>(target)) {
      return widget->window()->windowType() == Qt::Popup;
    }
    const auto* window = qobject_cast<QWindow*>(target);
    if (window && window->type() == Qt::Popup) return true;
    while (window && window != dialog_->windowHandle()) window = window->transientParent();
    return window != nullptr;
  }

  const QPointer<QDialog> dialog_;
  bool held_key_ = true;  // no key has been pressed anew
};

QWidget* MainWindow() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && qobject_cast<QMainWindow*>(window)) return window;
  }
  return nullptr;
}

QWidget* DialogOf(const QWidget* window) {
  for (QWidget* dialog : QApplication::topLevelWidgets()) {
    if (dialog->isVisible() && qobject_cast<QDialog*>(dialog) && dialog->parentWidget() &&
        dialog->parentWidget()->window() == window) {
      return dialog;
    }
  }
  return nullptr;
}

}  // namespace

QWidget* DialogParent() {
  QWidget* parent = MainWindow();
  while (QWidget* dialog = parent ? DialogOf(parent) : nullptr) parent = dialog;
  return parent;
}

bool RunModal(QDialog& dialog, Events& events) {
  // An open menu or list would keep pointer and keyboard from the dialog.
  while (QWidget* popup = QApplication::activePopupWidget()) {
    if (!popup->close()) break;
  }
  // The window that owns the dialog may go away while it is open.
  const QPointer<QDialog> open(&dialog);
  const InputGuard guard(dialog);
  QEventLoop loop;
  QObject::connect(&dialog, &QDialog::finished, &loop, &QEventLoop::quit);
  QObject::connect(&dialog, &QObject::destroyed, &loop, &QEventLoop::quit);
  QObject::connect(&events, &Events::Ended, &dialog, &QDialog::reject);
  dialog.setWindowModality(Qt::NonModal);
  dialog.show();
  dialog.activateWindow();
  loop.exec();
  return open && open->result() == QDialog::Accepted;
}

}  // namespace platform
