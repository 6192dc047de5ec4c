#include "movement/shown_steps.h"

#include <algorithm>

namespace pelmora {
namespace {

constexpr double kByteTime = 11 / 9.6;  // ms: 11 bits at 9600 baud
constexpr int kChannelBytes = 2;        // a code and a position

}  // namespace

int ShownSteps::Value(int step, int column) const {
  if (preview_ && preview_->step == step && preview_->column == column) return preview_->value;
  return rows_[static_cast<std::size_t>(step)][static_cast<std::size_t>(column)];
}

int ShownSteps::Duration(int step) const {
  return std::max(1, Value(step, kDurationColumn));
}

bool ShownSteps::HasBreak(int step) const {
  return Value(step, kBreakColumn) != 0;
}

bool ShownSteps::Moves(int channel) const {
  for (int step = 1; step < Count(); ++step) {
    if (Position(step, channel) != Position(0, channel)) return true;
  }
  return false;
}

double ShownSteps::SerialLineTime(int step) const {
  const int before = step == 0 ? Count() - 1 : step - 1;
  int changed = 0;
  for (int channel = 0; channel < kChannels; ++channel) {
    if (Position(step, channel) != Position(before, channel)) ++changed;
  }
  return changed * kChannelBytes * kByteTime;
}

StepTimes::StepTimes(const ShownSteps& steps) {
  starts_.reserve(static_cast<std::size_t>(steps.Count()) + 1);
  int time = 0;
  starts_.push_back(time);
  for (int step = 0; step < steps.Count(); ++step) starts_.push_back(time += steps.Duration(step));
}

int StepTimes::StepAt(double ms) const {
  if (ms < 0 || ms >= Total()) return -1;
  return static_cast<int>(std::ranges::upper_bound(starts_, ms) - starts_.begin()) - 1;
}

}  // namespace pelmora
