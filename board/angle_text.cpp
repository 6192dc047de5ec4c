#include "board/angle_text.h"

#include <cstdlib>

namespace simboard {

std::string AngleText(std::uint8_t position) {
  const int half_degrees = position - 128;
  const int size = std::abs(half_degrees);
  return (half_degrees < 0 ? "-" : "") + std::to_string(size / 2) + (size % 2 != 0 ? ".5" : "") +
         "°";
}

}  // namespace simboard
