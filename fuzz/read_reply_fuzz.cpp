// Input: the board's reply to a read: the header, then step data. What is decoded is encoded as the
// same rows and the same header fields; what is refused leaves a table that makes sense.
#include <algorithm>
#include <memory>

#include "core/board_codec.h"
#include "core/sequence_store.h"
#include "fuzz/require.h"

using namespace pelmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static auto data = std::make_unique<Declaration>();
  static auto rows = std::make_unique<FlashRows>();
  if (size < kHeaderBytes) return 0;
  FlashHeader header{};
  std::copy_n(bytes, header.size(), header.begin());
  ClearTable(*data);
  for (auto& row : *rows) row.fill(0);
  const bool sound = DecodeHeader(header, *data);
  for (const std::int16_t steps : data->SeqSteps) Require(steps >= 0);
  if (!sound) return 0;
  StageStepData(std::span(bytes, size).subspan(kHeaderBytes), *rows);

  const FlashRows image = *rows;
  const bool decoded = DecodeSteps(*rows, *data);
  LimitStepCounts(*data);
  for (std::uint8_t s = 0; s < kSequences; ++s) {
    data->CurSeq = s;
    Require(LoadEditBuffer(*data) == data->SeqSteps[s]);
  }
  Require(StoreEditBuffer(*data, data->SeqSteps[data->CurSeq]));
  ComputeFlashFigures(*data);
  EncodeSteps(*data, *rows);
  if (!decoded) return 0;

  Require(*rows == image);
  if (!HeaderFits(*data)) return 0;
  const auto command = ProgramCommand(*data);
  for (std::size_t s = 0; s < kSequences; ++s) {
    const std::size_t at = 2 + 4 * s;
    Require(std::equal(&command[1 + at], &command[1 + at + 2], &header[at]));
  }
  return 0;
}
