#include "core/sequence_store.h"

#include <algorithm>
#include <span>
#include <utility>

namespace pelmora {
namespace {

bool FitsTable(const EditRow& row) {
  const auto is_byte = [](std::int32_t value) { return std::in_range<std::uint8_t>(value); };
  return std::ranges::all_of(std::span(row).first<kChannels>(), is_byte) &&
         std::in_range<std::int16_t>(row[kDurationColumn]);
}

}  // namespace

void ClearTable(SequenceTable& table) {
  table = {};
}

void LoadTable(const SequenceTable& loaded, SequenceTable& table) {
  table = loaded;
}

int LoadEditBuffer(Declaration& data) {
  const SequenceRecord& record = data.SeqTable[data.CurSeq];
  const int steps = data.SeqSteps[data.CurSeq];
  for (std::size_t step = 0; step < static_cast<std::size_t>(steps); ++step) {
    EditRow& row = data.EditBuffer[step];
    std::ranges::copy(record.Position[step], row.begin());
    row[kDurationColumn] = record.Duration[step];
  }
  return steps;
}

bool StoreEditBuffer(Declaration& data, int line_count) {
  if (line_count < 0 || line_count > kSteps) return false;
  if (!std::ranges::all_of(data.EditBuffer, FitsTable)) return false;

  data.SeqSteps[data.CurSeq] = static_cast<std::int16_t>(line_count);
  SequenceRecord& record = data.SeqTable[data.CurSeq];
  for (std::size_t step = 0; step < kSteps; ++step) {
    const EditRow& row = data.EditBuffer[step];
    std::copy_n(row.begin(), kChannels, record.Position[step].begin());
    record.Duration[step] = static_cast<std::int16_t>(row[kDurationColumn]);
  }
  return true;
}

bool TableHolds(const Declaration& data, int line_count) {
  if (data.SeqSteps[data.CurSeq] != line_count) return false;
  const SequenceRecord& record = data.SeqTable[data.CurSeq];
  for (std::size_t step = 0; step < static_cast<std::size_t>(line_count); ++step) {
    const EditRow& row = data.EditBuffer[step];
    if (!std::ranges::equal(record.Position[step], std::span(row).first<kChannels>()) ||
        record.Duration[step] != row[kDurationColumn]) {
      return false;
    }
  }
  return true;
}

void ComputeFlashFigures(SequenceTable& table) {
  std::int32_t total = 0;
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    const std::int32_t steps = table.SeqSteps[sequence];
    table.SeqOffset[sequence] = steps == 0 ? 0 : total;
    total += steps * kStepBytes;
  }
  table.TotalBytes = total;
}

}  // namespace pelmora
