// The unit in which places and sizes of windows and controls are given.
#pragma once

namespace platform {

// 1440 twips are an inch, 15 a pixel at 96 dpi.
constexpr int Pixels(int twips) {
  return twips / 15;
}

}  // namespace platform
