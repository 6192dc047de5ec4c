// Interpolated steps: the worked cases, and what holds for every run.
#include "core/interpolation.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace pelmora {
namespace {

EditRow Row(int position, int duration_ms) {
  EditRow row;
  row.fill(position);
  row[kDurationColumn] = duration_ms;
  row[kBreakColumn] = 1;
  return row;
}

TEST(Interpolation, WorkedCases) {
  struct Case {
    int from, to, duration;
    std::vector<int> positions, durations;
  };
  const Case cases[] = {
      {128, 148, 100, {128, 133, 138, 143}, {20, 40, 20, 20}},
      {128, 128, 100, {128, 128, 128}, {40, 20, 40}},
      {128, 128, 150, {128, 128}, {80, 80}},
      {128, 130, 60, {128, 129, 129}, {20, 20, 20}},
      {128, 129, 40, {128, 128}, {20, 20}},  // half a count goes to the even neighbour
      {129, 130, 40, {129, 130}, {20, 20}},
      {255, 0, 80, {255, 191, 128, 64}, {20, 20, 20, 20}},
      {7, 9, 130, {7}, {120}},  // 6.5 ticks
  };
  for (const Case& c : cases) {
    std::vector<int> positions, durations;
    for (const EditRow& step : Interpolate(Row(c.from, c.duration), Row(c.to, 9999),
                                           static_cast<int>(c.positions.size()))) {
      positions.push_back(step[0]);
      EXPECT_EQ(step[11], step[0]);
      durations.push_back(step[kDurationColumn]);
      EXPECT_EQ(step[kBreakColumn], 0);
    }
    EXPECT_EQ(positions, c.positions) << c.from << " to " << c.to;
    EXPECT_EQ(durations, c.durations) << c.duration << " ms";
  }
}

TEST(Interpolation, StepsShorterThanATickAreTooShort) {
  EXPECT_FALSE(StepTimeTooShort(100, 5));
  EXPECT_TRUE(StepTimeTooShort(100, 6));
  EXPECT_TRUE(StepTimeTooShort(99, 5));
  EXPECT_TRUE(StepTimeTooShort(32767, 2'000'000'000));
}

}  // namespace
}  // namespace pelmora
