// Colours between two colours of the palette, for the controls that are drawn here.
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

}  // namespace platform
