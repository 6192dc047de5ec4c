// A vertical fader with a caption, which the toolkit's slider has not. It holds whole numbers.
#pragma once

#include <QSlider>
#include <QString>

namespace platform {

class CWSlide : public QSlider {
  Q_OBJECT
 public:
  explicit CWSlide(QWidget* parent = nullptr);

  int Value() const { return value(); }

  // Sets the value, cut to the scale. A change raises `valueChanged` before the call returns;
  // setting the value already held raises nothing.
  void SetValue(int value) { setValue(value); }

  // The scale 0 .. `maximum`; a maximum below 0 counts as 0. A value above it is cut, which is a
  // change like any other.
  void SetScaleMaximum(int maximum);

  // Text drawn above the fader, e.g. "Ch3".
  void SetCaption(const QString& caption);
  QString Caption() const { return caption_; }

  // Where fader and caption stand: the axis's distance from the left edge in pixels, -1 for the
  // middle.
  void SetAxis(int x);
  int Axis() const { return axis_; }

 private:
  QString caption_;
  int axis_ = -1;
};

}  // namespace platform
