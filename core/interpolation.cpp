#include "core/interpolation.h"

#include "core/number_text.h"

namespace pelmora {

std::vector<EditRow> Interpolate(const EditRow& source, const EditRow& target, int count) {
  std::vector<EditRow> steps(static_cast<std::size_t>(count));
  for (int j = 0; j < count; ++j) {
    EditRow& step = steps[static_cast<std::size_t>(j)];
    for (std::size_t c = 0; c < kChannels; ++c) {
      const std::int64_t from = source[c];
      const std::int64_t way = target[c] - from;
      step[c] = static_cast<std::int32_t>(DivideHalfEven(from * count + way * j, count));
    }
  }

  // The time is shared out from the run's last step to its first, which decides where the steps
  // that are a tick longer come to lie.
  std::int64_t shared_ms = 0;
  for (int k = 0; k < count; ++k) {
    const std::int64_t until_ms =
        kBoardTickMs * DivideHalfEven(std::int64_t{source[kDurationColumn]} * (k + 1),
                                      std::int64_t{kBoardTickMs} * count);
    steps[static_cast<std::size_t>(count - 1 - k)][kDurationColumn] =
        static_cast<std::int32_t>(until_ms - shared_ms);
    shared_ms = until_ms;
  }
  return steps;
}

}  // namespace pelmora
