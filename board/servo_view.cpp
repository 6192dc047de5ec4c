#include "board/servo_view.h"

#include <QPainter>
#include <QPainterPath>

#include "board/angle_text.h"
#include "board/window_look.h"

namespace simboard {
namespace {

// The servo is drawn around its shaft, in these units.
constexpr qreal kBodyWidth = 34;
constexpr qreal kBodyAbove = 17;  // how far the case reaches beyond the shaft
constexpr qreal kBodyBelow = 45;
constexpr qreal kTabWidth = 22;
constexpr qreal kTabLength = 8;
constexpr qreal kHornLength = 34;
constexpr qreal kHornTail = 14;
constexpr qreal kTravel = 64;  // degrees to each side

// A horn that tapers from its hub to its tip.
QPainterPath HornShape() {
  QPainterPath arm;
  arm.moveTo(-6, 0);
  arm.lineTo(-3.2, -kHornLength + 3);
  arm.arcTo(QRectF(-3.2, -kHornLength, 6.4, 6.4), 180, -180);
  arm.lineTo(6, 0);
  arm.lineTo(4, kHornTail - 4);
  arm.arcTo(QRectF(-4, kHornTail - 8, 8, 8), 0, -180);
  arm.closeSubpath();
  QPainterPath hub;
  hub.addEllipse(QPointF(0, 0), 8, 8);
  return arm.united(hub);
}

}  // namespace

ServoView::ServoView(int channel, QWidget* parent)
    : QWidget(parent), name_(QStringLiteral("Ch%1").arg(channel)) {
  setAccessibleName(QStringLiteral("Servo %1").arg(name_));
  Show(position_);
}

void ServoView::Show(std::uint8_t position) {
  if (position == position_ && !angle_.isEmpty()) return;
  position_ = position;
  angle_ = QString::fromStdString(AngleText(position));
  setAccessibleDescription(angle_);
  update();
}

void ServoView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(look::kCardEdge, 1));
  painter.setBrush(look::kCard);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);

  const QRectF words = QRectF(rect()).adjusted(12, height() - 26, -12, -6);
  painter.setPen(look::kQuietText);
  painter.setFont(look::Letters(13));
  painter.drawText(words, Qt::AlignLeft | Qt::AlignVCenter, name_);
  painter.setPen(look::kText);
  painter.setFont(look::Letters(14, QFont::Bold));
  painter.drawText(words, Qt::AlignRight | Qt::AlignVCenter, angle_);

  painter.translate(width() / 2.0, 44);
  PaintBody(painter);
  PaintHorn(painter);
}

void ServoView::PaintBody(QPainter& painter) const {
  const QRectF travel(-kHornLength - 3, -kHornLength - 3, 2 * kHornLength + 6, 2 * kHornLength + 6);
  painter.setPen(QPen(look::kTrack, 3, Qt::SolidLine, Qt::FlatCap));
  painter.setBrush(Qt::NoBrush);
  painter.drawArc(travel, static_cast<int>((90 - kTravel) * 16),
                  static_cast<int>(2 * kTravel * 16));

  painter.setPen(QPen(look::kServoEdge, 1));
  painter.setBrush(look::kServoBody.lighter(125));
  for (const qreal top : {-kBodyAbove - kTabLength, kBodyBelow - kTabLength}) {
    painter.drawRoundedRect(QRectF(-kTabWidth / 2, top, kTabWidth, 2 * kTabLength), 2, 2);
  }
  painter.setBrush(look::kCard);
  painter.drawEllipse(QPointF(0, -kBodyAbove - kTabLength / 2), 2, 2);
  painter.drawEllipse(QPointF(0, kBodyBelow + kTabLength / 2), 2, 2);
  painter.setBrush(look::kServoBody);
  painter.drawRoundedRect(QRectF(-kBodyWidth / 2, -kBodyAbove, kBodyWidth, kBodyAbove + kBodyBelow),
                          4, 4);
  painter.setBrush(look::kServoBody.darker(115));
  painter.drawEllipse(QPointF(0, 0), 13, 13);
}

void ServoView::PaintHorn(QPainter& painter) const {
  painter.save();
  painter.rotate((position_ - 128) / 2.0);
  painter.setPen(QPen(look::kAccent.darker(120), 1));
  painter.setBrush(position_ == 128 ? QColor(0xF7, 0xF9, 0xFB) : look::kAccentPale);
  painter.drawPath(HornShape());
  painter.setPen(Qt::NoPen);
  painter.setBrush(look::kAccent);
  for (const qreal hole : {-14.0, -21.0, -28.0}) painter.drawEllipse(QPointF(0, hole), 1.2, 1.2);
  painter.drawEllipse(QPointF(0, 0), 3, 3);
  painter.restore();
}

}  // namespace simboard
