#include "platform/controls/cw_slide.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionSlider>
#include <QWheelEvent>
#include <algorithm>

#include "platform/controls/lost_pointer.h"
#include "platform/look/slide_style.h"

namespace platform {
namespace {

constexpr int kFollowMilliseconds = 5;

QMouseEvent Shifted(const QMouseEvent& event, const QPoint& shift) {
  return {event.type(),   event.position() + shift, event.globalPosition() + shift,
          event.button(), event.buttons(),          event.modifiers()};
}

}  // namespace

CWSlide::CWSlide(QWidget* parent) : QSlider(Qt::Vertical, parent) {
  auto* style = new SlideStyle;
  style->setParent(this);
  setStyle(style);
  setAttribute(Qt::WA_Hover);
  // It takes the focus of a click itself, once it knows what was pressed.
  setFocusPolicy(Qt::TabFocus);
  setTracking(false);
  connect(this, &QSlider::sliderMoved, this, &CWSlide::Follow);
  follow_timer_.setInterval(kFollowMilliseconds);
  follow_timer_.setTimerType(Qt::PreciseTimer);
  connect(&follow_timer_, &QTimer::timeout, this, &CWSlide::Follow);
}

void CWSlide::SetCaption(const QString& caption) {
  caption_ = caption;
  setAccessibleName(caption);
  update();
}

void CWSlide::SetMark(int value) {
  if (mark_ == value) return;
  mark_ = value;
  update();
}

void CWSlide::SetAxis(int x) {
  axis_ = x;
  update();
}

// The value takes the place of the dragged handle, now or a moment later.
void CWSlide::Follow() {
  if (MayChange && !MayChange()) {
    if (!follow_timer_.isActive()) follow_timer_.start();
    return;
  }
  follow_timer_.stop();
  if (sliderPosition() != value()) triggerAction(SliderMove);
}

void CWSlide::Lead(int value) {
  setSliderPosition(value);
  Follow();
}

void CWSlide::Settle() {
  follow_timer_.stop();
  setValue(sliderPosition());
}

void CWSlide::Stay() {
  follow_timer_.stop();
  setSliderPosition(value());
}

bool CWSlide::event(QEvent* event) {
  if (TakesPointer(*event, *this)) {
    Stay();
    QMouseEvent release = ReleaseBeside(*this);
    QSlider::mouseReleaseEvent(&release);
  }
  return QSlider::event(event);
}

// The style draws in the middle of its rectangle and looks for a press there: that middle is the
// axis, wherever in the control it stands.
void CWSlide::initStyleOption(QStyleOptionSlider* option) const {
  QSlider::initStyleOption(option);
  if (axis_ < 0) return;
  const int reach = std::max(axis_, width() - 1 - axis_);
  option->rect.setLeft(axis_ - reach);
  option->rect.setRight(axis_ + reach);
}

// The style knows a slider and nothing else; what this one has besides is drawn before it, so that
// the handle stands in front of the mark.
void CWSlide::paintEvent(QPaintEvent* event) {
  QStyleOptionSlider option;
  initStyleOption(&option);
  QPainter painter(this);
  DrawSlideCaption(painter, option, rect(), caption_);
  if (mark_ != kNoMark && mark_ != sliderPosition()) DrawSlideMark(painter, option, mark_);
  painter.end();
  QSlider::paintEvent(event);
}

QRect CWSlide::Handle() const {
  QStyleOptionSlider option;
  initStyleOption(&option);
  return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
}

void CWSlide::mousePressEvent(QMouseEvent* event) {
  const QRect pressed = Handle();
  setFocus(Qt::MouseFocusReason);
  const bool on_handle = pressed.contains(event->position().toPoint());
  grab_shift_ = on_handle ? Handle().topLeft() - pressed.topLeft() : QPoint();
  QMouseEvent shifted = Shifted(*event, grab_shift_);
  QSlider::mousePressEvent(&shifted);
}

void CWSlide::mouseMoveEvent(QMouseEvent* event) {
  QMouseEvent shifted = Shifted(*event, grab_shift_);
  QSlider::mouseMoveEvent(&shifted);
}

void CWSlide::mouseReleaseEvent(QMouseEvent* event) {
  QMouseEvent shifted = Shifted(*event, grab_shift_);
  QSlider::mouseReleaseEvent(&shifted);
}

void CWSlide::wheelEvent(QWheelEvent* event) {
  if (!hasFocus()) {
    event->ignore();
    return;
  }
  wheel_angle_ += event->angleDelta().y();
  const int notches = wheel_angle_ / QWheelEvent::DefaultDeltasPerStep;
  wheel_angle_ %= QWheelEvent::DefaultDeltasPerStep;
  setValue(value() + notches);
  event->accept();
}

}  // namespace platform
