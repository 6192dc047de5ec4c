#include "movement/lanes.h"

#include <algorithm>
#include <cmath>

namespace pelmora {
namespace {

constexpr double kMargin = 4;        // above and below the levels of the chosen lane,
constexpr double kLowMargin = 2;     // and of the others
constexpr double kLeastHeight = 18;  // of a lane: its name needs as much
constexpr double kChosenHeight = kHighestPosition + 2 * kMargin;
constexpr double kLeastChosen = 2;  // times the height of the others

constexpr double kReach = 4;           // pixels on each side of what a press takes hold of
constexpr double kReachInStep = 0.25;  // of the step's width, at the most

}  // namespace

Lanes::Lanes(double top, double height, int chosen) : top_(top), chosen_(chosen) {
  constexpr int kOthers = kChannels - 1;
  chosen_height_ = std::min(kChosenHeight, height - kOthers * kLeastHeight);
  height_ = std::floor((height - chosen_height_) / kOthers);
  if (chosen_height_ < kLeastChosen * height_) {
    height_ = std::max(1.0, std::floor(height / (kOthers + kLeastChosen)));
  }
  chosen_height_ = std::max(height_, height - kOthers * height_);
}

double Lanes::Top(int channel) const {
  return top_ + channel * height_ + (channel > chosen_ ? chosen_height_ - height_ : 0);
}

int Lanes::At(double y) const {
  for (int channel = 0; channel < kChannels; ++channel) {
    if (y >= Top(channel) && y < Bottom(channel)) return channel;
  }
  return -1;
}

double Lanes::MarginOf(int channel) const {
  return channel == chosen_ ? kMargin : kLowMargin;
}

double Lanes::Y(int channel, double position) const {
  const double margin = MarginOf(channel);
  const double way = Height(channel) - 2 * margin;
  return Top(channel) + margin + (1 - position / kHighestPosition) * way;
}

double Lanes::PositionAt(int channel, double y) const {
  const double margin = MarginOf(channel);
  const double way = Height(channel) - 2 * margin;
  return (1 - (y - Top(channel) - margin) / way) * kHighestPosition;
}

Hit HitAt(const Places& places, const ShownSteps& steps, const StepTimes& times, double x,
          double y) {
  const int channel = places.lanes.At(y);
  if (x < Places::kLabels) return {channel < 0 ? Part::kNothing : Part::kLabel, -1, channel};
  if (y < 0 || (channel < 0 && y >= Places::kRuler)) return {};
  const auto near_end = [&](int step) {
    const double width = places.X(times.End(step)) - places.X(times.Start(step));
    return std::abs(x - places.X(times.End(step))) <= std::min(kReach, width * kReachInStep);
  };
  const int step = times.StepAt(places.TimeAt(x));
  if (step < 0) {
    const int last = steps.Count() - 1;
    return last >= 0 && near_end(last) ? Hit{Part::kEnd, last, channel} : Hit{};
  }
  if (near_end(step)) return {Part::kEnd, step, channel};
  // To the right of a narrow step's end its neighbour keeps the greater part of itself, too.
  const double width = places.X(times.End(step)) - places.X(times.Start(step));
  if (step > 0 && near_end(step - 1) && x - places.X(times.Start(step)) <= width * kReachInStep) {
    return {Part::kEnd, step - 1, channel};
  }
  if (channel < 0) return {Part::kRuler, step, -1};
  const double level = places.lanes.Y(channel, steps.Position(step, channel));
  return {std::abs(y - level) <= kReach ? Part::kLevel : Part::kLane, step, channel};
}

}  // namespace pelmora
