// The look of faders and the places of their parts: what is drawn is also what the mouse hits.
#pragma once

#include <QCommonStyle>

namespace platform {

// Draws a `CWSlide`. Pressing beside the handle moves it by a page and never to the pointer.
class SlideStyle : public QCommonStyle {
  Q_OBJECT
 public:
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                       SubControl sub_control, const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;
};

}  // namespace platform
