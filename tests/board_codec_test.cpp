// Every byte that is sent, and the decoding of a read reply.
#include "core/board_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "core/sequence_store.h"
#include "rig/sequences.h"

namespace pelmora {
namespace {

using namespace rig;

FlashHeader Header(const Bytes& bytes) {
  FlashHeader header{};
  std::copy_n(bytes.begin(), header.size(), header.begin());
  return header;
}

TEST(BoardCodec, Commands) {
  const auto bytes = [](const auto& command) { return Bytes(command.begin(), command.end()); };
  const std::pair<Bytes, Bytes> cases[] = {{bytes(PcControlOffCommand()), {0}},
                                           {bytes(PcControlOnCommand()), {1}},
                                           {bytes(PlayCommand(15)), {3, 15}},
                                           {bytes(StopCommand()), {4}},
                                           {bytes(ReadCommand()), {6}},
                                           {bytes(EraseCommand()), {7}},
                                           {bytes(ResetCommand()), {17}},
                                           {bytes(PositionCommand(0, 0)), {8, 0}},
                                           {bytes(PositionCommand(7, 128)), {15, 128}},
                                           {bytes(PositionCommand(8, 200)), {40, 200}},
                                           {bytes(PositionCommand(11, 255)), {43, 255}}};
  for (const auto& [built, expected] : cases) EXPECT_EQ(built, expected);
  EXPECT_TRUE(IsAcknowledgement(Bytes{255, 0}));
  EXPECT_FALSE(IsAcknowledgement(Bytes{254, 255}));
}

TEST(BoardCodec, ExampleBothWays) {
  const Bytes image = ExampleImage();
  ASSERT_EQ(image.size(), 108u);

  const auto table = std::make_unique<SequenceTable>();
  const auto rows = std::make_unique<FlashRows>();
  table->SeqTable[3].Position[0].fill(9);
  for (auto& row : *rows) row.fill(0xEE);
  EXPECT_EQ(AnnouncedBytes(Header(image)), 42);
  ASSERT_TRUE(DecodeHeader(Header(image), *table));
  StageStepData(std::span(image).subspan(kHeaderBytes), *rows);
  ASSERT_TRUE(DecodeSteps(*rows, *table));
  EXPECT_EQ(table->SeqSteps[0], 2);
  EXPECT_EQ(table->SeqTable[0].Position[0][11], 128);
  EXPECT_EQ(table->SeqTable[0].Position[1][0], 255);
  EXPECT_EQ(table->SeqTable[0].Duration[1], 1000);
  EXPECT_EQ(table->SeqSteps[3], 1);
  EXPECT_EQ(table->SeqOffset[3], 28);
  EXPECT_EQ(table->SeqTable[3].Position[0][0], 0);
  EXPECT_EQ(table->SeqTable[3].Duration[0], 5120);

  for (auto& row : *rows) row.fill(0xEE);
  table->SeqOffset.fill(-1);
  ComputeFlashFigures(*table);
  ASSERT_TRUE(HeaderFits(*table));
  const auto command = ProgramCommand(*table);
  EncodeSteps(*table, *rows);
  EXPECT_EQ(command[0], 2);
  Bytes built(command.begin() + 1, command.end());
  for (int i = 0; i < 42; ++i) built.push_back(StagedByte(*rows, i));
  EXPECT_EQ(built, image);
  EXPECT_EQ(StagedByte(*rows, 42), 0xEE);  // rows beyond the image stay
}

TEST(BoardCodec, TicksOfADuration) {
  const std::pair<int, int> cases[] = {
      {0, 0},      {20, 1},     {9, 0},        {10, 0},       {11, 1},  {30, 2},    {50, 2},
      {5110, 256}, {5120, 256}, {32760, 1638}, {32767, 1638}, {-10, 0}, {-32768, 0}};
  for (const auto& [ms, ticks] : cases) EXPECT_EQ(DurationToTicks(ms), ticks) << ms;
}

TEST(BoardCodec, OnlyTotalsThatFitAreProgrammed) {
  // Sequences of 256 steps, the steps of the next one, the bytes in all.
  const std::tuple<std::size_t, std::int16_t, std::int32_t, bool> cases[] = {
      {9, 36, 32760, true}, {9, 37, 32774, false}, {15, 256, 57344, false}};
  for (const auto& [full, steps, total, fits] : cases) {
    const auto table = std::make_unique<SequenceTable>();
    std::fill_n(table->SeqSteps.begin(), full, std::int16_t{256});
    table->SeqSteps[full] = steps;
    ComputeFlashFigures(*table);
    EXPECT_EQ(table->TotalBytes, total);
    EXPECT_EQ(table->SeqOffset[full], static_cast<int>(full) * 3584);
    EXPECT_EQ(HeaderFits(*table), fits) << total;
  }
}

TEST(BoardCodec, HeaderValuesStopAtTheFirstTooLarge) {
  FlashHeader header{};
  header[0] = header[1] = 0xFF;
  EXPECT_EQ(AnnouncedBytes(header), 65535);
  header[2] = 0x7F;
  header[3] = 0xFF;
  header[10] = 5;     // sequence 2: 1280 steps
  header[12] = 0x80;  // its offset does not fit
  header[2 + 4 * 3] = header[13] = 1;
  const auto table = std::make_unique<SequenceTable>();
  EXPECT_FALSE(DecodeHeader(header, *table));
  EXPECT_EQ(table->SeqSteps[0], 32767);
  EXPECT_EQ(table->SeqSteps[2], 1280);
  EXPECT_EQ(table->SeqOffset[2], 0);
  EXPECT_EQ(table->SeqSteps[3], 0);
  LimitStepCounts(*table);
  EXPECT_EQ(table->SeqSteps[0], 256);

  header[12] = 0;
  EXPECT_TRUE(DecodeHeader(header, *table));
  EXPECT_EQ(table->SeqSteps[3], 256);
}

TEST(BoardCodec, StepsStopAtTheFirstThatCannotBeStored) {
  const std::tuple<std::uint8_t, std::uint8_t, bool, int> words[] = {
      {0x06, 0x66, true, 32760}, {0x06, 0x67, false, 0}, {0x80, 0x00, false, 0}};
  for (const auto& [high, low, stored, ms] : words) {
    const auto table = std::make_unique<SequenceTable>();
    const auto rows = std::make_unique<FlashRows>();
    table->SeqSteps[1] = 1;
    table->SeqSteps[2] = 1;
    (*rows)[0] = {9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 8, high, low};
    (*rows)[1].fill(1);
    EXPECT_EQ(DecodeSteps(*rows, *table), stored) << int{high} << ' ' << int{low};
    EXPECT_EQ(table->SeqTable[1].Duration[0], ms);
    EXPECT_EQ(table->SeqTable[1].Position[0][11], 8);
    EXPECT_EQ(table->SeqTable[2].Position[0][0], stored ? 1 : 0);
  }
  const auto table = std::make_unique<SequenceTable>();
  const auto rows = std::make_unique<FlashRows>();
  table->SeqSteps[4] = 257;
  (*rows)[255].fill(3);
  EXPECT_FALSE(DecodeSteps(*rows, *table));
  EXPECT_EQ(table->SeqTable[4].Duration[255], (3 * 256 + 3) * 20);
}

TEST(BoardCodec, StagingKeepsWhatItDoesNotReach) {
  const auto rows = std::make_unique<FlashRows>();
  for (auto& row : *rows) row.fill(7);
  StageStepData(Bytes(15, 1), *rows);
  EXPECT_EQ((*rows)[1][0], 1);
  EXPECT_EQ((*rows)[1][1], 7);
  StageStepData({}, *rows);
  EXPECT_EQ((*rows)[0][0], 1);
  StageStepData(Bytes(kFlashRows * kStepBytes + 9, 2), *rows);
  EXPECT_EQ((*rows)[4096][13], 2);
}

}  // namespace
}  // namespace pelmora
