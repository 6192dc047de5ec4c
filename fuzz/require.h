// What the fuzz targets share.
#pragma once

#include <array>
#include <cstdlib>
#include <string_view>

namespace pelmora {

// What a target expects beyond not crashing: ends the run as a finding unless the property holds.
inline void Require(bool property) {
  if (!property) std::abort();
}

// The decimal separator that a byte of the input chooses.
inline std::string_view PointOf(unsigned char byte) {
  constexpr std::array<std::string_view, 3> kPoints = {".", ",", "\u066B"};
  return kPoints[byte % kPoints.size()];
}

}  // namespace pelmora
