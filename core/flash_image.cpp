#include "core/flash_image.h"

#include <algorithm>
#include <limits>

#include "core/number_text.h"
#include "core/sequence_store.h"

namespace pelmora {
namespace {

constexpr int kLargestTicks = std::numeric_limits<std::int16_t>::max() / kBoardTickMs;

void PutWord(std::span<std::uint8_t, 2> bytes, std::int32_t value) {
  bytes[0] = static_cast<std::uint8_t>(value / 256);
  bytes[1] = static_cast<std::uint8_t>(value % 256);
}

int WordAt(std::span<const std::uint8_t> bytes, std::size_t at) {
  return bytes[at] * 256 + bytes[at + 1];
}

bool FitsWord(std::int32_t value) {
  return value >= 0 && value <= std::numeric_limits<std::int16_t>::max();
}

}  // namespace

int DurationToTicks(int duration_ms) {
  return std::max(0, static_cast<int>(DivideHalfEven(duration_ms, kBoardTickMs)));
}

bool HeaderFits(const Declaration& data) {
  return FitsWord(data.TotalBytes) && std::ranges::all_of(data.SeqSteps, FitsWord) &&
         std::ranges::all_of(data.SeqOffset, FitsWord);
}

FlashHeader EncodeHeader(const Declaration& data) {
  FlashHeader header{};
  const std::span bytes(header);
  PutWord(bytes.first<2>(), data.TotalBytes);
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    const std::size_t at = 2 + 4 * sequence;
    PutWord(bytes.subspan(at).first<2>(), data.SeqSteps[sequence]);
    PutWord(bytes.subspan(at + 2).first<2>(), data.SeqOffset[sequence]);
  }
  return header;
}

void EncodeSteps(Declaration& data) {
  auto row = data.FlashImage.begin();
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    const SequenceRecord& record = data.SeqTable[sequence];
    const auto steps = static_cast<std::size_t>(StoredSteps(data, sequence));
    for (std::size_t step = 0; step < steps; ++step, ++row) {
      std::ranges::copy(record.Position[step], row->begin());
      PutWord(std::span(*row).last<2>(), DurationToTicks(record.Duration[step]));
    }
  }
}

std::int32_t AnnouncedBytes(std::span<const std::uint8_t> header) {
  return WordAt(header, 0);
}

bool DecodeHeader(std::span<const std::uint8_t> header, Declaration& data) {
  if (header.size() < kHeaderBytes) return false;
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    const std::size_t at = 2 + 4 * sequence;
    const int steps = WordAt(header, at);
    if (!FitsWord(steps)) return false;
    data.SeqSteps[sequence] = static_cast<std::int16_t>(steps);
    const int offset = WordAt(header, at + 2);
    if (!FitsWord(offset)) return false;
    data.SeqOffset[sequence] = offset;
  }
  return true;
}

void StageStepData(std::span<const std::uint8_t> step_data, Declaration& data) {
  for (auto& row : data.FlashImage) {
    const auto part = step_data.first(std::min(step_data.size(), row.size()));
    std::ranges::copy(part, row.begin());
    step_data = step_data.subspan(part.size());
    if (step_data.empty()) return;
  }
}

bool DecodeSteps(Declaration& data) {
  auto row = data.FlashImage.cbegin();
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    SequenceRecord& record = data.SeqTable[sequence];
    for (int step = 0; step < data.SeqSteps[sequence]; ++step, ++row) {
      if (step >= kSteps) return false;
      const auto at = static_cast<std::size_t>(step);
      std::copy_n(row->begin(), kChannels, record.Position[at].begin());
      const int ticks = WordAt(*row, kChannels);
      if (ticks > kLargestTicks) return false;
      record.Duration[at] = static_cast<std::int16_t>(ticks * kBoardTickMs);
    }
  }
  return true;
}

void LimitStepCounts(Declaration& data) {
  for (std::int16_t& steps : data.SeqSteps) steps = std::min<std::int16_t>(steps, kSteps);
}

}  // namespace pelmora
