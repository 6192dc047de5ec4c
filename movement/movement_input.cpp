// The canvas under the operator's hands: pointer, wheel and keys.
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "movement/movement_canvas.h"

namespace pelmora {
namespace {

constexpr int kScrollMilliseconds = 30;  // while a drag is held beside the lanes
constexpr double kWheelShare = 0.1;      // of the view, for a notch
constexpr double kNotch = 120;           // what the toolkit counts for a notch of the wheel
constexpr double kZoom = 0.8;            // how much of the view a notch or a key leaves
constexpr double kDragDistance = 3;      // pixels that are no drag yet
constexpr int kHalfDegree = 1;
constexpr int kFiveDegrees = 10;

Qt::CursorShape CursorOf(Part part) {
  if (part == Part::kEnd) return Qt::SplitHCursor;
  if (part == Part::kLevel) return Qt::SplitVCursor;
  return Qt::ArrowCursor;
}

}  // namespace

void MovementCanvas::Choose(int channel) {
  if (channel < 0 || channel == chosen_) return;
  chosen_ = channel;
  LayOutLanes();
  FollowPointer();
  TellTexts();
}

void MovementCanvas::SelectStep(int step) {
  const int last = parts_.edited.ListCount() - 1;
  if (last < 0) return;
  parts_.edited.Select(std::clamp(step, 0, last));
  BringSelected();  // also when it was selected already
}

void MovementCanvas::ShowPointer(const QPointF& point) {
  pointer_ = point;
  SetHit(Under(point));
}

void MovementCanvas::SetHit(const Hit& hit) {
  const Hit before = std::exchange(hit_, hit);
  if (hit == before) return;
  setCursor(CursorOf(hit.part));
  if (hit.step != before.step) UpdateNames();
  emit TextsChanged();
}

// Something has moved under the pointer.
void MovementCanvas::FollowPointer() {
  if (!pointer_) return;
  if (shaping_.Taken()) {
    Drag(*pointer_);
  } else {
    ShowPointer(*pointer_);
  }
}

double MovementCanvas::Grip(const Hit& hit, const QPointF& point) const {
  return hit.part == Part::kEnd ? places_.TimeAt(point.x())
                                : places_.lanes.PositionAt(hit.channel, point.y());
}

void MovementCanvas::mousePressEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton || press_) return;
  const QPointF point = event->position();
  ShowPointer(point);
  const Hit hit = hit_;
  if (hit.part == Part::kLabel) return Choose(hit.channel);
  clicked_step_ = hit.step;
  clicked_time_ = places_.time;
  if (hit.step < 0) return;
  press_ = Press{point, hit.channel};
  if (hit.part == Part::kLevel || hit.part == Part::kEnd) shaping_.Take(hit, Grip(hit, point));
  SelectStep(hit.step);
}

void MovementCanvas::mouseMoveEvent(QMouseEvent* event) {
  const QPointF point = event->position();
  if (press_ && !event->buttons().testFlag(Qt::LeftButton)) GiveUp();  // its release was lost
  if (shaping_.Taken()) return Drag(point);
  if (event->buttons() == Qt::NoButton) ShowPointer(point);
}

void MovementCanvas::Drag(const QPointF& point) {
  const bool trembles = press_ && (point - press_->place).manhattanLength() < kDragDistance;
  if (!shaping_.Tried() && trembles) return;
  const QRect before = TriedArea();
  pointer_ = point;
  const Hit hit = shaping_.TakenHit();
  if (shaping_.Follow(Grip(hit, point))) ShowTried(hit);
  update(before | TriedArea());
  const bool outside = point.x() < Places::kLabels || point.x() >= width();
  if (hit.part != Part::kEnd || !outside) {
    scroll_timer_.stop();
  } else if (!scroll_timer_.isActive()) {
    scroll_timer_.start(kScrollMilliseconds, Qt::PreciseTimer, this);
  }
}

void MovementCanvas::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton || !press_) return;
  if (shaping_.Taken()) Drag(event->position());
  const int channel = press_->channel;
  press_.reset();
  scroll_timer_.stop();
  pointer_ = event->position();
  // A message may come up inside.
  ShapeBy([this] { shaping_.Drop(); });
  EndDrag();
  Choose(channel);
}

void MovementCanvas::ShapeBy(const std::function<void()>& change) {
  keep_zoom_ = true;
  change();
  keep_zoom_ = false;
}

void MovementCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton) return;
  ShowPointer(event->position());
  // When the view has moved since the first click, the second one hits what was not meant.
  const bool same = hit_.step == clicked_step_ && places_.time == clicked_time_;
  if (hit_.step < 0 || !same) return;
  SelectStep(hit_.step);
  parts_.step_list.ListSequence_DblClick();
}

void MovementCanvas::GiveUp() {
  press_.reset();
  scroll_timer_.stop();
  if (!shaping_.Taken()) return;
  shaping_.GiveUp();
  EndDrag();
}

// Nothing is tried out any more.
void MovementCanvas::EndDrag() {
  ChangeTime([this](TimeScale& time) { time.SetTotal(total_); });
  ShowAllAgain();
}

void MovementCanvas::leaveEvent(QEvent*) {
  if (press_) return;
  pointer_.reset();
  SetHit({});
}

void MovementCanvas::wheelEvent(QWheelEvent* event) {
  event->accept();
  const QPoint angle = event->angleDelta();
  const double notches = (angle.y() != 0 ? angle.y() : angle.x()) / kNotch;
  if (event->modifiers().testFlag(Qt::ControlModifier)) {
    Zoom(event->position().x(), std::pow(kZoom, notches));
  } else {
    const TimeScale& time = places_.time;
    ScrollTo(time.Left() - notches * kWheelShare * time.Span());
  }
}

void MovementCanvas::keyPressEvent(QKeyEvent* event) {
  if (TakeKey(*event)) {
    event->accept();
  } else {
    QWidget::keyPressEvent(event);
  }
}

// True when the key means something here.
bool MovementCanvas::TakeKey(const QKeyEvent& event) {
  if (press_) {
    if (event.key() != Qt::Key_Escape) return true;
    press_.reset();
    scroll_timer_.stop();
    shaping_.PutBack();
    EndDrag();
    return true;
  }
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  // "+" needs Shift on many keyboards.
  if (modifiers.testFlag(Qt::ControlModifier)) return TakeZoomKey(event.key());
  if (modifiers == Qt::ShiftModifier) return TakeShapingKey(event.key());
  return modifiers == Qt::NoModifier && TakePlainKey(event);
}

// Around what the keys zoom: the beginning of the selected step, or else the middle of the view.
double MovementCanvas::ZoomPlace() const {
  const ShownSteps steps = Steps();
  if (selected_ >= 0 && selected_ < steps.Count()) {
    const double start = places_.X(StepTimes(steps).Start(selected_));
    if (start >= Places::kLabels && start < width()) return start;
  }
  return (Places::kLabels + width()) / 2.0;
}

bool MovementCanvas::TakeZoomKey(int key) {
  switch (key) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      Zoom(ZoomPlace(), kZoom);
      return true;
    case Qt::Key_Minus:
    case Qt::Key_Underscore:
      Zoom(ZoomPlace(), 1 / kZoom);
      return true;
    case Qt::Key_0:
      Fit();
      return true;
    default:
      return false;
  }
}

bool MovementCanvas::TakeShapingKey(int key) {
  switch (key) {
    case Qt::Key_Up:
      return Shape(chosen_, kHalfDegree);
    case Qt::Key_Down:
      return Shape(chosen_, -kHalfDegree);
    case Qt::Key_PageUp:
      return Shape(chosen_, kFiveDegrees);
    case Qt::Key_PageDown:
      return Shape(chosen_, -kFiveDegrees);
    case Qt::Key_Right:
      return Shape(kDurationColumn, kBoardTickMs);
    case Qt::Key_Left:
      return Shape(kDurationColumn, -kBoardTickMs);
    default:
      return false;
  }
}

bool MovementCanvas::Shape(int column, int change) {
  const int step = parts_.edited.ListIndex();
  if (step >= 0) ShapeBy([&] { shaping_.Change(step, column, change); });
  return true;
}

bool MovementCanvas::TakePlainKey(const QKeyEvent& event) {
  const bool none = selected_ < 0;
  switch (event.key()) {
    case Qt::Key_Left:
      SelectStep(selected_ - 1);
      return true;
    case Qt::Key_Right:
      SelectStep(selected_ + 1);
      return true;
    case Qt::Key_Home:
      SelectStep(0);
      return true;
    case Qt::Key_End:
      SelectStep(kSteps);
      return true;
    case Qt::Key_Up:
      Choose(std::max(0, chosen_ - 1));
      return true;
    case Qt::Key_Down:
      Choose(std::min(kChannels - 1, chosen_ + 1));
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (!none) parts_.step_list.ListSequence_DblClick();
      return true;
    default:
      return false;
  }
}

}  // namespace pelmora
