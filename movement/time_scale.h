// Which time stands where: the zoom and the scrolling of a view that shows a stretch of time.
#pragma once

namespace pelmora {

// Pixels count from the left edge of the view, times are in ms. Behind the end of the whole
// there is some room, so that a pointer can get hold of it.
class TimeScale {
 public:
  // The width of the view in pixels, and how long the whole lasts. What stands at the left edge
  // stays there as far as it can; the zoom stays.
  void SetWidth(double pixels);
  void SetTotal(int ms);

  double X(double ms) const { return (ms - left_) / ms_per_pixel_; }
  double TimeAt(double x) const { return left_ + x * ms_per_pixel_; }
  double Left() const { return left_; }                   // the time at the left edge
  double Span() const { return width_ * ms_per_pixel_; }  // from edge to edge
  double Extent() const;                                  // the whole, and the room behind it
  // All of it is in view, and a little of the room behind it.
  bool Fits() const;

  // The zoom at which the whole just fits.
  void Fit();
  // Shows `factor` times as much (below 1: less), with the time at `x` staying there. It goes from
  // 2 pixels a ms to twice the zoom that fits the whole.
  void ZoomAround(double x, double factor);
  // Puts a time at the left edge, as far as there is something to show. What fits begins there.
  void ScrollTo(double left_ms);
  // Scrolls, if need be, until the stretch is in view, with some of what is before it; of a
  // stretch that is wider than the view, its beginning.
  void Bring(double from_ms, double to_ms);

  bool operator==(const TimeScale&) const = default;

 private:
  double FittingZoom() const;

  double width_ = 1;
  double total_ = 0;
  double left_ = 0;
  double ms_per_pixel_ = 1;
};

// The distance of a ruler's marks in ms: 1, 2 or 5 times a power of ten, so that they stand at
// least `least_pixels` apart.
int RulerDistance(const TimeScale& scale, double least_pixels);

}  // namespace pelmora
