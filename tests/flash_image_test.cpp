// The flash image, byte by byte.
#include "core/flash_image.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "core/sequence_store.h"
#include "rig/sequences.h"

namespace pelmora {
namespace {

using namespace rig;

TEST(FlashImage, ExampleBothWays) {
  const Bytes image = ExampleImage();
  ASSERT_EQ(image.size(), 108u);
  const std::span header = std::span(image).first(kHeaderBytes);

  auto data = std::make_unique<Declaration>();
  data->SeqTable[3].Position[0].fill(9);
  for (auto& row : data->FlashImage) row.fill(0xEE);
  EXPECT_EQ(AnnouncedBytes(header), 42);
  ASSERT_TRUE(DecodeHeader(header, *data));
  StageStepData(std::span(image).subspan(kHeaderBytes), *data);
  ASSERT_TRUE(DecodeSteps(*data));
  EXPECT_EQ(data->SeqSteps[0], 2);
  EXPECT_EQ(data->SeqTable[0].Position[0][11], 128);
  EXPECT_EQ(data->SeqTable[0].Position[1][0], 255);
  EXPECT_EQ(data->SeqTable[0].Duration[1], 1000);
  EXPECT_EQ(data->SeqSteps[3], 1);
  EXPECT_EQ(data->SeqOffset[3], 28);
  EXPECT_EQ(data->SeqTable[3].Position[0][0], 0);
  EXPECT_EQ(data->SeqTable[3].Duration[0], 5120);

  for (auto& row : data->FlashImage) row.fill(0xEE);
  data->SeqOffset.fill(-1);
  ComputeFlashFigures(*data);
  ASSERT_TRUE(HeaderFits(*data));
  const FlashHeader encoded = EncodeHeader(*data);
  EncodeSteps(*data);
  Bytes built(encoded.begin(), encoded.end());
  for (std::size_t r = 0; r < 3; ++r) {
    built.insert(built.end(), data->FlashImage[r].begin(), data->FlashImage[r].end());
  }
  EXPECT_EQ(built, image);
  EXPECT_EQ(data->FlashImage[3][0], 0xEE);  // rows beyond the image stay
}

TEST(FlashImage, TicksOfADuration) {
  const std::pair<int, int> cases[] = {
      {0, 0},      {20, 1},     {9, 0},        {10, 0},       {11, 1},  {30, 2},    {50, 2},
      {5110, 256}, {5120, 256}, {32760, 1638}, {32767, 1638}, {-10, 0}, {-32768, 0}};
  for (const auto& [ms, ticks] : cases) EXPECT_EQ(DurationToTicks(ms), ticks) << ms;
}

TEST(FlashImage, OnlyTotalsThatFitAreProgrammed) {
  // Sequences of 256 steps, the steps of the next one, the bytes in all.
  const std::tuple<std::size_t, std::int16_t, std::int32_t, bool> cases[] = {
      {9, 36, 32760, true}, {9, 37, 32774, false}, {15, 256, 57344, false}};
  for (const auto& [full, steps, total, fits] : cases) {
    auto data = std::make_unique<Declaration>();
    std::fill_n(data->SeqSteps.begin(), full, std::int16_t{256});
    data->SeqSteps[full] = steps;
    ComputeFlashFigures(*data);
    EXPECT_EQ(data->TotalBytes, total);
    EXPECT_EQ(data->SeqOffset[full], static_cast<int>(full) * 3584);
    EXPECT_EQ(HeaderFits(*data), fits) << total;
  }
}

TEST(FlashImage, HeaderValuesStopAtTheFirstTooLarge) {
  Bytes header(kHeaderBytes, 0);
  header[0] = header[1] = 0xFF;
  EXPECT_EQ(AnnouncedBytes(header), 65535);
  header[2] = 0x7F;
  header[3] = 0xFF;
  header[10] = 5;     // sequence 2: 1280 steps
  header[12] = 0x80;  // its offset does not fit
  header[2 + 4 * 3] = header[13] = 1;
  auto data = std::make_unique<Declaration>();
  EXPECT_FALSE(DecodeHeader(header, *data));
  EXPECT_EQ(data->SeqSteps[0], 32767);
  EXPECT_EQ(data->SeqSteps[2], 1280);
  EXPECT_EQ(data->SeqOffset[2], 0);
  EXPECT_EQ(data->SeqSteps[3], 0);
  LimitStepCounts(*data);
  EXPECT_EQ(data->SeqSteps[0], 256);

  header[12] = 0;
  EXPECT_TRUE(DecodeHeader(header, *data));
  EXPECT_EQ(data->SeqSteps[3], 256);
  header.pop_back();
  EXPECT_FALSE(DecodeHeader(header, *data));
}

TEST(FlashImage, StepsStopAtTheFirstThatCannotBeStored) {
  const std::tuple<std::uint8_t, std::uint8_t, bool, int> words[] = {
      {0x06, 0x66, true, 32760}, {0x06, 0x67, false, 0}, {0x80, 0x00, false, 0}};
  for (const auto& [high, low, stored, ms] : words) {
    auto data = std::make_unique<Declaration>();
    data->SeqSteps[1] = 1;
    data->SeqSteps[2] = 1;
    data->FlashImage[0] = {9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 8, high, low};
    data->FlashImage[1].fill(1);
    EXPECT_EQ(DecodeSteps(*data), stored) << int{high} << ' ' << int{low};
    EXPECT_EQ(data->SeqTable[1].Duration[0], ms);
    EXPECT_EQ(data->SeqTable[1].Position[0][11], 8);
    EXPECT_EQ(data->SeqTable[2].Position[0][0], stored ? 1 : 0);
  }
  auto data = std::make_unique<Declaration>();
  data->SeqSteps[4] = 257;
  data->FlashImage[255].fill(3);
  EXPECT_FALSE(DecodeSteps(*data));
  EXPECT_EQ(data->SeqTable[4].Duration[255], (3 * 256 + 3) * 20);
}

TEST(FlashImage, StagingKeepsWhatItDoesNotReach) {
  auto data = std::make_unique<Declaration>();
  for (auto& row : data->FlashImage) row.fill(7);
  StageStepData(Bytes(15, 1), *data);
  EXPECT_EQ(data->FlashImage[1][0], 1);
  EXPECT_EQ(data->FlashImage[1][1], 7);
  StageStepData({}, *data);
  EXPECT_EQ(data->FlashImage[0][0], 1);
  StageStepData(Bytes(kFlashRows * kStepBytes + 9, 2), *data);
  EXPECT_EQ(data->FlashImage[4096][13], 2);
}

}  // namespace
}  // namespace pelmora
