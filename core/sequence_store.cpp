#include "core/sequence_store.h"

#include <algorithm>
#include <limits>
#include <span>

namespace pelmora {
namespace {

bool FitsTable(const EditRow& row) {
  using Duration = std::numeric_limits<std::int16_t>;
  return std::all_of(row.begin(), row.begin() + kChannels,
                     [](std::int32_t position) { return position >= 0 && position <= 255; }) &&
         row[kDurationColumn] >= Duration::min() && row[kDurationColumn] <= Duration::max();
}

}  // namespace

int StoredSteps(const SequenceTable& table, std::size_t sequence) {
  return std::clamp<int>(table.SeqSteps[sequence], 0, kSteps);
}

void ClearTable(SequenceTable& table) {
  table.TotalBytes = 0;
  table.SeqSteps.fill(0);
  table.SeqOffset.fill(0);
  table.SeqTable.fill({});
}

void LoadTable(const SequenceTable& loaded, SequenceTable& table) {
  table = loaded;
}

int LoadEditBuffer(Declaration& data) {
  const SequenceRecord& record = data.SeqTable[data.CurSeq];
  const int steps = StoredSteps(data, data.CurSeq);
  for (std::size_t step = 0; step < static_cast<std::size_t>(steps); ++step) {
    EditRow& row = data.EditBuffer[step];
    std::copy(record.Position[step].begin(), record.Position[step].end(), row.begin());
    row[kDurationColumn] = record.Duration[step];
  }
  return steps;
}

bool StoreEditBuffer(Declaration& data, int line_count) {
  if (line_count < 0 || line_count > kSteps) return false;
  if (!std::all_of(data.EditBuffer.begin(), data.EditBuffer.end(), FitsTable)) return false;

  data.SeqSteps[data.CurSeq] = static_cast<std::int16_t>(line_count);
  SequenceRecord& record = data.SeqTable[data.CurSeq];
  for (std::size_t step = 0; step < kSteps; ++step) {
    const EditRow& row = data.EditBuffer[step];
    for (std::size_t c = 0; c < kChannels; ++c) {
      record.Position[step][c] = static_cast<std::uint8_t>(row[c]);
    }
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
