// The arithmetic of interpolation: one step becomes a run of steps that approach the next one.
// Exact: whole numbers and remainders, halves to the even neighbour.
#pragma once

#include <vector>

#include "core/declaration.h"

namespace pelmora {

// The `count` (>= 1) steps, in list order, that replace `source`: the first repeats its positions,
// the following ones move in equal parts towards `target`, which itself is not among them. Their
// durations are multiples of 20 ms and together last the source's duration taken to the nearest
// multiple. The breakpoint columns are 0; the target's duration is not used.
std::vector<EditRow> Interpolate(const EditRow& source, const EditRow& target, int count);

}  // namespace pelmora
