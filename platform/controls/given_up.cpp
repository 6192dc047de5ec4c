#include "platform/controls/given_up.h"

namespace platform {

bool TakesPointer(const QEvent& event, const QWidget& control) {
  return event.type() == QEvent::WindowBlocked ||
         (event.type() == QEvent::EnabledChange && !control.isEnabled());
}

QMouseEvent ReleaseBeside(const QWidget& control) {
  const QPointF beside(-1, -1);
  return {QEvent::MouseButtonRelease,
          beside,
          control.mapToGlobal(beside),
          Qt::LeftButton,
          Qt::NoButton,
          Qt::NoModifier};
}

}  // namespace platform
