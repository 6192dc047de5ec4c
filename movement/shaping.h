// Changing angles and durations of steps: by a drag, which tries a value out before it counts, or
// by keys. A drag's angle is tried out on the channel's servo, too.
#pragma once

#include <array>
#include <optional>

#include "edit/edited_sequence.h"
#include "movement/lanes.h"
#include "platform/controls/cw_slide.h"

namespace pelmora {

inline constexpr int kLongestShaped = 32760;  // ms: the last whole tick of the board

using Faders = std::array<platform::CWSlide*, kChannels>;

// The value of a drag that stands at `value` (a position, or a duration in ms): positions to half
// degrees, durations to 20 ms, both kept in their range.
int SnappedValue(int column, double value);

// `value`, changed by keys: kept in its range. A duration beyond the range is not changed away from
// where the key goes.
int ChangedValue(int column, int value, int change);

class Shaping {
 public:
  // All of it outlives the shaping.
  Shaping(EditedSequence& edited, const Faders& faders) : edited_(edited), faders_(faders) {}

  // A press on `hit`, a step's level or its end. `at` is where: the position at that height of the
  // lane, or the time in ms. Nothing is changed by a press alone.
  void Take(const Hit& hit, double at);
  // The pointer has gone on. True when another value is tried out by it.
  bool Follow(double at);
  // The button has come up: what is tried out becomes the step's value. Each drag is a step of
  // undo.
  void Drop();
  // The operator gives the drag up: everything is as it was before, the fader included.
  void PutBack();
  // The drag ends without effect, for something else has happened. The fader stays where the servo
  // is.
  void GiveUp();

  // Something has been pressed that can be dragged.
  bool Taken() const { return taken_.has_value(); }
  // What was pressed, while `Taken`.
  const Hit& TakenHit() const { return taken_->hit; }
  // The value that is being tried out, once the drag has begun.
  const std::optional<Preview>& Tried() const { return tried_; }
  // What it was before, while `Taken`.
  int Original() const { return taken_->original; }

  // Keys: changes a value of a step, the fader of that channel with it. In a row they are one step
  // of undo.
  void Change(int step, int column, int change);

 private:
  struct Grip {
    Hit hit;
    int column;
    int original;
    double at;
    int fader;  // its value at the press
  };

  platform::CWSlide* Fader() const;

  EditedSequence& edited_;
  const Faders faders_;
  std::optional<Grip> taken_;
  std::optional<Preview> tried_;
};

}  // namespace pelmora
