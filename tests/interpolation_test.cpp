// Interpolated steps: the worked cases, and what holds for every run.
#include "core/interpolation.h"

#include <gtest/gtest.h>

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
  using Values = std::vector<int>;
  const std::tuple<int, int, int, Values, Values> cases[] = {
      {128, 148, 100, {128, 133, 138, 143}, {20, 40, 20, 20}},
      {128, 128, 100, {128, 128, 128}, {40, 20, 40}},
      {128, 128, 150, {128, 128}, {80, 80}},
      {128, 130, 60, {128, 129, 129}, {20, 20, 20}},
      {128, 129, 40, {128, 128}, {20, 20}},  // half a count goes to the even neighbour
      {129, 130, 40, {129, 130}, {20, 20}},
      {255, 0, 80, {255, 191, 128, 64}, {20, 20, 20, 20}},
      {7, 9, 130, {7}, {120}},  // 6.5 ticks
  };
  for (const auto& [from, to, duration, positions, durations] : cases) {
    const auto count = static_cast<int>(positions.size());
    std::vector<EditRow> steps;
    for (std::size_t i = 0; i < positions.size(); ++i) {
      steps.push_back(Row(positions[i], durations[i]));
      steps[i][kBreakColumn] = 0;
    }
    EXPECT_EQ(Interpolate(Row(from, duration), Row(to, 9999), count), steps) << from << " " << to;
  }
}

TEST(Interpolation, StepsShorterThanATickAreTooShort) {
  EXPECT_FALSE(StepTimeTooShort(100, 5));
  EXPECT_TRUE(StepTimeTooShort(100, 6));
  EXPECT_TRUE(StepTimeTooShort(99, 5));
}

}  // namespace
}  // namespace pelmora
