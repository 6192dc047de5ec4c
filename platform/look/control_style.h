// The look of the toolkit's own controls (buttons, fields, lists, the bar), so that they and the
// controls drawn here look like one family; and no icons on a dialog's buttons.
#pragma once

#include <QProxyStyle>

namespace platform {

class ControlStyle : public QProxyStyle {
 public:
  ControlStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

  using QProxyStyle::polish;
  void polish(QWidget* widget) override;

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;
  QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                     const QWidget* widget) const override;
};

}  // namespace platform
