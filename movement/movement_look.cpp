#include "movement/movement_look.h"

#include <QFontMetrics>
#include <QPolygonF>
#include <QVarLengthArray>
#include <algorithm>
#include <array>
#include <cmath>

#include "movement/movement_text.h"
#include "platform/look/colours.h"
#include "platform/look/control_look.h"
#include "platform/look/list_look.h"

namespace pelmora {
namespace {

// The rows of the ruler, in pixels from the top.
constexpr int kSecondsTop = 3;
constexpr int kSecondsBottom = 19;
constexpr int kNumbersTop = 23;
constexpr int kNumbersBottom = 39;
constexpr int kFlag = 9;
constexpr int kTickTop = 40;
constexpr int kSlowTop = 40;  // the bar of a step that the line can't carry in time

constexpr double kBetweenSeconds = 76;  // pixels at least
constexpr int kBesideNumber = 7;        // pixels between two steps' numbers at least
constexpr double kLeastGrid = 5;        // pixels between two lines of the grid at least

constexpr int kName = 14;  // left edges in the column of names
constexpr int kAngleRight = Places::kLabels - 10;
constexpr int kHeadReach = 7;  // pixels on each side of the playhead
constexpr int kHandle = 5;
constexpr int kBeside = 20;  // pixels beside a sentence

constexpr QSize kBubbleMargin(8, 4);
constexpr int kBubbleDistance = 11;

int Pixel(double place) {
  return static_cast<int>(std::lround(place));
}

// Beside the pointer, wherever there is room.
QRect BubbleRect(const QString& text, const QPointF& handle, const QSize& size,
                 const QFontMetrics& font) {
  QRect box(QPoint(), QSize(font.horizontalAdvance(text), font.height()) + 2 * kBubbleMargin);
  box.moveTopLeft(handle.toPoint() + QPoint(kBubbleDistance, -kBubbleDistance - box.height()));
  if (box.right() > size.width() - 4) box.moveRight(Pixel(handle.x()) - kBubbleDistance);
  if (box.top() < Places::kRuler) box.moveTop(Pixel(handle.y()) + kBubbleDistance);
  return box;
}

class Drawing {
 public:
  Drawing(QPainter& painter, const QRect& clip, const MovementScene& scene, const QPalette& palette)
      : painter_(painter),
        clip_(clip),
        scene_(scene),
        places_(scene.places),
        steps_(scene.steps),
        times_(scene.times),
        colours_(MovementColoursOf(palette)),
        bottom_(Pixel(scene.places.lanes.Bottom(kChannels - 1))),
        digit_(painter.fontMetrics().horizontalAdvance(QLatin1Char('0'))) {
    FindSteps();
  }

  void Draw() {
    painter_.setClipRect(clip_);
    painter_.fillRect(clip_, colours_.window);
    if (clip_.left() < Places::kLabels) DrawNames();
    painter_.save();
    painter_.setClipRect(QRect(Places::kLabels, 0, scene_.size.width(), scene_.size.height()) &
                         clip_);
    if (clip_.top() < Places::kRuler && steps_.Count() > 0) DrawRuler();
    DrawGrounds();
    DrawGrid();
    for (int channel = 0; channel < kChannels; ++channel) {
      if (InClip(channel)) DrawLane(channel);
    }
    DrawBreaks();
    if (scene_.head) DrawHead(*scene_.head);
    painter_.restore();
    if (scene_.handle) DrawHandle();
    if (steps_.Count() == 0) DrawNoSteps();
  }

 private:
  // The steps of which something is inside the clip.
  void FindSteps() {
    if (steps_.Count() == 0) return;
    const auto step_at = [this](int x) {
      const double ms = std::clamp(places_.TimeAt(x), 0.0, times_.Total() - 1.0);
      return times_.StepAt(ms);
    };
    // A neighbour's vertical line and a flag reach beyond their step.
    first_ = std::max(0, step_at(clip_.left() - kFlag - 2) - 1);
    last_ = std::min(steps_.Count() - 1, step_at(clip_.right() + 3) + 1);
  }

  bool InClip(int channel) const {
    return Pixel(places_.lanes.Top(channel)) <= clip_.bottom() &&
           Pixel(places_.lanes.Bottom(channel)) >= clip_.top();
  }
  QRect LaneRect(int channel) const {
    const int top = Pixel(places_.lanes.Top(channel));
    return {Places::kLabels, top, scene_.size.width() - Places::kLabels,
            Pixel(places_.lanes.Bottom(channel)) - top};
  }
  int StartX(int step) const { return Pixel(places_.X(times_.Start(step))); }
  int EndX(int step) const { return Pixel(places_.X(times_.End(step))); }

