#include "platform/look/slide_style.h"

#include <algorithm>
#include <cstdlib>

#include "platform/look/colours.h"

namespace platform {
namespace {

constexpr int kHandleLength = 15;  // along the fader
constexpr int kHandleWidth = 25;   // across it
constexpr int kGrooveWidth = 5;
constexpr int kTickLength = 4;
constexpr int kMajorTickLength = 6;
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

// The place of the handle when it stands for `value`.
QRect FaderHandle(const QStyleOptionSlider& option, int value) {
  QRect handle(0, 0, kHandleWidth, kHandleLength);
  handle.moveCenter({option.rect.center().x(), FaderY(option, value)});
  return handle;
}

ControlState FaderState(const QStyleOptionSlider& option) {
  const bool on_handle = option.activeSubControls.testFlag(QStyle::SC_SliderHandle);
  ControlState state = StateOf(option);
  state.pressed &= on_handle;
  state.hovered &= on_handle;
  return state;
}

void DrawTicks(QPainter& painter, const QStyleOptionSlider& option, const SlideColours& colours) {
  const int x = option.rect.center().x();
  for (int i = 0; i < kTickCount; ++i) {
    const int y = FaderY(option, (option.maximum + 1) * i / (kTickCount - 1));
    const bool major = i == kTickCount / 2 || i == 0 || i == kTickCount - 1;
    const int length = major ? kMajorTickLength : kTickLength;
    const QColor& colour = major ? colours.major_tick : colours.tick;
    painter.fillRect(x - kTickDistance - length + 1, y, length, 1, colour);
    painter.fillRect(x + kTickDistance, y, length, 1, colour);
  }
}

}  // namespace

SlideColours SlideColoursOf(const ControlState& state, const QPalette& palette) {
  const QColor card = palette.color(QPalette::Active, QPalette::Light);
  const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
  const ControlColours handle = ButtonColoursOf(state, palette);
  SlideColours colours;
  colours.text = state.enabled ? text : palette.color(QPalette::Disabled, QPalette::WindowText);
  colours.tick = Blend(card, text, state.enabled ? kEdgeShare : 0.35);
  colours.major_tick = Blend(card, text, state.enabled ? 0.75 : 0.45);
  colours.groove = Blend(card, text, 0.14);
  colours.groove_edge = colours.tick;
  colours.accent =
      state.enabled ? palette.color(QPalette::Active, QPalette::Highlight) : colours.major_tick;
  colours.handle = handle.face;
  colours.handle_edge = handle.edge;
  colours.mark = Blend(card, colours.accent, 0.12);
  colours.mark_edge = Blend(card, colours.accent, 0.75);
  return colours;
}

void DrawSlideCaption(QPainter& painter, const QStyleOptionSlider& option, const QRect& area,
                      const QString& caption) {
  const int width = option.fontMetrics.horizontalAdvance(caption);
  const int left = std::min(option.rect.center().x() - width / 2, area.right() - width + 1);
  const QRect place(std::max(area.left(), left), area.top(), width, option.fontMetrics.height());
  painter.setPen(SlideColoursOf(FaderState(option), option.palette).text);
  painter.drawText(place, Qt::AlignLeft | Qt::AlignTop | Qt::TextDontClip, caption);
}

void DrawSlideMark(QPainter& painter, const QStyleOptionSlider& option, int value) {
  const SlideColours colours = SlideColoursOf(FaderState(option), option.palette);
  DrawBox(painter, FaderHandle(option, value), colours.mark, colours.mark_edge, false);
}

void SlideStyle::drawComplexControl(ComplexControl, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget*) const {
  const auto& slider = *qstyleoption_cast<const QStyleOptionSlider*>(option);
  const ControlState state = FaderState(slider);
  const SlideColours colours = SlideColoursOf(state, slider.palette);
  DrawTicks(*painter, slider, colours);

  const QRect track = FaderTrack(slider);
  const QRect groove(slider.rect.center().x() - kGrooveWidth / 2, track.top() + 2, kGrooveWidth,
                     track.height() - 4);
  DrawBox(*painter, groove, colours.groove, colours.groove_edge, false, (kGrooveWidth + 1) / 2.0);

  const int centre = FaderY(slider, (slider.maximum + 1) / 2);
  const QRect handle = FaderHandle(slider, slider.sliderPosition);
  const int middle = handle.center().y();
  painter->fillRect(groove.left(), std::min(centre, middle), kGrooveWidth,
                    std::abs(centre - middle) + 1, colours.accent);
  DrawBox(*painter, handle, colours.handle, colours.handle_edge, state.focused);
  painter->fillRect(handle.left() + 5, middle, handle.width() - 10, 1, colours.accent);
}

QRect SlideStyle::subControlRect(ComplexControl, const QStyleOptionComplex* option,
                                 SubControl sub_control, const QWidget*) const {
  const auto& slider = *qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (sub_control == SC_SliderHandle) return FaderHandle(slider, slider.sliderPosition);
  return sub_control == SC_SliderGroove ? FaderTrack(slider) : QRect();
}

int SlideStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* data) const {
  if (hint == SH_Slider_AbsoluteSetButtons) return Qt::NoButton;
  if (hint == SH_Slider_PageSetButtons) return Qt::LeftButton;
  if (hint == SH_Slider_StopMouseOverSlider) return 1;
  return QCommonStyle::styleHint(hint, option, widget, data);
}

}  // namespace platform
