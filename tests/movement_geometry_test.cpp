// The movement without its window: times, zoom, lanes, what lies under a point, snapping.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "movement/lanes.h"
#include "movement/movement_text.h"
#include "movement/movement_window.h"
#include "movement/shaping.h"

namespace pelmora {
namespace {

// Steps of these durations; channel 0 of step i is at 128 + 10 i, the others are at the centre.
std::vector<EditRow> Rows(const std::vector<int>& durations) {
  std::vector<EditRow> rows;
  for (const int duration : durations) {
    EditRow row;
    row.fill(kCentre);
    row[0] += 10 * static_cast<int>(rows.size());
    row[kDurationColumn] = duration;
    row[kBreakColumn] = 0;
    rows.push_back(row);
  }
  return rows;
}

TEST(MovementTimes, WhichChannelsMove) {
  auto rows = Rows({20, 20, 20});
  for (EditRow& row : rows) row[3] = 99;
  rows[2][5] = 99;
  const ShownSteps steps(rows);
  std::string moving;
  for (int channel = 0; channel < kChannels; ++channel) moving += steps.Moves(channel) ? '+' : '.';
  EXPECT_EQ(moving, "+....+......");
}

TEST(MovementTimes, OfStepsAndTheStepAtATime) {
  const auto rows = Rows({400, 20, 0, -5, 1000});  // a file may hold durations that are none
  const StepTimes times{ShownSteps(rows)};
  EXPECT_EQ(times.Total(), 1422);
  const std::pair<double, int> cases[] = {{-0.1, -1}, {0, 0},      {399.9, 0}, {400, 1},
                                          {420, 2},   {421, 3},    {422, 4},   {1421.9, 4},
                                          {1422, -1}, {100000, -1}};
  for (const auto& [ms, step] : cases) EXPECT_EQ(times.StepAt(ms), step) << ms;
  const StepTimes tried(ShownSteps(rows, Preview{1, kDurationColumn, 120}));
  EXPECT_EQ(tried.Start(1), 400);
  EXPECT_EQ(tried.End(1), 520);
  EXPECT_EQ(tried.Total(), 1522);
  EXPECT_EQ(StepTimes(ShownSteps({})).StepAt(0), -1);
}

TEST(MovementTimes, OnTheLine) {
  // So many channels change in the last of three steps.
  const std::tuple<int, int, double, bool> cases[] = {
      {0, 20, 0, false},     {1, 20, 55 / 24.0, false}, {8, 20, 55 / 3.0, false},
      {9, 20, 20.625, true}, {12, 27, 27.5, true},      {12, 28, 27.5, false}};
  for (const auto& [channels, duration, ms, late] : cases) {
    auto rows = Rows({20, 28, duration});
    for (int c = 0; c < kChannels; ++c) {
      const auto channel = static_cast<std::size_t>(c);
      rows[1][channel] = rows[0][channel] + 7;
      rows[2][channel] = rows[1][channel] + (c < channels);
    }
    const ShownSteps steps(rows);
    EXPECT_DOUBLE_EQ(steps.SerialLineTime(2), ms);
    EXPECT_EQ(steps.OutrunsSerialLine(2), late) << ms << " ms in " << duration;
    EXPECT_DOUBLE_EQ(steps.SerialLineTime(0), 27.5) << "it follows the last one, as in playback";
  }
  EXPECT_EQ(ShownSteps(Rows({20})).SerialLineTime(0), 0);
}

TEST(MovementTimes, ZoomAndScroll) {
  TimeScale scale;
  scale.SetWidth(1028);
  scale.SetTotal(8'388'352);  // 256 steps of 32767 ms
  scale.Fit();
  EXPECT_TRUE(scale.Fits());
  EXPECT_NEAR(scale.X(8'388'352), 1000, 0.01) << "with room behind the end";
  // What is under the pointer stays there, in and out; the zoom has ends.
  scale.ZoomAround(500, 0.01);
  const double time = scale.TimeAt(700);
  scale.ZoomAround(700, 0.5);
  EXPECT_NEAR(scale.TimeAt(700), time, 1e-6);
  for (int i = 0; i < 50; ++i) scale.ZoomAround(700, 0.5);
  EXPECT_NEAR(scale.Span(), 514, 1e-6) << "2 pixels a ms";
  EXPECT_NEAR(scale.TimeAt(700), time, 1e-6);
  scale.ScrollTo(-5);
  EXPECT_EQ(scale.Left(), 0);
  scale.ScrollTo(1e9);
  EXPECT_NEAR(scale.X(8'388'352), 1000, 1e-6);
  // Of a wider view, or a shorter whole, the end stays where it was.
  scale.SetWidth(1128);
  EXPECT_NEAR(scale.X(8'388'352), 1100, 1e-6);
  scale.SetTotal(5'000'000);
  EXPECT_NEAR(scale.X(5'000'000), 1100, 1e-6);
  scale.Fit();
  EXPECT_EQ(scale.Left(), 0);
  // At its end a pointer finds it.
  for (const auto& [width, fits] : {std::pair(1107, true), std::pair(1105, false)}) {
    scale.SetWidth(width);
    EXPECT_EQ(scale.Fits(), fits) << width;
  }
  scale.SetWidth(1028);
  scale.SetTotal(8'388'352);
  for (int i = 0; i < 50; ++i) scale.ZoomAround(700, 2);
  EXPECT_EQ(scale.Left(), 0);
  EXPECT_NEAR(scale.X(8'388'352), 500, 0.01) << "twice the zoom that fits";
}

TEST(MovementTimes, AStretchIsBroughtIntoView) {
  // The view shows 1000 ms of 10 s.
  TimeScale scale;
  scale.SetWidth(1000);
  scale.SetTotal(10000);
  const std::tuple<double, double, double, double> cases[] = {
      {2000, 2900, 3000, 2000},  // up to the edge
      {2000, 2900, 3100, 2800},  // its end is not
      {2000, 3100, 3200, 3000},  // behind the view
      {2000, 500, 700, 400},     // before it
      {2000, 2500, 9000, 2000},  // longer than the view, but it begins there
      {2000, 4000, 9000, 4000},  // longer, and begins elsewhere
      {0, 9900, 10000, 9028},    // the last one
  };
  for (const auto& [left, from, to, expected] : cases) {
    scale.ScrollTo(left);
    scale.Bring(from, to);
    EXPECT_DOUBLE_EQ(scale.Left(), expected) << from << " to " << to;
  }
}

TEST(MovementTimes, RulerMarksStandApart) {
  const std::tuple<int, int, const char*> cases[] = {{1000, 100, "0.1 s"},
                                                     {600, 50, "0.05 s"},
                                                     {4820, 500, "0.5 s"},
                                                     {60000, 5000, "5 s"},
                                                     {8'388'352, 1'000'000, "1000 s"}};
  for (const auto& [total, distance, text] : cases) {
    TimeScale scale;
    scale.SetWidth(1028);
    scale.SetTotal(total);
    scale.Fit();
    EXPECT_EQ(RulerDistance(scale, 76), distance) << total;
    EXPECT_EQ(RulerText(distance, distance, "."), text);
  }
}

TEST(MovementLanes, HaveTheirPlacesAndScales) {
  for (const double height : {280.0, 480.0, 624.0, 1400.0}) {
    for (int chosen = 0; chosen < kChannels; ++chosen) {
      const Lanes lanes(46, height, chosen);
      EXPECT_EQ(lanes.Top(0), 46);
      EXPECT_NEAR(lanes.Bottom(kChannels - 1), 46 + height, 1e-9);
      for (int channel = 0; channel < kChannels; ++channel) {
        EXPECT_EQ(lanes.At(lanes.Top(channel)), channel);
        EXPECT_EQ(lanes.At(lanes.Bottom(channel) - 0.1), channel);
        EXPECT_GE(lanes.Height(channel), 18);
        EXPECT_LT(lanes.Y(channel, 255), lanes.Y(channel, 0));
        EXPECT_NEAR(lanes.PositionAt(channel, lanes.Y(channel, 77)), 77, 1e-9);
      }
      if (height >= 480) {
        EXPECT_GE(lanes.Y(chosen, 0) - lanes.Y(chosen, 255), 255) << "half degrees have pixels";
      }
      EXPECT_EQ(lanes.At(45), -1);
      EXPECT_EQ(lanes.At(46 + height), -1);
    }
  }
}

TEST(MovementLanes, WhatLiesUnderAPoint) {
  // A pixel is a ms: steps at 0, 400, 410, 430, and the end at 830.
  const auto rows = Rows({400, 10, 20, 400});
  const ShownSteps steps(rows);
  const StepTimes times(steps);
  Places places;
  places.time.SetWidth(830 + 28);
  places.time.SetTotal(times.Total());
  places.time.Fit();
  places.lanes = Lanes(Places::kRuler, 624, 0);
  const double left = Places::kLabels;
  const double level = places.lanes.Y(0, 128);
  const double third = places.lanes.Y(0, 148);
  const double lane = places.lanes.Top(0) + 20;
  const double other = places.lanes.Y(5, 128);
  const std::tuple<double, double, Hit> cases[] = {
      {50, lane, {Part::kLabel, -1, 0}},
      {50, 20, {}},
      {left + 200, 20, {Part::kRuler, 0, -1}},
      {left + 200, lane, {Part::kLane, 0, 0}},
      {left + 200, level, {Part::kLevel, 0, 0}},
      {left + 200, level + 5, {Part::kLane, 0, 0}},
      {left + 200, other + 3, {Part::kLevel, 0, 5}},
      {left + 397, level, {Part::kEnd, 0, 0}},
      {left + 397, 20, {Part::kEnd, 0, -1}},
      {left + 402, lane, {Part::kEnd, 0, 0}},  // to the right of it, a quarter of the narrow step
      {left + 404, lane, {Part::kLane, 1, 0}},
      {left + 408, lane, {Part::kEnd, 1, 0}},
      {left + 420, third, {Part::kLevel, 2, 0}},  // the middle of a narrow step is not its end
      {left + 433, other, {Part::kEnd, 2, 5}},
      {left + 828, lane, {Part::kEnd, 3, 0}},
      {left + 833, lane, {Part::kEnd, 3, 0}},  // the last end, from behind
      {left + 840, lane, {}},
      {left + 200, 46 + 624, {}},
  };
  for (const auto& [x, y, hit] : cases) {
    const Hit found = HitAt(places, steps, times, x, y);
    EXPECT_EQ(found, hit) << x - left << ", " << y << ": " << static_cast<int>(found.part) << ' '
                          << found.step << ' ' << found.channel;
  }
  const ShownSteps none({});
  EXPECT_EQ(HitAt(places, none, StepTimes(none), left, lane), Hit{});
}

TEST(MovementShaping, ValuesSnapAndStayInTheirRange) {
  constexpr int kMs = kDurationColumn;
  const std::tuple<int, double, int> snapped[] = {
      {3, 130.4, 130}, {3, 130.5, 131}, {3, -40, 0},     {3, 1e6, 255},    {kMs, 409, 400},
      {kMs, 411, 420}, {kMs, 3, 20},    {kMs, -1e6, 20}, {kMs, 1e6, 32760}};
  for (const auto& [column, value, expected] : snapped) {
    EXPECT_EQ(SnappedValue(column, value), expected) << value;
  }
  const std::tuple<int, int, int, int> changed[] = {
      {0, 128, 1, 129},         {0, 250, 10, 255},  {0, 4, -10, 0},
      {kMs, 505, 20, 525},      {kMs, 30, -20, 20}, {kMs, 32767, 20, 32767},
      {kMs, 32767, -20, 32747}, {kMs, 10, -20, 10}, {kMs, 0, 20, 20}};
  for (const auto& [column, value, change, expected] : changed) {
    EXPECT_EQ(ChangedValue(column, value, change), expected) << value << ' ' << change;
  }
}

TEST(MovementWindowPlace, IsBesideTheMainWindowWhereThereIsRoom) {
  const std::tuple<QRect, QRect, bool> cases[] = {
      {{535, 180, 849, 696}, {0, 0, 1920, 1080}, true},  // in the middle of a wide screen
      {{1071, 40, 849, 696}, {0, 0, 1920, 1080}, true},  // room to the left only
      {{215, 40, 849, 696}, {0, 0, 1280, 1024}, false},
      {{0, 40, 1024, 560}, {0, 0, 1024, 600}, false},
      {{2455, 180, 849, 696}, {1920, 0, 1920, 1080}, true},  // the second screen
  };
  for (const auto& [other, screen, beside] : cases) {
    const QRect place = PlaceBeside(other, screen);
    EXPECT_EQ(!place.intersects(other), beside) << other.x();
    EXPECT_TRUE(screen.contains(place)) << other.x();
    EXPECT_GE(place.width(), 400);
    EXPECT_GE(place.height(), 400);
  }
}

}  // namespace
}  // namespace pelmora
