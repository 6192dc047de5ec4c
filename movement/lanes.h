// Where the twelve lanes stand, and what lies under a point.
#pragma once

#include "core/declaration.h"
#include "movement/shown_steps.h"
#include "movement/time_scale.h"

namespace pelmora {

// The lanes of the channels, one below the other, in pixels. All have the same height but the
// chosen one: that one is so high, where the space allows it, that each half degree has its pixel.
class Lanes {
 public:
  Lanes() = default;
  Lanes(double top, double height, int chosen);

  int Chosen() const { return chosen_; }
  double Top(int channel) const;
  double Height(int channel) const { return channel == chosen_ ? chosen_height_ : height_; }
  double Bottom(int channel) const { return Top(channel) + Height(channel); }
  // The channel of the lane at this height, -1 above and below them.
  int At(double y) const;

  // The height of a position (0..255) in its lane, and back; beyond the lane it goes on.
  double Y(int channel, double position) const;
  double PositionAt(int channel, double y) const;

 private:
  double MarginOf(int channel) const;

  double top_ = 0;
  double height_ = 1;
  double chosen_height_ = 1;
  int chosen_ = 0;
};

// Where everything stands, in pixels from the view's upper left corner.
struct Places {
  static constexpr int kLabels = 104;  // the width of the column of names
  static constexpr int kRuler = 46;    // the height of the ruler
  static constexpr int kLateMark = 4;  // the least width of the mark of a late step

  TimeScale time;
  Lanes lanes;

  double X(double ms) const { return kLabels + time.X(ms); }
  double TimeAt(double x) const { return time.TimeAt(x - kLabels); }
};

enum class Part {
  kNothing,
  kLabel,  // of a lane
  kRuler,  // in a step's time
  kLane,   // in a step's time, but on nothing that a press would take hold of
  kLevel,  // a step's angle in a lane
  kEnd,    // of a step, in a lane or on the ruler
};

struct Hit {
  Part part = Part::kNothing;
  int step = -1;     // -1 where there is none
  int channel = -1;  // of the lane, -1 on the ruler

  bool operator==(const Hit&) const = default;
};

// What lies under a point. The end of a step goes before its level; it reaches to both sides, but
// over no more than a quarter of a narrow step.
Hit HitAt(const Places& places, const ShownSteps& steps, const StepTimes& times, double x,
          double y);

}  // namespace pelmora
