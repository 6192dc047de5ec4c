// Input: a byte that chooses the decimal separator, then a text of the clipboard. Steps that are
// read are in range and come back from their own text.
#include <algorithm>

#include "core/step_text.h"
#include "fuzz/require.h"

using namespace pelmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view point = PointOf(bytes[0]);
  const std::string text(bytes + 1, bytes + size);

  const auto read = ReadStepText(text, point);
  if (const auto* fault = std::get_if<StepTextFault>(&read)) {
    const auto ends =
        std::count(text.begin(), text.end(), '\n') + std::count(text.begin(), text.end(), '\r');
    Require(fault->line >= 1 && fault->line <= ends + 1 && !fault->reason.empty());
    return 0;
  }
  const auto& steps = std::get<std::vector<EditRow>>(read);
  for (const EditRow& step : steps) {
    for (std::size_t ch = 0; ch < kChannels; ++ch) Require(step[ch] >= 0 && step[ch] <= 255);
    Require(step[kDurationColumn] >= kShortestDuration &&
            step[kDurationColumn] <= kLongestDuration);
    Require(step[kBreakColumn] == 0);
  }
  Require(ReadStepText(FormatStepText(steps, point), point) == read);
  return 0;
}
