// What a fuzz target expects beyond not crashing.
#pragma once

#include <cstdlib>

namespace pelmora {

// Ends the run as a finding unless the property holds.
inline void Require(bool property) {
  if (!property) std::abort();
}

}  // namespace pelmora
