#include "platform/look/control_look.h"

#include "platform/look/colours.h"

namespace platform {

ControlState StateOf(const QStyleOption& option) {
  return {.enabled = option.state.testFlag(QStyle::State_Enabled),
          .hovered = option.state.testFlag(QStyle::State_MouseOver),
          .pressed = option.state.testFlag(QStyle::State_Sunken),
          .focused = option.state.testFlag(QStyle::State_HasFocus)};
}

ControlState ButtonStateOf(const QStyleOption& option) {
  ControlState state = StateOf(option);
  state.focused &= option.state.testFlag(QStyle::State_KeyboardFocusChange);
  return state;
}

ControlColours ButtonColoursOf(const ControlState& state, const QPalette& palette) {
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  const QColor button = palette.color(QPalette::Active, QPalette::Button);
  const QColor text = palette.color(QPalette::Active, QPalette::ButtonText);
  const QColor faded = palette.color(QPalette::Disabled, QPalette::ButtonText);
  const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);

  ControlColours colours;
  colours.text = state.enabled ? text : faded;
  colours.edge = Blend(button, text, state.enabled ? kEdgeShare : 0.2);
  colours.face = button;
  colours.rim = state.enabled ? Blend(button, text, 0.78) : faded;
  colours.word = colours.rim;
  if (state.on) {
    const SignalColours& signal = state.waiting ? kWaitingSignal : kOnSignal;
    const double paled = state.enabled ? 0 : 0.4;
    colours.lamp = Blend(signal.lamp, window, paled);
    colours.edge = colours.rim = Blend(signal.edge, window, paled);
    colours.word = state.enabled ? signal.word : Blend(signal.word, window, 0.2);
    colours.face = Blend(button, signal.lamp, state.enabled ? 0.2 : 0.1);
  }
  if (state.enabled && state.pressed) {
    colours.face = Blend(colours.face, text, 0.14);
  } else if (state.enabled && state.hovered) {
    colours.face = Blend(colours.face, accent, 0.14);
    if (!state.on) colours.edge = accent;
  }
  if (state.focused) colours.edge = accent;
  if (!state.on) colours.lamp = colours.face;
  return colours;
}

ControlColours FieldColoursOf(const ControlState& state, bool read_only, const QPalette& palette) {
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  const QColor base = palette.color(QPalette::Active, QPalette::Base);
  const QColor text = palette.color(QPalette::Active, QPalette::Text);
  const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);

  ControlColours colours;
  colours.text = state.enabled ? text : palette.color(QPalette::Disabled, QPalette::Text);
  const bool takes_typing = state.enabled && !read_only;
  colours.face = takes_typing ? base : window;
  colours.edge = takes_typing ? Blend(base, text, kEdgeShare)
                              : palette.color(QPalette::Active, QPalette::Midlight);
  if (state.focused || (takes_typing && state.hovered)) colours.edge = accent;
  return colours;
}

void DrawBox(QPainter& painter, const QRect& rect, const QColor& ground, const QColor& edge,
             bool focused, double radius) {
  const double width = focused ? 2 : 1;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(edge, width));
  painter.setBrush(ground);
  const double half = width / 2;
  painter.drawRoundedRect(QRectF(rect).adjusted(half, half, -half, -half), radius - half,
                          radius - half);
  painter.restore();
}

void DrawLamp(QPainter& painter, const QRectF& place, const ControlColours& colours, bool lit) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (lit) {
    QRadialGradient glow(place.center(), place.width() / 2 + 3);
    glow.setColorAt(0.6, colours.lamp);
    QColor outside = colours.lamp;
    outside.setAlpha(0);
    glow.setColorAt(1, outside);
    painter.setPen(Qt::NoPen);
    painter.setBrush(glow);
    painter.drawEllipse(place.adjusted(-3, -3, 3, 3));
    QRadialGradient bulb(place.topLeft() + QPointF(place.width() * 0.35, place.height() * 0.3),
                         place.width() * 0.8);
    bulb.setColorAt(0, colours.lamp.lighter(170));
    bulb.setColorAt(1, colours.lamp);
    painter.setPen(colours.rim);
    painter.setBrush(bulb);
    painter.drawEllipse(place.adjusted(0.5, 0.5, -0.5, -0.5));
  } else {
    painter.setPen(QPen(colours.rim, 1.5));
    painter.drawEllipse(place.adjusted(1, 1, -1, -1));
  }
  painter.restore();
}

}  // namespace platform
