// A vertical fader with a caption and a mark, which the toolkit's slider has not. It doesn't move
// by accident: the wheel moves it only when it has the focus, by 1 a notch. Pressing its handle
// grabs it also when that press, by taking the focus, has let another control move it.
#pragma once

#include <QSlider>
#include <QString>
#include <QTimer>
#include <functional>

namespace platform {

class CWSlide : public QSlider {
  Q_OBJECT
 public:
  explicit CWSlide(QWidget* parent = nullptr);

  // Text drawn above the fader, e.g. "Ch3".
  void SetCaption(const QString& caption);
  const QString& Caption() const { return caption_; }

  // A second value to be seen on the fader: a pale mark where the handle would stand for it, as
  // long as the handle stands elsewhere. None at the start.
  static constexpr int kNoMark = -1;
  void SetMark(int value);

  // The value that assistive technology is told as 0, those above and below it as positive and
  // negative numbers. 0 at the start.
  void SetToldZero(int value) { told_zero_ = value; }
  int ToldZero() const { return told_zero_; }

  // Where fader and caption stand: the axis's distance from the left edge in pixels, -1 for the
  // middle.
  void SetAxis(int x);

  // Whether a change may be announced now; asked while the handle is dragged. As long as it says
  // no, the handle follows the pointer and the value waits; it then takes the handle's place of
  // that moment. A release announces its value at once. Without it every move is announced.
  std::function<bool()> MayChange;

  // A drag by other means than the pointer on the handle. `Lead` takes the handle along, and the
  // value follows as in a drag; `Settle` ends it as a release does, `Stay` by taking the handle
  // back to the value that was announced last.
  void Lead(int value);
  void Settle();
  void Stay();

 protected:
  bool event(QEvent* event) override;
  void initStyleOption(QStyleOptionSlider* option) const override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  QRect Handle() const;
  void Follow();

  QString caption_;
  QPoint grab_shift_;  // how far the handle was moved by the press that grabbed it
  QTimer follow_timer_;
  int wheel_angle_ = 0;  // of a notch that is not complete yet
  int axis_ = -1;
  int mark_ = kNoMark;
  int told_zero_ = 0;
};

}  // namespace platform
