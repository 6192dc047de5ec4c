#include "platform/look/control_style.h"

#include <QAbstractItemView>
#include <QIcon>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPushButton>
#include <QStyleOption>

#include "platform/look/control_look.h"

namespace platform {
namespace {

constexpr int kListFrame = 2;  // pixels: the lines leave the frame's round corners free
constexpr int kIcon = 32;      // pixels, in a message box
constexpr int kArrow = 7;      // pixels, the width of an arrow

void DrawArrow(QPainter& painter, const QRect& place, bool up, const QColor& colour) {
  const QPointF middle = QRectF(place).center();
  const double half = kArrow / 2.0;
  const double tip = up ? -half / 2 : half / 2;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawPolygon(QPolygonF(
      {middle + QPointF(-half, -tip), middle + QPointF(half, -tip), middle + QPointF(0, tip)}));
  painter.restore();
}

void DrawButton(QPainter& painter, const QStyleOption& option) {
  const ControlState state = ButtonStateOf(option);
  const ControlColours colours = ButtonColoursOf(state, option.palette);
  DrawBox(painter, option.rect, colours.face, colours.edge, state.focused);
}

void DrawField(QPainter& painter, const QStyleOption& option) {
  const bool read_only = option.state.testFlag(QStyle::State_ReadOnly);
  const ControlState state = StateOf(option);
  const ControlColours colours = FieldColoursOf(state, read_only, option.palette);
  DrawBox(painter, option.rect, colours.face, colours.edge, state.focused);
}

void DrawListFrame(QPainter& painter, const QStyleOption& option) {
  // A disabled list is still read.
  const ControlState state = {.focused = option.state.testFlag(QStyle::State_HasFocus)};
  const ControlColours colours = FieldColoursOf(state, false, option.palette);
  DrawBox(painter, option.rect, colours.face, colours.edge, false);
}

void DrawBar(QPainter& painter, const QStyleOptionProgressBar& bar) {
  const QPalette& palette = bar.palette;
  const QColor edge = FieldColoursOf({}, false, palette).edge;
  DrawBox(painter, bar.rect, palette.color(QPalette::Base), edge, false);
  const double done = static_cast<double>(bar.progress) / bar.maximum;  // from 0
  const QRectF inside = QRectF(bar.rect).adjusted(1, 1, -1, -1);
  const QRectF full(inside.topLeft(), QSizeF(inside.width() * done, inside.height()));

  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath shape;
  shape.addRoundedRect(inside, kCornerRadius - 1, kCornerRadius - 1);
  QPainterPath filled;
  filled.addRect(full);
  painter.fillPath(shape.intersected(filled), palette.color(QPalette::Highlight));
  painter.setPen(palette.color(QPalette::Text));
  painter.drawText(bar.rect, Qt::AlignCenter, bar.text);
  painter.setClipRect(full);
  painter.setPen(palette.color(QPalette::HighlightedText));
  painter.drawText(bar.rect, Qt::AlignCenter, bar.text);
  painter.restore();
}

void DrawSpinBox(QPainter& painter, const QStyleOptionSpinBox& box, const QRect& up,
                 const QRect& down) {
  const ControlState state = StateOf(box);
  const ControlColours colours = FieldColoursOf(state, false, box.palette);
  DrawBox(painter, box.rect, colours.face, colours.edge, state.focused);
  for (const bool is_up : {true, false}) {
    const QStyle::SubControl part = is_up ? QStyle::SC_SpinBoxUp : QStyle::SC_SpinBoxDown;
    const QRect& place = is_up ? up : down;
    const bool active = box.activeSubControls == part;
    const bool can_step = box.stepEnabled.testFlag(is_up ? QAbstractSpinBox::StepUpEnabled
                                                         : QAbstractSpinBox::StepDownEnabled);
    const ControlState button = {.enabled = state.enabled && can_step,
                                 .hovered = active && state.hovered,
                                 .pressed = active && state.pressed};
    const ControlColours shown = ButtonColoursOf(button, box.palette);
    painter.fillRect(place.adjusted(0, is_up ? 2 : 0, -2, is_up ? 0 : -2), shown.face);
    DrawArrow(painter, place.adjusted(0, is_up ? 2 : 0, -1, is_up ? 0 : -1), is_up, shown.text);
  }
  painter.fillRect(up.left() - 1, box.rect.top() + 2, 1, box.rect.height() - 4, colours.edge);
}

void DrawClosedList(QPainter& painter, const QStyleOptionComboBox& list, const QRect& arrow) {
  ControlState state = StateOf(list);
  state.pressed = false;
  state.hovered |= list.state.testFlag(QStyle::State_On);  // the list is open
  const ControlColours colours = ButtonColoursOf(state, list.palette);
  DrawBox(painter, list.rect, colours.face, colours.edge, state.focused);
  DrawArrow(painter, arrow, false, colours.text);
}

// A white "i" on a blue disc. The toolkit's own is pale and small.
QIcon InformationIcon(const QPalette& palette) {
  QIcon icon;
  for (const int size : {16, 32, 64}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 32.0, size / 32.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.color(QPalette::Active, QPalette::Highlight));
    painter.drawEllipse(QRectF(1, 1, 30, 30));
    painter.setBrush(palette.color(QPalette::Active, QPalette::HighlightedText));
    painter.drawEllipse(QRectF(13.75, 7, 4.5, 4.5));
    painter.drawRoundedRect(QRectF(14, 13.5, 4, 11.5), 1, 1);
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace

// The toolkit doesn't paint a field anew when the pointer leaves it.
void ControlStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  if (qobject_cast<QLineEdit*>(widget)) widget->setAttribute(Qt::WA_Hover);
}

void ControlStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
  if (element == PE_PanelButtonCommand) {
    DrawButton(*painter, *option);
  } else if (element == PE_PanelLineEdit) {
    // Without a frame it lies on another control, which has drawn the ground.
    const auto& field = *qstyleoption_cast<const QStyleOptionFrame*>(option);
    if (field.lineWidth > 0) DrawField(*painter, field);
  } else if (element == PE_Frame && qobject_cast<const QAbstractItemView*>(widget)) {
    DrawListFrame(*painter, *option);
  } else if (element == PE_FrameFocusRect && qobject_cast<const QPushButton*>(widget)) {
    // The edge shows the focus.
  } else {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void ControlStyle::drawControl(ControlElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
  if (element == CE_ProgressBar) {
    DrawBar(*painter, *qstyleoption_cast<const QStyleOptionProgressBar*>(option));
  } else {
    QProxyStyle::drawControl(element, option, painter, widget);
  }
}

void ControlStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                      QPainter* painter, const QWidget* widget) const {
  const auto part = [&](SubControl sub_control) {
    return proxy()->subControlRect(control, option, sub_control, widget);
  };
  const auto* box = qstyleoption_cast<const QStyleOptionSpinBox*>(option);
  const auto* list = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  if (box) {
    DrawSpinBox(*painter, *box, part(SC_SpinBoxUp), part(SC_SpinBoxDown));
  } else if (list && !list->editable) {
    DrawClosedList(*painter, *list, part(SC_ComboBoxArrow));
  } else {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
}

int ControlStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                              const QWidget* widget) const {
  if (metric == PM_DefaultFrameWidth && qobject_cast<const QAbstractItemView*>(widget)) {
    return kListFrame;
  }
  if (metric == PM_MessageBoxIconSize) return kIcon;
  return QProxyStyle::pixelMetric(metric, option, widget);
}

int ControlStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* data) const {
  if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
  // As a menu the open list would be drawn on the window's colour and over the closed one.
  if (hint == SH_ComboBox_Popup) return 0;
  return QProxyStyle::styleHint(hint, option, widget, data);
}

QIcon ControlStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                                 const QWidget* widget) const {
  if (icon == SP_MessageBoxInformation) {
    return InformationIcon(widget ? widget->palette() : standardPalette());
  }
  return QProxyStyle::standardIcon(icon, option, widget);
}

}  // namespace platform
