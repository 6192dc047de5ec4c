#include "movement/time_scale.h"

#include <algorithm>
#include <cmath>

namespace pelmora {
namespace {

constexpr double kTail = 28;           // pixels behind the end of the whole
constexpr double kLeastTail = 6;       // of them in view, without which a pointer finds no end
constexpr double kClosest = 0.5;       // ms a pixel
constexpr double kFarthest = 2;        // times the zoom that fits the whole
constexpr double kBefore = 0.1;        // of the view, that stays in view before what is brought
constexpr int kShortestDistance = 10;  // ms between a ruler's marks

}  // namespace

double TimeScale::Extent() const {
  return total_ + kTail * ms_per_pixel_;
}

bool TimeScale::Fits() const {
  return total_ + kLeastTail * ms_per_pixel_ <= Span();
}

double TimeScale::FittingZoom() const {
  return std::max(kClosest, total_ / std::max(1.0, width_ - kTail));
}

void TimeScale::SetWidth(double pixels) {
  width_ = std::max(1.0, pixels);
  ScrollTo(left_);
}

void TimeScale::SetTotal(int ms) {
  total_ = ms;
  ScrollTo(left_);
}

void TimeScale::Fit() {
  ms_per_pixel_ = FittingZoom();
  left_ = 0;
}

void TimeScale::ZoomAround(double x, double factor) {
  const double time = TimeAt(x);
  const double farthest = std::max(FittingZoom() * kFarthest, kClosest);
  ms_per_pixel_ = std::clamp(ms_per_pixel_ * factor, kClosest, farthest);
  ScrollTo(time - x * ms_per_pixel_);
}

void TimeScale::ScrollTo(double left_ms) {
  left_ = Fits() ? 0 : std::clamp(left_ms, 0.0, std::max(0.0, Extent() - Span()));
}

void TimeScale::Bring(double from_ms, double to_ms) {
  const bool begins_in_view = from_ms >= left_ && from_ms < left_ + Span();
  if (begins_in_view && (to_ms <= left_ + Span() || to_ms - from_ms > Span())) return;
  const double room = Span() - (to_ms - from_ms);
  ScrollTo(from_ms - std::clamp(Span() * kBefore, 0.0, std::max(0.0, room)));
}

int RulerDistance(const TimeScale& scale, double least_pixels) {
  const double least =
      std::max<double>(kShortestDistance, scale.TimeAt(least_pixels) - scale.Left());
  const double power = std::pow(10, std::floor(std::log10(least)));
  for (const int times : {1, 2, 5}) {
    if (times * power >= least * (1 - 1e-9)) return static_cast<int>(std::lround(times * power));
  }
  return static_cast<int>(std::lround(10 * power));
}

}  // namespace pelmora
