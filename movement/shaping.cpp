#include "movement/shaping.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pelmora {
namespace {

bool IsDuration(int column) {
  return column == kDurationColumn;
}

}  // namespace

int SnappedValue(int column, double value) {
  if (!IsDuration(column)) {
    return static_cast<int>(std::lround(std::clamp<double>(value, 0, kHighestPosition)));
  }
  const double ticks = std::clamp<double>(value, kShortestDuration, kLongestShaped) / kBoardTickMs;
  return static_cast<int>(std::lround(ticks)) * kBoardTickMs;
}

int ChangedValue(int column, int value, int change) {
  const int lowest = IsDuration(column) ? kShortestDuration : 0;
  const int highest = IsDuration(column) ? kLongestShaped : kHighestPosition;
  const int changed = std::clamp(value + change, lowest, highest);
  return change > 0 ? std::max(value, changed) : std::min(value, changed);
}

void Shaping::Take(const Hit& hit, double at) {
  const int column = hit.part == Part::kEnd ? kDurationColumn : hit.channel;
  const int original = edited_.Row(hit.step)[static_cast<std::size_t>(column)];
  taken_ = Grip{hit, column, original, at, 0};
  tried_.reset();
  if (const platform::CWSlide* fader = Fader()) taken_->fader = fader->value();
}

platform::CWSlide* Shaping::Fader() const {
  if (!taken_ || IsDuration(taken_->column)) return nullptr;
  return faders_[static_cast<std::size_t>(taken_->column)];
}

bool Shaping::Follow(double at) {
  if (!taken_) return false;
  const int value = SnappedValue(taken_->column, taken_->original + at - taken_->at);
  const Preview preview{taken_->hit.step, taken_->column, value};
  if (tried_ == preview) return false;
  tried_ = preview;
  if (platform::CWSlide* fader = Fader()) fader->Lead(value);
  return true;
}

void Shaping::Drop() {
  platform::CWSlide* fader = tried_ ? Fader() : nullptr;
  const std::optional<Preview> dropped = std::exchange(tried_, std::nullopt);
  taken_.reset();
  if (!dropped) return;
  if (fader) fader->Settle();
  // It is in its range. Where the step is gone nothing changes.
  static_cast<void>(edited_.ChangeValue(dropped->step, dropped->column, dropped->value,
                                        EditedSequence::Joins::kNo));
}

void Shaping::PutBack() {
  if (platform::CWSlide* fader = tried_ ? Fader() : nullptr) fader->setValue(taken_->fader);
  taken_.reset();
  tried_.reset();
}

void Shaping::GiveUp() {
  if (platform::CWSlide* fader = tried_ ? Fader() : nullptr) fader->Stay();
  taken_.reset();
  tried_.reset();
}

void Shaping::Change(int step, int column, int change) {
  const int value =
      ChangedValue(column, edited_.Row(step)[static_cast<std::size_t>(column)], change);
  if (!IsDuration(column)) faders_[static_cast<std::size_t>(column)]->setValue(value);
  static_cast<void>(edited_.ChangeValue(step, column, value, EditedSequence::Joins::kYes));
}

}  // namespace pelmora
