// Giving up a press when the pointer is taken away from the control: a message or a dialog has come
// up in front of its window, or it has been disabled. The toolkit would keep the control pressed
// and take the release, if it ever comes, for a click.
#pragma once

#include <QMouseEvent>
#include <QWidget>

namespace platform {

// Whether this event, sent to the control, takes the pointer away from it.
inline bool TakesPointer(const QEvent& event, const QWidget& control) {
  return event.type() == QEvent::WindowBlocked ||
         (event.type() == QEvent::EnabledChange && !control.isEnabled());
}

// A release of the left button beside the control, which ends a press without a click. The control
// gives it to its own handler: a disabled one is sent no input.
inline QMouseEvent ReleaseBeside(const QWidget& control) {
  const QPointF beside(-1, -1);
  return {QEvent::MouseButtonRelease, beside, control.mapToGlobal(beside), Qt::LeftButton, {}, {}};
}

}  // namespace platform
