#include "core/board_codec.h"

#include <algorithm>
#include <limits>

#include "core/number_text.h"

namespace pelmora {
namespace {

constexpr std::uint8_t kProgram = 2;
constexpr std::uint8_t kPlay = 3;
constexpr int kPosition = 8;  // + channel for the first eight
// + channel for the others: they are not numbered on from the first eight.
constexpr int kPositionHigh = 32;

constexpr int kLowChannels = 8;
constexpr std::uint8_t kAcknowledgement = 255;
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

Bytes2 PlayCommand(int sequence) {
  return {kPlay, static_cast<std::uint8_t>(sequence)};
}

Bytes2 PositionCommand(int channel, int position) {
  const int code = (channel < kLowChannels ? kPosition : kPositionHigh) + channel;
  return {static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(position)};
}

std::array<std::uint8_t, 1 + kHeaderBytes> ProgramCommand(const SequenceTable& table) {
  std::array<std::uint8_t, 1 + kHeaderBytes> command{kProgram};
  const std::span header = std::span(command).subspan(1);
  PutWord(header.first<2>(), table.TotalBytes);
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    const std::size_t at = 2 + 4 * sequence;
    PutWord(header.subspan(at).first<2>(), table.SeqSteps[sequence]);
    PutWord(header.subspan(at + 2).first<2>(), table.SeqOffset[sequence]);
  }
  return command;
}

bool IsAcknowledgement(std::span<const std::uint8_t> received) {
  return received[0] == kAcknowledgement;
}

std::uint8_t StagedByte(const FlashRows& image, int i) {
  return image[static_cast<std::size_t>(i / kStepBytes)][static_cast<std::size_t>(i % kStepBytes)];
}

int DurationToTicks(int duration_ms) {
  return std::max(0, static_cast<int>(DivideHalfEven(duration_ms, kBoardTickMs)));
}

bool HeaderFits(const SequenceTable& table) {
  return FitsWord(table.TotalBytes) && std::ranges::all_of(table.SeqSteps, FitsWord) &&
         std::ranges::all_of(table.SeqOffset, FitsWord);
}

void EncodeSteps(const SequenceTable& table, FlashRows& image) {
  auto row = image.begin();
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    const SequenceRecord& record = table.SeqTable[sequence];
    const auto steps = static_cast<std::size_t>(table.SeqSteps[sequence]);
    for (std::size_t step = 0; step < steps; ++step, ++row) {
      std::ranges::copy(record.Position[step], row->begin());
      PutWord(std::span(*row).last<2>(), DurationToTicks(record.Duration[step]));
    }
  }
}

int AnnouncedBytes(const FlashHeader& header) {
  return WordAt(header, 0);
}

bool DecodeHeader(const FlashHeader& header, SequenceTable& table) {
  table.TotalBytes = std::min(AnnouncedBytes(header), kFlashCapacity);
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    const std::size_t at = 2 + 4 * sequence;
    const int steps = WordAt(header, at);
    if (!FitsWord(steps)) return false;
    table.SeqSteps[sequence] = static_cast<std::int16_t>(steps);
    const int offset = WordAt(header, at + 2);
    if (!FitsWord(offset)) return false;
    table.SeqOffset[sequence] = offset;
  }
  return true;
}

void StageStepData(std::span<const std::uint8_t> step_data, FlashRows& image) {
  for (auto& row : image) {
    const auto part = step_data.first(std::min(step_data.size(), row.size()));
    std::ranges::copy(part, row.begin());
    step_data = step_data.subspan(part.size());
    if (step_data.empty()) return;
  }
}

bool DecodeSteps(const FlashRows& image, SequenceTable& table) {
  auto row = image.cbegin();
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    SequenceRecord& record = table.SeqTable[sequence];
    for (int step = 0; step < table.SeqSteps[sequence]; ++step, ++row) {
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

void LimitStepCounts(SequenceTable& table) {
  for (std::int16_t& steps : table.SeqSteps) steps = std::min<std::int16_t>(steps, kSteps);
}

}  // namespace pelmora
