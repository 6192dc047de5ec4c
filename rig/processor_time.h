#pragma once

#include <ctime>

namespace rig {

// What this process, all its threads together, has used of the processor so far, in ms.
inline double ProcessorMilliseconds() {
  return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

}  // namespace rig
