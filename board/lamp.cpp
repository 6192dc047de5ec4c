#include "board/lamp.h"

#include <QPainter>
#include <QRadialGradient>

#include "board/window_look.h"

namespace simboard {

Lamp::Lamp(const QString& caption, QWidget* parent) : QWidget(parent), caption_(caption) {
  setAccessibleName(caption);
  Show(false);
}

void Lamp::Show(bool lit) {
  if (lit == lit_ && !state_.isEmpty()) return;
  lit_ = lit;
  state_ = lit ? QStringLiteral("on") : QStringLiteral("off");
  setAccessibleDescription(state_);
  update();
}

void Lamp::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPointF centre(13, height() / 2.0);
  const QColor colour = lit_ ? look::kLampOn : look::kLampOff;
  if (lit_) {
    QRadialGradient glow(centre, 13);
    QColor edge = colour;
    edge.setAlpha(0);
    QColor heart = colour;
    heart.setAlpha(120);
    glow.setColorAt(0.4, heart);
    glow.setColorAt(1, edge);
    painter.setPen(Qt::NoPen);
    painter.setBrush(glow);
    painter.drawEllipse(centre, 13, 13);
  }
  painter.setPen(QPen(colour.darker(125), 1));
  painter.setBrush(colour);
  painter.drawEllipse(centre, 7, 7);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(255, 255, 255, lit_ ? 130 : 90));
  painter.drawEllipse(centre + QPointF(-2, -2.5), 2.4, 2);

  painter.setPen(look::kText);
  painter.setFont(look::Letters(14, QFont::Bold));
  painter.drawText(rect().adjusted(32, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                   caption_ + u' ' + state_);
}

}  // namespace simboard
