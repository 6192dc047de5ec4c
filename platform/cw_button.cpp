#include "platform/cw_button.h"

#include <QPainter>
#include <QStyle>

#include "platform/colours.h"

namespace platform {
namespace {

constexpr int kPadding = 9;     // from the edge to the lamp, and to the state word
constexpr int kLamp = 12;       // diameter
constexpr int kLampGap = 6;     // between lamp and caption
constexpr int kStateWord = 30;  // space for "OFF" behind the caption, where there is any
const QColor kLit(46, 170, 76);

void DrawLamp(QPainter& painter, const QRectF& lamp, bool on, const QColor& lit,
              const QColor& rim) {
  if (!on) {
    painter.setPen(QPen(rim, 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(lamp.adjusted(1, 1, -1, -1));
    return;
  }
  QRadialGradient glow(lamp.center(), lamp.width() / 2 + 3);
  glow.setColorAt(0.6, lit);
  QColor edge = lit;
  edge.setAlpha(0);
  glow.setColorAt(1, edge);
  painter.setPen(Qt::NoPen);
  painter.setBrush(glow);
  painter.drawEllipse(lamp.adjusted(-3, -3, 3, 3));
  QRadialGradient bulb(lamp.topLeft() + QPointF(lamp.width() * 0.35, lamp.height() * 0.3),
                       lamp.width() * 0.8);
  bulb.setColorAt(0, lit.lighter(170));
  bulb.setColorAt(1, lit);
  painter.setPen(QPen(lit.darker(130), 1));
  painter.setBrush(bulb);
  painter.drawEllipse(lamp.adjusted(0.5, 0.5, -0.5, -0.5));
}

}  // namespace

CWButton::CWButton(const QString& caption, QWidget* parent) : PushButton(caption, parent) {
  setCheckable(true);
  setAttribute(Qt::WA_Hover);
  // During a click the button does not show its new state until the click's handlers are done, and
  // a handler may open a message box.
  connect(this, &QAbstractButton::toggled, this, [this] { update(); });
}

QSize CWButton::sizeHint() const {
  const QSize caption = fontMetrics().size(Qt::TextShowMnemonic, text());
  return {kPadding + kLamp + kLampGap + caption.width() + kPadding, caption.height() + 10};
}

void CWButton::paintEvent(QPaintEvent*) {
  const bool on = isChecked();
  const QColor window = palette().color(QPalette::Window);
  const QColor text = palette().color(QPalette::ButtonText);
  const QColor lit = isEnabled() ? kLit : Blend(kLit, window, 0.45);
  QColor face = palette().color(QPalette::Button);
  if (on) face = Blend(face, lit, isEnabled() ? 0.2 : 0.12);
  if (isDown()) {
    face = face.darker(108);
  } else if (underMouse() && isEnabled()) {
    face = face.lighter(103);
  }

  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF body = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(QPen(on ? lit.darker(115) : Blend(window, text, isEnabled() ? 0.4 : 0.2), 1));
  painter.setBrush(face);
  painter.drawRoundedRect(body, 4, 4);
  if (hasFocus()) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(body.adjusted(2, 2, -2, -2), 3, 3);
  }

  const QRectF lamp(kPadding, (height() - kLamp) / 2.0, kLamp, kLamp);
  DrawLamp(painter, lamp, on, lit, Blend(window, text, isEnabled() ? 0.6 : 0.35));

  const int caption_left = kPadding + kLamp + kLampGap;
  QRect caption = rect().adjusted(caption_left, 0, -kPadding, 0);
  const bool wide = width() >= sizeHint().width() + kStateWord;
  if (wide) {
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(on ? lit.darker(150) : Blend(window, text, isEnabled() ? 0.6 : 0.35));
    painter.drawText(caption, Qt::AlignVCenter | Qt::AlignRight, on ? "ON" : "OFF");
    painter.setFont(font());
    caption.adjust(0, 0, -kStateWord, 0);
  }
  style()->drawItemText(&painter, caption, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic,
                        palette(), isEnabled(), this->text(), QPalette::ButtonText);
}

}  // namespace platform
