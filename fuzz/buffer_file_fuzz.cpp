// Input: a buffer file. What is read without error is written as a file that reads the same.
#include <sstream>

#include "core/buffer_file.h"
#include "fuzz/require.h"

using namespace pelmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  std::istringstream file(std::string(bytes, bytes + size));
  const auto first = ParseBufferFile(file);
  if (!first) return 0;

  const std::string text = FormatBufferFile(*first);
  std::istringstream again(text);
  const auto second = ParseBufferFile(again);
  Require(second && *second == *first);
  for (const std::int16_t steps : first->SeqSteps) Require(steps >= 0 && steps <= kSteps);
  Require(FormatBufferFile(*second) == text);
  return 0;
}
