// Input: the board's reply to a read: the header, then step data. What is decoded is encoded as the
// same rows and the same header fields.
#include <algorithm>
#include <memory>

#include "core/flash_image.h"
#include "core/sequence_store.h"
#include "fuzz/require.h"

using namespace pelmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static auto data = std::make_unique<Declaration>();
  const std::span reply(bytes, size);
  const std::span header = reply.first(std::min<std::size_t>(size, kHeaderBytes));
  ClearTable(*data);
  for (auto& row : data->FlashImage) row.fill(0);
  if (!DecodeHeader(header, *data)) return 0;
  StageStepData(reply.subspan(kHeaderBytes), *data);

  const auto image = data->FlashImage;
  const bool decoded = DecodeSteps(*data);
  LimitStepCounts(*data);
  for (std::uint8_t s = 0; s < kSequences; ++s) {
    data->CurSeq = s;
    Require(LoadEditBuffer(*data) == data->SeqSteps[s]);
  }
  Require(StoreEditBuffer(*data, data->SeqSteps[data->CurSeq]));
  ComputeFlashFigures(*data);
  EncodeSteps(*data);
  if (!decoded) return 0;

  Require(data->FlashImage == image);
  if (!HeaderFits(*data)) return 0;
  const FlashHeader encoded = EncodeHeader(*data);
  Require(AnnouncedBytes(encoded) == data->TotalBytes);
  for (std::size_t s = 0; s < kSequences; ++s) {
    const std::size_t at = 2 + 4 * s;
    Require(std::equal(&encoded[at], &encoded[at + 2], &header[at]));
  }
  return 0;
}
