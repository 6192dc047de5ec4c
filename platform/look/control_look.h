// What the looks of all controls have in common: the corners, the colours of a control in its
// state, the lamp.
//
// Controls are drawn in two ways. What the toolkit's own controls consist of is drawn by a style,
// which also tells the toolkit where the parts are: `ControlStyle` for all of them, `SlideStyle`
// for faders. What the toolkit's have not (a lamp, a caption on a fader, a mark, a card) is drawn
// by the control's own `paintEvent`: a style is not told of it.
#pragma once

#include <QColor>
#include <QPainter>
#include <QPalette>
#include <QRectF>
#include <QStyleOption>

namespace platform {

inline constexpr double kCornerRadius = 4;  // of all controls

struct ControlState {
  bool enabled = true;
  bool hovered = false;
  bool pressed = false;
  bool focused = false;
  bool on = false;       // a switch, or a list that is locked on its entry
  bool waiting = false;  // counts for one that is On
};

// What the toolkit tells of a control; `on` and `waiting` are left to the caller.
ControlState StateOf(const QStyleOption& option);

// The same of a button. A click gives it the focus, too, but whoever clicks needs no sign of that.
ControlState ButtonStateOf(const QStyleOption& option);

struct ControlColours {
  QColor face;
  QColor edge;
  QColor text;
  QColor lamp;  // the inside of the lamp: that of the face while it is Off
  QColor rim;   // around the lamp
  QColor word;  // "ON" or "OFF"
};

// Of buttons, switches and closed lists.
ControlColours ButtonColoursOf(const ControlState& state, const QPalette& palette);

// Of fields: those that take no typing have another ground and hardly an edge.
ControlColours FieldColoursOf(const ControlState& state, bool read_only, const QPalette& palette);

// A box with round corners. The edge is drawn inside `rect`.
void DrawBox(QPainter& painter, const QRect& rect, const QColor& ground, const QColor& edge,
             bool focused, double radius = kCornerRadius);

// A lamp in the circle inside `place`.
void DrawLamp(QPainter& painter, const QRectF& place, const ControlColours& colours, bool lit);

}  // namespace platform
