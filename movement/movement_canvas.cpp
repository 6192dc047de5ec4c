#include "movement/movement_canvas.h"

#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <span>

#include "movement/movement_access.h"
#include "movement/movement_look.h"
#include "movement/movement_text.h"
#include "platform/controls/lost_pointer.h"

namespace pelmora {
namespace {

constexpr int kHeadMilliseconds = 16;
constexpr double kScrollShare =
    0.02;                          // of the view, each time while a drag is held beside the lanes
constexpr int kAround = 14;        // pixels beside a step that belong to its marks,
constexpr int kAroundNumber = 40;  // and on the ruler to its number

}  // namespace

MovementCanvas::MovementCanvas(const MovementParts& parts, QWidget* parent)
    : QWidget(parent), parts_(parts), shaping_(parts.edited, parts.faders) {
  setObjectName(QStringLiteral("MovementCanvas"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(400, Places::kRuler + 280);
  SpeakSelectedStep();
  connect(&parts_.edited, &EditedSequence::SequenceChanged, this, &MovementCanvas::SequenceChanged);
  connect(&parts_.edited, &EditedSequence::SelectionChanged, this,
          &MovementCanvas::SelectionChanged);
  connect(&parts_.edited, &EditedSequence::BreakpointsChanged, this, [this] { update(); });
  SequenceChanged();
}

ShownSteps MovementCanvas::Steps() const {
  const auto rows = std::span(parts_.edited.Data().EditBuffer);
  return ShownSteps(
      rows.first(static_cast<std::size_t>(std::min(parts_.edited.ListCount(), kSteps))),
      shaping_.Tried());
}

Hit MovementCanvas::Under(const QPointF& point) const {
  const ShownSteps steps = Steps();
  return HitAt(places_, steps, StepTimes(steps), point.x(), point.y());
}

// What happens elsewhere ends a drag. What is dropped here is no drag any more.
void MovementCanvas::SequenceChanged() {
  GiveUp();
  selected_ = parts_.edited.ListIndex();
  total_ = StepTimes(Steps()).Total();
  ChangeTime([this](TimeScale& time) {
    time.SetTotal(total_);
    if (fitted_ && !keep_zoom_) time.Fit();
  });
  head_ = HeadTime();
  ShowAllAgain();
}

void MovementCanvas::SelectionChanged() {
  UpdateStep(selected_);
  selected_ = parts_.edited.ListIndex();
  UpdateStep(selected_);
  UpdateNames();
  BringSelected();
  PlaybackChanged();
  TellTexts();
}

// What is under a pressed button stays there.
void MovementCanvas::BringSelected() {
  const ShownSteps steps = Steps();
  if (selected_ < 0 || selected_ >= steps.Count() || press_) return;
  const StepTimes times(steps);
  MoveView([&](TimeScale& time) { time.Bring(times.Start(selected_), times.End(selected_)); });
}

void MovementCanvas::TellTexts() {
  emit TextsChanged();
  TellSelectedStep(*this, SelectedStep());
}

void MovementCanvas::ChangeTime(const std::function<void(TimeScale&)>& change) {
  const TimeScale before = places_.time;
  change(places_.time);
  if (places_.time == before) return;
  update();
  emit TimeChanged();
}

// What is under the pointer may be something else then.
void MovementCanvas::MoveView(const std::function<void(TimeScale&)>& change) {
  ChangeTime(change);
  FollowPointer();
}

void MovementCanvas::Fit() {
  fitted_ = true;
  MoveView([](TimeScale& time) { time.Fit(); });
}

void MovementCanvas::Zoom(double x, double factor) {
  fitted_ = false;
  MoveView([&](TimeScale& time) { time.ZoomAround(x - Places::kLabels, factor); });
}

void MovementCanvas::ScrollTo(double left_ms) {
  MoveView([&](TimeScale& time) { time.ScrollTo(left_ms); });
}

void MovementCanvas::LayOutLanes() {
  places_.lanes = Lanes(Places::kRuler, height() - Places::kRuler, chosen_);
  update();
}

void MovementCanvas::resizeEvent(QResizeEvent*) {
  LayOutLanes();
  MoveView([&](TimeScale& time) {
    time.SetWidth(width() - Places::kLabels);
    if (fitted_) time.Fit();
  });
}

// The step whose angles stand at the names.
int MovementCanvas::NamedStep() const {
  return pointer_ && hit_.step >= 0 ? hit_.step : selected_;
}

QString MovementCanvas::Total() const {
  const ShownSteps steps = Steps();
  return TotalText(steps, StepTimes(steps), parts_.edited.DecimalPoint());
}

QString MovementCanvas::State() const {
  if (!pointer_ || hit_.step < 0) return SelectedStep();
  const ShownSteps steps = Steps();
  return StepText(steps, StepTimes(steps), hit_.step, hit_.channel, parts_.edited.DecimalPoint());
}

QString MovementCanvas::SelectedStep() const {
  const ShownSteps steps = Steps();
  if (selected_ < 0 || selected_ >= steps.Count()) return {};
  return StepText(steps, StepTimes(steps), selected_, chosen_, parts_.edited.DecimalPoint());
}

void MovementCanvas::paintEvent(QPaintEvent* event) {
  const ShownSteps steps = Steps();
  const StepTimes times(steps);
  const MovementScene scene{.steps = steps,
                            .times = times,
                            .places = places_,
                            .decimal_point = parts_.edited.DecimalPoint(),
                            .size = size(),
                            .selected = selected_ < steps.Count() ? selected_ : -1,
                            .halted = halted_,
                            .named = NamedStep() < steps.Count() ? NamedStep() : -1,
                            .focused = hasFocus(),
                            .head = head_,
                            .handle = HandlePlace(steps, times),
                            .bubble = Bubble()};
  QPainter painter(this);
  for (const QRect& part : event->region()) DrawMovement(painter, part, scene, palette());
}

void MovementCanvas::UpdateStep(int step) {
  const ShownSteps steps = Steps();
  if (step < 0 || step >= steps.Count()) return;
  const StepTimes times(steps);
  const double left = std::max(0.0, places_.X(times.Start(step)));
  const double right = std::min<double>(width(), places_.X(times.End(step)));
  if (right < left) return;
  const QRect span = QRectF(left, 0, right - left, height()).toAlignedRect();
  update(span.adjusted(-kAround, 0, kAround, 0));
  update(span.adjusted(-kAroundNumber, 0, kAroundNumber, Places::kRuler - height()));
}

void MovementCanvas::UpdateNames() {
  update(0, 0, Places::kLabels, height());
}

// The place of what a drag has taken hold of.
std::optional<QPointF> MovementCanvas::HandlePlace(const ShownSteps& steps,
                                                   const StepTimes& times) const {
  if (!shaping_.Tried()) return std::nullopt;
  const Hit& hit = shaping_.TakenHit();
  const double end = places_.X(times.End(hit.step));
  if (hit.part == Part::kEnd) return QPointF(end, pointer_ ? pointer_->y() : Places::kRuler);
  const double start = places_.X(times.Start(hit.step));
  return QPointF(std::clamp(pointer_ ? pointer_->x() : start, start, end),
                 places_.lanes.Y(hit.channel, steps.Position(hit.step, hit.channel)));
}

QString MovementCanvas::Bubble() const {
  if (!shaping_.Tried()) return {};
  return ChangeText(*shaping_.Tried(), shaping_.Original(), parts_.edited.DecimalPoint());
}

QRect MovementCanvas::TriedArea() const {
  const ShownSteps steps = Steps();
  const auto handle = HandlePlace(steps, StepTimes(steps));
  return handle ? BubbleArea(Bubble(), *handle, size(), fontMetrics()) : QRect();
}

// An angle moves within its step, an end takes all steps behind it along.
void MovementCanvas::ShowTried(const Hit& hit) {
  SetHit(hit);
  if (hit.part == Part::kLevel) {
    UpdateStep(hit.step);
  } else {
    const ShownSteps steps = Steps();
    const StepTimes times(steps);
    ChangeTime([&](TimeScale& time) { time.SetTotal(std::max(times.Total(), total_)); });
    const int left = static_cast<int>(places_.X(times.Start(hit.step))) - kAroundNumber;
    update(left, 0, width() - left, height());
  }
  UpdateNames();
  emit TextsChanged();
}

void MovementCanvas::ShowAllAgain() {
  if (pointer_) SetHit(Under(*pointer_));
  update();
  TellTexts();
}

void MovementCanvas::PlaybackChanged() {
  const std::optional<PlayedStep> played = parts_.Played();
  if (played_ && !played) GiveUp();
  played_ = played.has_value();
  const bool halted = played && played->halted;
  if (halted != halted_) UpdateStep(selected_);
  halted_ = halted;
  const bool runs = played && !halted && visible_;
  if (runs && !head_timer_.isActive()) {
    head_timer_.start(kHeadMilliseconds, Qt::PreciseTimer, this);
  } else if (!runs) {
    head_timer_.stop();
    MoveHead();
  }
}

std::optional<double> MovementCanvas::HeadTime() const {
  const std::optional<PlayedStep> played = parts_.Played();
  const ShownSteps steps = Steps();
  if (!played || played->halted || played->step >= steps.Count()) return std::nullopt;
  const std::chrono::duration<double, std::milli> held =
      std::chrono::steady_clock::now() - played->since;
  return StepTimes(steps).Start(played->step) +
         std::min<double>(held.count(), steps.Duration(played->step));
}

// Only the strips that the playhead leaves and comes to are drawn anew; unless it leaves the view,
// which then follows.
void MovementCanvas::MoveHead() {
  const std::optional<double> before = head_;
  head_ = HeadTime();
  const auto area = [this](const std::optional<double>& head) {
    return head ? HeadArea(places_, *head, height()) : QRect();
  };
  if (area(before) == area(head_)) return;
  update(area(before));
  update(area(head_));
  if (!head_) return;
  const TimeScale& time = places_.time;
  const auto in_view = [&](double ms) {
    return ms >= time.Left() && ms <= time.Left() + time.Span();
  };
  if (before && in_view(*before) && !in_view(*head_) && !press_) {
    MoveView([&](TimeScale& changed) { changed.Bring(*head_, *head_); });
  }
}

void MovementCanvas::timerEvent(QTimerEvent* event) {
  if (event->timerId() == head_timer_.timerId()) {
    MoveHead();
  } else if (event->timerId() == scroll_timer_.timerId() && pointer_) {
    const TimeScale& time = places_.time;
    const double way = (pointer_->x() < Places::kLabels ? -1 : 1) * kScrollShare * time.Span();
    ScrollTo(time.Left() + way);
  }
}

void MovementCanvas::showEvent(QShowEvent*) {
  visible_ = true;
  PlaybackChanged();
}

void MovementCanvas::hideEvent(QHideEvent*) {
  visible_ = false;
  GiveUp();
  PlaybackChanged();
}

void MovementCanvas::focusInEvent(QFocusEvent*) {
  UpdateNames();
}

void MovementCanvas::focusOutEvent(QFocusEvent*) {
  UpdateNames();
}

bool MovementCanvas::event(QEvent* event) {
  // Once another window has come up, the release may never arrive. The toolkit calls this window
  // active, too, while its parent is.
  if (platform::TakesPointer(*event, *this) || event->type() == QEvent::WindowDeactivate) GiveUp();
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const int step = help->pos().y() < Places::kRuler ? LateStepAt(help->pos().x()) : -1;
  if (step < 0) {
    QToolTip::hideText();
    event->ignore();
  } else {
    QToolTip::showText(help->globalPos(),
                       OutrunsSerialLineText(Steps(), step, parts_.edited.DecimalPoint()), this);
  }
  return true;
}

// The step whose mark on the ruler is under the pointer, -1 when none is.
int MovementCanvas::LateStepAt(int x) const {
  const ShownSteps steps = Steps();
  const StepTimes times(steps);
  for (int step = 0; step < steps.Count(); ++step) {
    const double left = places_.X(times.Start(step));
    const double right = std::max(left + Places::kLateMark, places_.X(times.End(step)));
    if (x >= left && x <= right && steps.OutrunsSerialLine(step)) return step;
  }
  return -1;
}

}  // namespace pelmora
