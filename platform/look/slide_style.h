// The look of faders and the places of their parts: what is drawn is also what the mouse hits.
#pragma once

#include <QCommonStyle>
#include <QStyleOptionSlider>

#include "platform/look/control_look.h"

namespace platform {

struct SlideColours {
  QColor text;
  QColor tick;
  QColor major_tick;  // at the ends and the centre
  QColor groove;
  QColor groove_edge;
  QColor accent;  // between the centre and the handle
  QColor handle;
  QColor handle_edge;
  QColor mark;       // inside a mark
  QColor mark_edge;  // around it
};

// On the ground of a panel.
SlideColours SlideColoursOf(const ControlState& state, const QPalette& palette);

// Draws the text above a fader, in the middle over it where `area`, that of the whole control, has
// the room.
void DrawSlideCaption(QPainter& painter, const QStyleOptionSlider& option, const QRect& area,
                      const QString& caption);

// Draws a pale handle at the place of `value`. The fader is drawn over it.
void DrawSlideMark(QPainter& painter, const QStyleOptionSlider& option, int value);

// Draws a vertical fader below its caption, in the middle of the option's rectangle. Pressing
// beside the handle moves it by a page and never to the pointer.
// A style of its own for each fader, and no part of `ControlStyle`: other sliders, such as scroll
// bars in dialogs, keep the toolkit's parts.
class SlideStyle : public QCommonStyle {
 public:
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                       SubControl sub_control, const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;
};

}  // namespace platform
