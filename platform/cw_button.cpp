#include "platform/cw_button.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace platform {

CWButton::CWButton(const QString& caption, QWidget* parent) : QPushButton(caption, parent) {
  setCheckable(true);
  setFocusPolicy(Qt::StrongFocus);
  connect(this, &QAbstractButton::toggled, this, [this](bool on) {
    // During a click the button does not show its new state until the click's handlers are done,
    // and a handler may open a message box.
    update();
    emit ValueChanged(on);
  });
}

QSize CWButton::sizeHint() const {
  return QPushButton::sizeHint();
}

void CWButton::paintEvent(QPaintEvent* event) {
  QPushButton::paintEvent(event);
}

}  // namespace platform