  void DrawNames() {
    const int chosen = places_.lanes.Chosen();
    for (int channel = 0; channel < kChannels; ++channel) {
      if (!InClip(channel)) continue;
      QRect row = LaneRect(channel);
      row.setLeft(0);
      row.setWidth(Places::kLabels);
      if (channel == chosen) {
        platform::DrawBox(painter_, row.adjusted(4, 1, -3, -1), colours_.lane,
                          scene_.focused ? colours_.curve : colours_.tick, scene_.focused);
        DrawScale(row);
      }
      QFont font = painter_.font();
      font.setBold(channel == chosen);
      painter_.save();
      painter_.setFont(font);
      painter_.setPen(steps_.Moves(channel) ? colours_.text : colours_.pale_text);
      painter_.drawText(row.adjusted(kName, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                        QStringLiteral("Ch%1").arg(channel));
      if (scene_.named >= 0) {
        painter_.drawText(
            QRect(0, row.top(), kAngleRight, row.height()), Qt::AlignVCenter | Qt::AlignRight,
            PositionText(steps_.Position(scene_.named, channel), scene_.decimal_point));
      }
      painter_.restore();
    }
  }

  // The ends of the scale, beside the lane that is high enough for them.
  void DrawScale(const QRect& row) {
    const int text = painter_.fontMetrics().height();
    if (row.height() < 4 * text) return;
    painter_.setPen(colours_.pale_text);
    const QRect inside(0, row.top() + 3, kAngleRight, row.height() - 6);
    for (const auto& [position, edge] : {std::pair(255, Qt::AlignTop), {0, Qt::AlignBottom}}) {
      painter_.drawText(inside, static_cast<int>(edge | Qt::AlignRight),
                        PositionText(position, scene_.decimal_point));
    }
  }

  void DrawRuler() {
    DrawSeconds();
    DrawSteps();
    DrawNumbers();
    painter_.fillRect(QRect(clip_.left(), Places::kRuler - 1, clip_.width(), 1), colours_.tick);
  }

  void DrawSeconds() {
    const int distance = RulerDistance(places_.time, kBetweenSeconds);
    const double before = places_.TimeAt(clip_.left() - kBetweenSeconds);
    const double until = places_.TimeAt(clip_.right() + kBetweenSeconds);
    for (double ms = std::max(0.0, std::floor(before / distance)) * distance; ms < until;
         ms += distance) {
      const int x = Pixel(places_.X(ms));
      painter_.fillRect(QRect(x, kSecondsBottom - 1, 1, 4), colours_.tick);
      painter_.setPen(colours_.pale_text);
      const QString text = RulerText(static_cast<int>(ms), distance, scene_.decimal_point);
      const int width = painter_.fontMetrics().horizontalAdvance(text) + 4;
      // At the very left there is no room for its first half.
      const int left = std::max(Places::kLabels, x - width / 2);
      if (x < Places::kLabels || left + width > scene_.size.width()) continue;
      painter_.drawText(QRect(left, kSecondsTop, width, kSecondsBottom - kSecondsTop),
                        Qt::AlignCenter, text);
    }
  }

  void DrawSteps() {
    for (int step = first_; step <= last_; ++step) {
      const double left = places_.X(times_.Start(step));
      const double right = places_.X(times_.End(step));
      if (right - left >= kLeastGrid || step == 0) DrawTick(left);
      if (right - left >= kLeastGrid || step == steps_.Count() - 1) DrawTick(right);
      if (steps_.OutrunsSerialLine(step)) DrawSlow(left, right);
    }
  }

  // The place of a step's number: in the middle of what is in view of the step.
  QRect NumberRect(int step) const {
    const int from = std::max(StartX(step) + (steps_.HasBreak(step) ? kFlag : 0), Places::kLabels);
    const int to = std::min(EndX(step), scene_.size.width());
    const int digits = step < 10 ? 1 : step < 100 ? 2 : 3;
    const int width = digits * digit_ + 2;
    return {(from + to - width) / 2, kNumbersTop, width, kNumbersBottom - kNumbersTop};
  }

  // The selected step's number stands in any case, the others where there is room. Looks at all of
  // them, so that the same ones stand there whatever part is drawn; a selection takes only those
  // away that it touches.
  void DrawNumbers() {
    const bool selects = scene_.selected >= 0 && scene_.selected < steps_.Count();
    const QRect chosen = selects ? NumberRect(scene_.selected) : QRect();
    const QRect around = chosen.adjusted(-kBesideNumber, 0, kBesideNumber, 0);
    int free = Places::kLabels;
    for (int step = 0; step < steps_.Count(); ++step) {
      if (EndX(step) < Places::kLabels || StartX(step) > scene_.size.width()) continue;
      const QRect place = NumberRect(step);
      if (place.left() < free) continue;
      free = place.right() + kBesideNumber;
      if (step != scene_.selected && !place.intersects(around) && place.intersects(clip_)) {
        DrawNumber(place, step);
      }
    }
    if (selects && chosen.intersects(clip_)) DrawNumber(chosen, scene_.selected);
  }

  void DrawNumber(const QRect& place, int step) {
    const bool selected = step == scene_.selected;
    painter_.save();
    QFont font = painter_.font();
    font.setBold(selected);
    painter_.setFont(font);
    painter_.setPen(selected ? colours_.number : colours_.text);
    painter_.drawText(place, Qt::AlignCenter | Qt::TextDontClip, QString::number(step));
    painter_.restore();
  }

  void DrawTick(double x) {
    painter_.fillRect(QRect(Pixel(x), kTickTop, 1, Places::kRuler - kTickTop), colours_.tick);
  }

  // A thick bar with an edge, which nothing else on the ruler has.
  void DrawSlow(double left, double right) {
    const int width = std::max(Places::kLateMark, Pixel(right) - Pixel(left));
    const QRect bar(Pixel(left), kSlowTop, width + 1, Places::kRuler - kSlowTop);
    painter_.fillRect(bar, colours_.slow);
    painter_.fillRect(bar.adjusted(1, 1, -1, -1), colours_.amber);
  }

  void DrawGrounds() {
    for (int channel = 0; channel < kChannels; ++channel) {
      if (!InClip(channel)) continue;
      painter_.fillRect(LaneRect(channel) & clip_,
                        channel % 2 == 0 ? colours_.lane : colours_.odd_lane);
    }
    if (scene_.selected < 0 || scene_.selected >= steps_.Count()) return;
    const int left = StartX(scene_.selected);
    const int width = std::max(2, EndX(scene_.selected) - left);
    painter_.fillRect(QRect(left, Places::kRuler, width, bottom_ - Places::kRuler) & clip_,
                      scene_.halted ? colours_.halted : colours_.selected);
  }

  // Counts from the first step, so that the same lines stand there whatever part is drawn.
  void DrawGrid() {
    int drawn = 0;
    for (int step = 0; step <= last_; ++step) {
      const int x = EndX(step);
      if (step > 0 && x - drawn < kLeastGrid && step != steps_.Count() - 1) continue;
      painter_.fillRect(QRect(x, Places::kRuler, 1, bottom_ - Places::kRuler) & clip_,
                        colours_.grid);
      drawn = x;
    }
  }

  void DrawLane(int channel) {
    const QRect lane = LaneRect(channel);
    const bool moves = steps_.Moves(channel);
    const bool chosen = channel == places_.lanes.Chosen();
    QPen dashes(colours_.zero, 1, Qt::SolidLine, Qt::FlatCap);
    dashes.setDashPattern({1, 5});
    dashes.setDashOffset(std::fmod(clip_.left(), 6));
    painter_.setPen(dashes);
    const int zero = Pixel(places_.lanes.Y(channel, kCentre));
    painter_.drawLine(clip_.left(), zero, std::min(clip_.right(), lane.right()) + 1, zero);
    if (steps_.Count() == 0) return;
    DrawCurve(channel, chosen ? 3 : moves ? 2 : 1, moves ? colours_.curve : colours_.pale_curve);
  }

  // Right angles only: rectangles, which are quick and sharp.
  void DrawCurve(int channel, int width, const QColor& colour) {
    QVarLengthArray<QRect, 512> parts;
    const int half = width / 2;
    const auto y_of = [&](int step) {
      return Pixel(places_.lanes.Y(channel, steps_.Position(step, channel)));
    };
    int from = StartX(first_);
    int y = y_of(first_);
    for (int step = first_; step <= last_; ++step) {
      const int end = EndX(step);
      const int next = step == last_ ? y : y_of(step + 1);
      if (next == y && step != last_) continue;
      parts.append(QRect(from - half, y - half, end - from + width, width));
      if (next != y) {
        parts.append(
            QRect(end - half, std::min(y, next) - half, width, std::abs(next - y) + width));
      }
      from = end;
      y = next;
    }
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(colour);
    painter_.drawRects(parts.constData(), static_cast<int>(parts.size()));
  }

  void DrawBreaks() {
    for (int step = first_; step <= last_ && step < steps_.Count(); ++step) {
      if (!steps_.HasBreak(step)) continue;
      const int x = StartX(step);
      painter_.fillRect(QRect(x, kNumbersTop - 2, 1, bottom_ - kNumbersTop + 2) & clip_,
                        colours_.brk);
      painter_.save();
      painter_.setRenderHint(QPainter::Antialiasing);
      painter_.setPen(Qt::NoPen);
      painter_.setBrush(colours_.brk);
      painter_.drawPolygon(QPolygonF({QPointF(x, kNumbersTop - 2), QPointF(x, kNumbersTop + 6),
                                      QPointF(x + kFlag, kNumbersTop + 2)}));
      painter_.restore();
    }
  }

  void DrawHead(double ms) {
    const int x = Pixel(places_.X(ms));
    painter_.fillRect(QRect(x - 1, Places::kRuler - 8, 2, bottom_ - Places::kRuler + 8) & clip_,
                      colours_.head);
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(colours_.head);
    painter_.drawPolygon(
        QPolygonF({QPointF(x - 6, Places::kRuler - 9), QPointF(x + 6, Places::kRuler - 9),
                   QPointF(x, Places::kRuler)}));
    painter_.restore();
  }

  // Clear of the line at 0 degrees.
  void DrawNoSteps() {
    const QRect lane = LaneRect(places_.lanes.Chosen());
    painter_.setPen(colours_.text);
    painter_.drawText(lane.adjusted(kBeside, 8, -kBeside, -lane.height() / 2),
                      Qt::AlignCenter | Qt::TextWordWrap, NoStepsText());
  }

  void DrawHandle() {
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setPen(QPen(colours_.curve, 2));
    painter_.setBrush(colours_.lane);
    painter_.drawEllipse(*scene_.handle, kHandle, kHandle);
    const QRect box =
        BubbleRect(scene_.bubble, *scene_.handle, scene_.size, painter_.fontMetrics());
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(colours_.bubble);
    painter_.drawRoundedRect(box, platform::kCornerRadius, platform::kCornerRadius);
    painter_.setPen(colours_.bubble_text);
    painter_.drawText(box, Qt::AlignCenter, scene_.bubble);
    painter_.restore();
  }

  QPainter& painter_;
  const QRect clip_;
  const MovementScene& scene_;
  const Places& places_;
  const ShownSteps& steps_;
  const StepTimes& times_;
  const MovementColours colours_;
  const int bottom_;
  const int digit_;  // the width of one
  int first_ = 0;
  int last_ = -1;
};

}  // namespace

MovementColours MovementColoursOf(const QPalette& palette) {
  using platform::Blend;
  const auto of = [&](QPalette::ColorRole role) { return palette.color(QPalette::Active, role); };
  const QColor text = of(QPalette::WindowText);
  const QColor window = of(QPalette::Window);
  const QColor base = of(QPalette::Base);
  // The list's own colours of a selected line are too strong for curves on them; those of a list
  // that is locked are not.
  const auto line = [&](bool selected, bool halted) {
    return platform::ColoursOf({.selected = selected, .halted = halted, .enabled = !selected},
                               palette);
  };
  return {.window = window,
          .lane = base,
          .odd_lane = of(QPalette::AlternateBase),
          .selected = line(true, false).ground,
          .halted = line(true, true).ground,
          .text = text,
          .pale_text = Blend(text, window, 0.28),
          .number = of(QPalette::Highlight),
          .curve = of(QPalette::Highlight),
          .pale_curve = Blend(text, base, 0.36),
          .zero = Blend(text, base, 0.36),
          .tick = Blend(text, window, 0.4),
          .grid = of(QPalette::Midlight),
          .brk = line(false, false).strong,
          .slow = platform::kWaitingSignal.edge,
          .amber = platform::kWaitingSignal.lamp,
          .head = text,
          .bubble = text,
          .bubble_text = base};
}

void DrawMovement(QPainter& painter, const QRect& clip, const MovementScene& scene,
                  const QPalette& palette) {
  Drawing(painter, clip, scene, palette).Draw();
}

QRect HeadArea(const Places& places, double ms, int height) {
  return {Pixel(places.X(ms)) - kHeadReach, Places::kRuler - 10, 2 * kHeadReach + 1,
          height - Places::kRuler + 10};
}

QRect BubbleArea(const QString& text, const QPointF& handle, const QSize& size,
                 const QFontMetrics& font) {
  const QPoint reach(kHandle + 2, kHandle + 2);
  const QPoint middle = handle.toPoint();
  // At a scale that is no whole number its edges lie inside pixels of the screen.
  const QRect area = BubbleRect(text, handle, size, font) | QRect(middle - reach, middle + reach);
  return area.adjusted(-1, -1, 1, 1);
}

}  // namespace pelmora
