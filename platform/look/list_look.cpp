#include "platform/look/list_look.h"

#include <algorithm>

#include "platform/look/colours.h"

namespace platform {
namespace {

constexpr QColor kAmber = kWaitingSignal.lamp;
constexpr QColor kRed = kWarningColour;
constexpr QColor kDarkRed(0x8A, 0x00, 0x00);  // on grounds that are too dark for the other red

}  // namespace

LineColours ColoursOf(const LineState& state, const QPalette& palette) {
  const QColor base = palette.color(QPalette::Active, QPalette::Base);
  const QColor text = palette.color(QPalette::Active, QPalette::Text);
  const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
  const QColor on_highlight = palette.color(QPalette::Active, QPalette::HighlightedText);
  // The ground of a selected line leaves no room for a paler text.
  if (state.selected && state.enabled) {
    if (state.halted) return {kAmber, text, kDarkRed, text, text};
    return {highlight, on_highlight, on_highlight, on_highlight, on_highlight};
  }
  if (state.selected) {
    const QColor ground = Blend(state.halted ? kAmber : highlight, base, state.halted ? 0.5 : 0.75);
    return {ground, text, kDarkRed, text, text};
  }
  const QColor pale = Blend(text, base, 0.3);
  if (state.dragged) return {Blend(kAmber, base, 0.7), text, kRed, text, pale};
  return {state.odd ? Blend(highlight, base, 0.88) : base,
          state.enabled ? text : Blend(text, base, 0.25), state.enabled ? kRed : kDarkRed, pale,
          pale};
}

void DrawDropMark(QPainter& painter, const QRect& lines, int y, const QPalette& palette) {
  constexpr int kReach = 2;  // pixels above and below the middle of the bar
  const int middle = std::clamp(y, lines.top() + 1, lines.bottom() - 1);
  const QRect bar(lines.left(), middle - kReach, lines.width(), 2 * kReach + 1);
  // Two colours, so that it is seen on a selected line and on others.
  painter.fillRect(bar, palette.color(QPalette::Base));
  painter.fillRect(bar.adjusted(0, 1, 0, -1), palette.color(QPalette::Text));
}

}  // namespace platform
