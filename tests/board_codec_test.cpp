// The flash image as it is sent, and the decoding of a read reply.
#include "core/board_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <span>
#include <tuple>
#include <utility>

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

TEST(BoardCodec, ExampleBothWays) {
  const Bytes image = ExampleImage();
  ASSERT_EQ(image.size(), 108u);
  const auto table = std::make_unique<SequenceTable>();
  const auto rows = std::make_unique<FlashRows>();
  ASSERT_TRUE(DecodeHeader(Header(image), *table));
  StageStepData(std::span(image).subspan(kHeaderBytes), *rows);
  ASSERT_TRUE(DecodeSteps(*rows, *table));
  EXPECT_EQ(table->SeqTable[0].Position[1][0], 255);
  EXPECT_EQ(table->SeqTable[3].Duration[0], 5120);

  for (auto& row : *rows) row.fill(0xEE);
  table->SeqOffset.fill(-1);
  ComputeFlashFigures(*table);
  const auto command = ProgramCommand(*table);
  EncodeSteps(*table, *rows);
  Bytes built(command.begin(), command.end());
  for (int i = 0; i < 42; ++i) built.push_back(StagedByte(*rows, i));
  EXPECT_EQ(built, Bytes{2} + image);
}

TEST(BoardCodec, TicksOfADuration) {
  const std::pair<int, int> cases[] = {
      {0, 0},      {20, 1},     {9, 0},        {10, 0},       {11, 1},  {30, 2},    {50, 2},
      {5110, 256}, {5120, 256}, {32760, 1638}, {32767, 1638}, {-10, 0}, {-32768, 0}};
  for (const auto& [ms, ticks] : cases) EXPECT_EQ(DurationToTicks(ms), ticks) << ms;
}

TEST(BoardCodec, StepsStopAtTheFirstThatCannotBeStored) {
  const std::tuple<std::uint8_t, std::uint8_t, bool, int> words[] = {
      {0x06, 0x66, true, 32760}, {0x06, 0x67, false, 0}, {0x80, 0x00, false, 0}};
  for (const auto& [high, low, stored, ms] : words) {
    const auto table = std::make_unique<SequenceTable>();
    const auto rows = std::make_unique<FlashRows>();
    table->SeqSteps[1] = table->SeqSteps[2] = 1;
    (*rows)[0] = {9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 8, high, low};
    (*rows)[1].fill(1);
    EXPECT_EQ(DecodeSteps(*rows, *table), stored) << int{high} << ' ' << int{low};
    EXPECT_EQ(table->SeqTable[1].Duration[0], ms);
    EXPECT_EQ(table->SeqTable[2].Position[0][0], stored ? 1 : 0);
  }
}

}  // namespace
}  // namespace pelmora
