// Input: a buffer file. What is read without error is written as a file that reads the same.
#include <memory>
#include <sstream>

#include "core/buffer_file.h"
#include "core/sequence_store.h"
#include "fuzz/require.h"

using namespace pelmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static auto first = std::make_unique<SequenceTable>();
  static auto second = std::make_unique<SequenceTable>();
  ClearTable(*first);
  std::istringstream file(std::string(bytes, bytes + size));
  if (!ParseBufferFile(file, *first)) return 0;

  const std::string text = FormatBufferFile(*first);
  std::istringstream again(text);
  ClearTable(*second);
  Require(ParseBufferFile(again, *second));
  Require(first->SeqSteps == second->SeqSteps);
  Require(first->SeqTable == second->SeqTable);
  for (const std::int16_t steps : first->SeqSteps) Require(steps >= 0 && steps <= kSteps);
  Require(FormatBufferFile(*second) == text);
  return 0;
}
