// Every byte spoken with the board, as it stands on the line: the commands, the image's header and
// its steps in both directions, and the limits of each.
#include "core/board_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <tuple>

#include "core/sequence_store.h"
#include "rig/sequences.h"

namespace pelmora {
namespace {

using namespace rig;

template <class Array>
Bytes BytesOf(const Array& array) {
  return Bytes(array.begin(), array.end());
}

// The sequences as the table holds them, with its figures.
std::unique_ptr<SequenceTable> TableOf(const Sequences& sequences) {
  auto table = std::make_unique<SequenceTable>();
  table->SeqOffset.fill(9);  // as it was before
  for (std::size_t i = 0; i < sequences.size(); ++i) {
    table->SeqSteps[i] = static_cast<std::int16_t>(sequences[i].size());
    for (std::size_t step = 0; step < sequences[i].size(); ++step) {
      table->SeqTable[i].Position[step] = sequences[i][step].positions;
      table->SeqTable[i].Duration[step] = static_cast<std::int16_t>(20 * sequences[i][step].ticks);
    }
  }
  ComputeFlashFigures(*table);
  return table;
}

FlashHeader HeaderFrom(const Bytes& bytes) {
  FlashHeader header{};
  std::copy_n(bytes.begin(), header.size(), header.begin());
  return header;
}

TEST(BoardCodec, Commands) {
  const std::pair<Bytes, const char*> commands[] = {
      {BytesOf(kPcControlOffCommand), "00"}, {BytesOf(kPcControlOnCommand), "01"},
      {BytesOf(PlayCommand(0)), "03 00"},    {BytesOf(PlayCommand(15)), "03 0F"},
      {BytesOf(kStopCommand), "04"},         {BytesOf(kReadCommand), "06"},
      {BytesOf(kEraseCommand), "07"},        {BytesOf(kResetCommand), "11"},
  };
  for (const auto& [bytes, wire] : commands) EXPECT_EQ(bytes, Hex(wire)) << wire;
  const Bytes codes = Hex("08 09 0A 0B 0C 0D 0E 0F 28 29 2A 2B");
  for (std::size_t channel = 0; channel < codes.size(); ++channel) {
    for (const std::uint8_t position : Bytes{0, 1, 127, 128, 255}) {
      EXPECT_EQ(BytesOf(PositionCommand(static_cast<int>(channel), position)),
                (Bytes{codes[channel], position}));
    }
  }
  for (const int byte : {0, 1, 127, 128, 254, 255}) {
    const Bytes received = {static_cast<std::uint8_t>(byte), 255};
    EXPECT_EQ(IsAcknowledgement(received), byte == 255) << byte;
  }
}

// The example, byte by byte; no steps; sequences that all differ in length; 256 steps in the last
// one only; 146 in each.
TEST(BoardCodec, ImagesInBothDirections) {
  EXPECT_EQ(HeaderOf(ExampleSequences()) + StepDataOf(ExampleSequences()), ExampleImage());
  Sequences uneven;
  for (std::size_t i = 1; i < uneven.size(); ++i) {
    uneven[i] = RandomSequences(static_cast<unsigned>(i), 400)[i];
    uneven[i].resize(i + 1);
  }
  Sequences last;
  last[15] = FilledSequences(2, 256, 1638)[0];
  Sequences even;
  for (auto& sequence : even) sequence = {146, Step{{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, 256}};
  for (const Sequences& sequences : {ExampleSequences(), Sequences{}, uneven, last, even}) {
    const auto table = TableOf(sequences);
    const Bytes header = HeaderOf(sequences);
    const Bytes steps = StepDataOf(sequences);
    ASSERT_TRUE(HeaderFits(*table));
    EXPECT_EQ(BytesOf(ProgramCommand(*table)), Bytes{2} + header);
    const auto encoded = std::make_unique<FlashRows>();
    (*encoded)[steps.size() / kStepBytes].fill(77);
    EncodeSteps(*table, *encoded);
    Bytes staged;
    for (int i = 0; i <= table->TotalBytes; ++i) staged.push_back(StagedByte(*encoded, i));
    EXPECT_EQ(staged, steps + Bytes{77}) << "a row that isn't written stays";

    const auto read = std::make_unique<SequenceTable>();
    const auto rows = std::make_unique<FlashRows>();
    EXPECT_EQ(AnnouncedBytes(HeaderFrom(header)), steps.size());
    ASSERT_TRUE(DecodeHeader(HeaderFrom(header), *read));
    StageStepData(steps, *rows);
    ASSERT_TRUE(DecodeSteps(*rows, *read));
    EXPECT_EQ(read->SeqSteps, table->SeqSteps);
    EXPECT_EQ(read->SeqOffset, table->SeqOffset);
    EXPECT_EQ(read->SeqTable, table->SeqTable);
  }
}

// 2340 steps are 32760 bytes, 2341 are 32774; 4096 fill all sequences.
TEST(BoardCodec, LimitsOfTheHeader) {
  for (const auto& [steps, fits] : {std::pair(2340, true), {2341, false}, {4096, false}}) {
    const auto table = TableOf(FilledSequences(1, steps, 5));
    EXPECT_EQ(table->TotalBytes, 14 * steps);
    EXPECT_EQ(HeaderFits(*table), fits) << steps;
  }
  const auto taken = std::make_unique<SequenceTable>();
  for (const auto& [high, low, bytes] : {std::tuple(0, 13, 13), std::tuple(94, 0, 24064),
                                         std::tuple(94, 1, 24065), std::tuple(255, 255, 65535)}) {
    const FlashHeader header{static_cast<std::uint8_t>(high), static_cast<std::uint8_t>(low)};
    EXPECT_EQ(AnnouncedBytes(header), bytes);
    ASSERT_TRUE(DecodeHeader(header, *taken));
    EXPECT_EQ(taken->TotalBytes, std::min(bytes, 24064));
  }
  // The values of a header in their order: count and offset of sequence 0, then those of 1, ...
  const auto value = [&taken](int i) -> int {
    const auto sequence = static_cast<std::size_t>(i / 2);
    return i % 2 == 0 ? taken->SeqSteps[sequence] : taken->SeqOffset[sequence];
  };
  for (const int high : {127, 128, 255}) {
    for (const int at : {0, 1, 14, 15, 30, 31}) {
      *taken = {};
      FlashHeader header;
      header.fill(1);
      header[static_cast<std::size_t>(2 + 2 * at)] = static_cast<std::uint8_t>(high);
      header[static_cast<std::size_t>(3 + 2 * at)] = 0;
      EXPECT_EQ(DecodeHeader(header, *taken), high < 128) << at;
      for (int i = 0; i < 32; ++i) {
        const int sent = i == at ? 256 * high : 257;
        EXPECT_EQ(value(i), high < 128 || i < at ? sent : 0) << at << ' ' << i;
      }
    }
  }
}

// Bytes go to their rows as they come; what is beyond the last row has no place.
TEST(BoardCodec, StagedBytesAtTheEndsOfRows) {
  const auto rows = std::make_unique<FlashRows>();
  StageStepData(Counting(kFlashRows * kStepBytes), *rows);
  for (const int i : {0, 13, 14, 27, 28, 255, 256, 24063, 57357}) {
    EXPECT_EQ(StagedByte(*rows, i), i % 253) << i;
  }
  StageStepData(Bytes(15, 254), *rows);
  const std::pair<int, int> cases[] = {{0, 254}, {14, 254}, {15, 15}, {28, 28}};
  for (const auto& [i, byte] : cases) EXPECT_EQ(StagedByte(*rows, i), byte) << i;
  StageStepData({}, *rows);
  EXPECT_EQ(StagedByte(*rows, 0), 254);
}

TEST(BoardCodec, TicksOfADuration) {
  const std::pair<int, int> cases[] = {
      {0, 0},      {20, 1},     {9, 0},        {10, 0},       {11, 1},  {30, 2},    {50, 2},
      {5110, 256}, {5120, 256}, {32760, 1638}, {32767, 1638}, {-10, 0}, {-32768, 0}};
  const auto rows = std::make_unique<FlashRows>();
  const auto table = std::make_unique<SequenceTable>();
  table->SeqSteps[15] = 1;
  for (const auto& [ms, ticks] : cases) {
    EXPECT_EQ(DurationToTicks(ms), ticks) << ms;
    table->SeqTable[15].Duration[0] = static_cast<std::int16_t>(ms);
    EncodeSteps(*table, *rows);
    EXPECT_EQ((*rows)[0][12] * 256 + (*rows)[0][13], ticks) << ms;
  }
}

TEST(BoardCodec, StepsStopAtTheFirstThatCannotBeStored) {
  // The steps of sequence 1 with the word of their ticks, and the duration of the first.
  const std::tuple<int, std::uint8_t, std::uint8_t, bool, int> cases[] = {
      {1, 0x06, 0x66, true, 32760},
      {1, 0x06, 0x67, false, 0},
      {1, 0x80, 0x00, false, 0},
      {256, 0x00, 0x01, true, 20},
      {257, 0x00, 0x01, false, 20}};
  for (const auto& [count, high, low, stored, ms] : cases) {
    const auto table = std::make_unique<SequenceTable>();
    const auto rows = std::make_unique<FlashRows>();
    table->SeqSteps[1] = static_cast<std::int16_t>(count);
    table->SeqSteps[2] = 1;
    rows->fill({9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 8, high, low});
    EXPECT_EQ(DecodeSteps(*rows, *table), stored) << count << ' ' << int{high} << ' ' << int{low};
    EXPECT_EQ(table->SeqTable[1].Duration[0], ms);
    EXPECT_EQ(table->SeqTable[1].Position[std::min(count, 256) - 1][11], 8);
    EXPECT_EQ(table->SeqTable[2].Position[0][0], stored ? 9 : 0);
  }
}

TEST(BoardCodec, CountsAboveWhatASequenceHoldsAreCut) {
  const std::pair<std::int16_t, int> cases[] = {{0, 0}, {256, 256}, {257, 256}, {32767, 256}};
  for (const auto& [count, limited] : cases) {
    SequenceTable table;
    table.SeqSteps[0] = table.SeqSteps[15] = count;
    LimitStepCounts(table);
    EXPECT_EQ(table.SeqSteps[0], limited);
    EXPECT_EQ(table.SeqSteps[15], limited);
  }
}

}  // namespace
}  // namespace pelmora
