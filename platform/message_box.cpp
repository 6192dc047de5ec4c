#include "platform/message_box.h"

#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QWindow>

#include "platform/dialog_parent.h"

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

// Whether input for `target` is for the box or for a window that was opened on top of it.
bool BelongsTo(const QObject* target, const QMessageBox& box) {
  if (const auto* widget = qobject_cast<const QWidget*>(target)) {
    while (widget && widget != &box) widget = widget->parentWidget();
    return widget == &box;
  }
  const auto* window = qobject_cast<const QWindow*>(target);
  while (window && window != box.windowHandle()) window = window->transientParent();
  return window && window == box.windowHandle();
}

}  // namespace

void ModalMessageBox::Show(const QString& text, const QString& title) {
  if (events_.Ending()) return;
  // On the heap and watched: the window that owns the box may go away while the box is open.
  QWidget* parent = open_.empty() || !open_.back() ? DialogParent() : open_.back().data();
  const QPointer<QMessageBox> box =
      new QMessageBox(QMessageBox::Information, title, text, QMessageBox::Ok, parent);
  box->setObjectName("MessageBox");
  box->setTextFormat(Qt::PlainText);
  box->setWindowModality(Qt::NonModal);
  QEventLoop loop;
  connect(box, &QDialog::finished, &loop, &QEventLoop::quit);
  connect(box, &QObject::destroyed, &loop, &QEventLoop::quit);
  connect(&events_, &Events::Ended, box, &QDialog::reject);
  if (open_.empty()) qApp->installEventFilter(this);
  open_.push_back(box);
  box->show();
  box->activateWindow();
  loop.exec();
  open_.pop_back();
  if (open_.empty()) qApp->removeEventFilter(this);
  delete box.data();
}

bool ModalMessageBox::eventFilter(QObject* target, QEvent* event) {
  // A key that was held when the box came up would close it unread.
  if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->isAutoRepeat()) {
    return true;
  }
  if (!IsInput(event->type()) || !open_.back() || BelongsTo(target, *open_.back())) return false;
  if (event->type() == QEvent::MouseButtonPress) QApplication::beep();
  return true;
}

}  // namespace platform
