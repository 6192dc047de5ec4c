// The steps of the sequence on screen as the movement shows them, and when they are.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "core/declaration.h"

namespace pelmora {

// A value that is being tried out. It is shown in the place of the one in that row.
struct Preview {
  int step = 0;
  int column = 0;  // of the edit buffer: a channel, or `kDurationColumn`
  int value = 0;

  bool operator==(const Preview&) const = default;
};

// Looks at rows that it is given and keeps none of them.
class ShownSteps {
 public:
  explicit ShownSteps(std::span<const EditRow> rows, std::optional<Preview> preview = {})
      : rows_(rows), preview_(preview) {}

  int Count() const { return static_cast<int>(rows_.size()); }
  int Position(int step, int channel) const { return Value(step, channel); }
  // In ms, at least 1: so long playback holds a step of a file that has no duration.
  int Duration(int step) const;
  bool HasBreak(int step) const;

  // Whether the channel has more than one position in the sequence.
  bool Moves(int channel) const;

  // How long the serial line takes to carry the step when playback shows it, in ms: a code and a
  // position for each channel that differs from the step before. Before the first step comes the
  // last one, as in playback.
  double SerialLineTime(int step) const;
  // The serial line takes longer than the step lasts.
  bool OutrunsSerialLine(int step) const { return SerialLineTime(step) > Duration(step); }

 private:
  int Value(int step, int column) const;

  std::span<const EditRow> rows_;
  std::optional<Preview> preview_;
};

// When the steps begin and end, in ms from the beginning of the first.
class StepTimes {
 public:
  explicit StepTimes(const ShownSteps& steps);

  int Start(int step) const { return starts_[static_cast<std::size_t>(step)]; }
  int End(int step) const { return starts_[static_cast<std::size_t>(step) + 1]; }
  int Total() const { return starts_.back(); }
  // The step that is shown at this time, -1 before the first and after the last.
  int StepAt(double ms) const;

 private:
  std::vector<int> starts_;  // and the end of the last step
};

}  // namespace pelmora
