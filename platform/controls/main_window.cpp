#include "platform/controls/main_window.h"

#include <QEvent>

namespace platform {

void MainWindow::SetRestingControl(QWidget& control) {
  resting_control_ = &control;
  control.installEventFilter(this);
  control.setFocus();
}

// True when the focus had to move.
bool MainWindow::Rest() {
  const QWidget* focus = focusWidget();
  if (focus && focus->isEnabled() && focus->isVisible()) return false;
  if (!resting_control_ || !resting_control_->isEnabled()) return false;
  resting_control_->setFocus();
  return true;
}

// The toolkit calls this for Tab, and when the control that has the focus is disabled or hidden.
bool MainWindow::focusNextPrevChild(bool next) {
  return Rest() || QMainWindow::focusNextPrevChild(next);
}

// While another window is active, it looks for a successor no sooner than this one is active again.
bool MainWindow::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate) Rest();
  return QMainWindow::event(event);
}

// In a window that is disabled as a whole nothing has the focus.
bool MainWindow::eventFilter(QObject* target, QEvent* event) {
  if (event->type() == QEvent::EnabledChange) Rest();
  return QMainWindow::eventFilter(target, event);
}

}  // namespace platform
