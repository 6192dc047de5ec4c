// Colours for which the palette has no role, and the mixing of two colours.
#pragma once

#include <QColor>
#include <cmath>

namespace platform {

// `share_of_b` 0 gives `a`, 1 gives `b`.
inline QColor Blend(const QColor& a, const QColor& b, double share_of_b) {
  const auto mix = [share_of_b](int x, int y) {
    return static_cast<int>(std::lround(x + (y - x) * share_of_b));
  };
  return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

// How much of the text's colour is mixed into edges and marks, so that they are seen on a light
// ground.
inline constexpr double kEdgeShare = 0.56;

// For warnings and for what the operator must not overlook.
inline constexpr QColor kWarningColour(0xC0, 0x10, 0x10);

// The colours of a state that a lamp shows: of the lamp, of its edge, of the word beside it.
struct SignalColours {
  QColor lamp;
  QColor edge;
  QColor word;
};
inline constexpr SignalColours kOnSignal = {
    {0x2E, 0xAA, 0x4C}, {0x1A, 0x72, 0x31}, {0x12, 0x57, 0x1F}};
inline constexpr SignalColours kWaitingSignal = {
    {0xF6, 0xB7, 0x3C}, {0x8F, 0x54, 0x00}, {0x6E, 0x3E, 0x00}};

}  // namespace platform
