#include "platform/controls/cw_button.h"

#include <QPainter>
#include <QStyle>

#include "platform/look/control_look.h"

namespace platform {
namespace {

constexpr int kPadding = 9;     // from the edge to the lamp, and to the state word
constexpr int kLamp = 12;       // diameter
constexpr int kLampGap = 6;     // between lamp and caption
constexpr int kStateWord = 30;  // space for "OFF" behind the caption, where there is any

}  // namespace

CWButton::CWButton(const QString& caption, QWidget* parent) : PushButton(caption, parent) {
  setCheckable(true);
  setAttribute(Qt::WA_Hover);
  // During a click the button does not show its new state until the click's handlers are done, and
  // a handler may open a message box.
  connect(this, &QAbstractButton::toggled, this, [this] { update(); });
}

void CWButton::SetWaiting(bool waiting) {
  waiting_ = waiting;
  update();
}

QSize CWButton::sizeHint() const {
  const QSize caption = fontMetrics().size(Qt::TextShowMnemonic, text());
  return {kPadding + kLamp + kLampGap + caption.width() + kPadding, caption.height() + 10};
}

void CWButton::paintEvent(QPaintEvent*) {
  QStyleOptionButton option;
  initStyleOption(&option);
  ControlState state = ButtonStateOf(option);
  state.on = isChecked();
  state.waiting = waiting_;
  const ControlColours colours = ButtonColoursOf(state, palette());

  QPainter painter(this);
  DrawBox(painter, rect(), colours.face, colours.edge, state.focused);
  DrawLamp(painter, QRectF(kPadding, (height() - kLamp) / 2.0, kLamp, kLamp), colours, state.on);

  QRect caption = rect().adjusted(kPadding + kLamp + kLampGap, 0, -kPadding, 0);
  if (width() >= sizeHint().width() + kStateWord) {
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(colours.word);
    painter.drawText(caption, Qt::AlignVCenter | Qt::AlignRight, state.on ? "ON" : "OFF");
    painter.setFont(font());
    caption.adjust(0, 0, -kStateWord, 0);
  }
  style()->drawItemText(&painter, caption, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic,
                        palette(), isEnabled(), text(), QPalette::ButtonText);
}

}  // namespace platform
