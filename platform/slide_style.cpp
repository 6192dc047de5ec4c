#include "platform/slide_style.h"

#include <QPainter>
#include <QStyleOptionSlider>
#include <algorithm>

#include "platform/colours.h"
#include "platform/cw_slide.h"

namespace platform {
namespace {

constexpr int kHandleLength = 15;  // along the fader
constexpr int kHandleWidth = 25;   // across it
constexpr int kGrooveWidth = 5;
constexpr int kTickLength = 5;
constexpr int kTickDistance = 7;  // from the fader's axis to the inner end of a tick
constexpr int kTickCount = 9;     // on each side, the ends and the centre among them
constexpr int kCaptionGap = 3;    // below the caption

QRect FaderTrack(const QStyleOptionSlider& option) {
  const int caption = option.fontMetrics.height() + kCaptionGap;
  return option.rect.adjusted(0, caption, 0, -1);
}

// The vertical centre of the handle when it stands for `value`.
int FaderY(const QStyleOptionSlider& option, int value) {
  const QRect track = FaderTrack(option);
  return track.top() + kHandleLength / 2 +
         QStyle::sliderPositionFromValue(option.minimum, option.maximum, value,
                                         track.height() - kHandleLength, option.upsideDown);
}

QRect FaderHandle(const QStyleOptionSlider& option) {
  QRect handle(0, 0, kHandleWidth, kHandleLength);
  handle.moveCenter({option.rect.center().x(), FaderY(option, option.sliderPosition)});
  return handle;
}

void DrawTicks(QPainter& painter, const QStyleOptionSlider& option, const QColor& pale,
               const QColor& strong) {
  const int x = option.rect.center().x();
  for (int i = 0; i < kTickCount; ++i) {
    const bool centre = i == kTickCount / 2;
    const int y = FaderY(option, (option.maximum + 1) * i / (kTickCount - 1));
    const bool major = centre || i == 0 || i == kTickCount - 1;
    const int length = major ? kTickLength + 2 : kTickLength - 1;
    painter.fillRect(x - kTickDistance - length + 1, y, length, 1, major ? strong : pale);
    painter.fillRect(x + kTickDistance, y, length, 1, major ? strong : pale);
  }
}

void DrawHandle(QPainter& painter, const QStyleOptionSlider& option, const QColor& accent) {
  const QPalette& palette = option.palette;
  const bool enabled = (option.state & QStyle::State_Enabled) != 0;
  const bool focus = (option.state & QStyle::State_HasFocus) != 0;
  const bool pressed = (option.state & QStyle::State_Sunken) != 0 &&
                       (option.activeSubControls & QStyle::SC_SliderHandle);
  const QRectF body = QRectF(FaderHandle(option)).adjusted(0.5, 0.5, -0.5, -0.5);
  const QColor face = palette.color(QPalette::Button);

  QLinearGradient shade(body.topLeft(), body.bottomLeft());
  shade.setColorAt(0, face.lighter(pressed ? 98 : 108));
  shade.setColorAt(1, face.darker(pressed ? 112 : 106));
  const QColor edge = focus ? accent : Blend(face, palette.color(QPalette::WindowText), 0.45);
  painter.setPen(QPen(edge, focus ? 1.5 : 1));
  painter.setBrush(enabled ? QBrush(shade) : QBrush(face));
  painter.drawRoundedRect(body, 3, 3);

  painter.setRenderHint(QPainter::Antialiasing, false);
  const QRect handle = FaderHandle(option);
  painter.fillRect(handle.left() + 5, handle.center().y(), handle.width() - 10, 1, accent);
  painter.setRenderHint(QPainter::Antialiasing);
}

void DrawFader(QPainter& painter, const QStyleOptionSlider& option, const QString& caption) {
  const QPalette& palette = option.palette;
  const bool enabled = (option.state & QStyle::State_Enabled) != 0;
  const QColor window = palette.color(QPalette::Window);
  const QColor text = palette.color(QPalette::WindowText);
  const QColor accent = enabled ? palette.color(QPalette::Highlight) : Blend(window, text, 0.3);

  painter.setPen(text);
  painter.drawText(option.rect, Qt::AlignHCenter | Qt::AlignTop, caption);
  DrawTicks(painter, option, Blend(window, text, 0.3), Blend(window, text, enabled ? 0.65 : 0.4));

  painter.setRenderHint(QPainter::Antialiasing);
  const QRect track = FaderTrack(option);
  const QRectF groove(option.rect.center().x() - (kGrooveWidth - 1) / 2.0, track.top() + 2,
                      kGrooveWidth, track.height() - 4);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Blend(window, text, 0.22));
  painter.drawRoundedRect(groove, kGrooveWidth / 2.0, kGrooveWidth / 2.0);

  const int centre = FaderY(option, (option.maximum + 1) / 2);
  const int handle = FaderY(option, option.sliderPosition);
  painter.setBrush(accent);
  painter.drawRect(QRectF(groove.left(), std::min(centre, handle), kGrooveWidth,
                          std::max(centre, handle) - std::min(centre, handle) + 1));
  DrawHandle(painter, option, accent);
}

}  // namespace

void SlideStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
  const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
  const auto* slide = qobject_cast<const CWSlide*>(widget);
  if (control != CC_Slider || slider == nullptr || slide == nullptr) {
    QCommonStyle::drawComplexControl(control, option, painter, widget);
    return;
  }
  painter->save();
  DrawFader(*painter, *slider, slide->Caption());
  painter->restore();
}

QRect SlideStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                 SubControl sub_control, const QWidget* widget) const {
  const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control != CC_Slider || slider == nullptr) {
    return QCommonStyle::subControlRect(control, option, sub_control, widget);
  }
  if (sub_control == SC_SliderHandle) return FaderHandle(*slider);
  if (sub_control == SC_SliderGroove) return FaderTrack(*slider);
  return {};
}

int SlideStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* data) const {
  if (hint == SH_Slider_AbsoluteSetButtons) return Qt::NoButton;
  if (hint == SH_Slider_PageSetButtons) return Qt::LeftButton;
  if (hint == SH_Slider_StopMouseOverSlider) return 1;
  return QCommonStyle::styleHint(hint, option, widget, data);
}

}  // namespace platform
