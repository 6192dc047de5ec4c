// A slider with a caption: a vertical fader for the operator, or a horizontal bar that only shows
// progress. It holds whole numbers.
#pragma once

#include <QSlider>
#include <QString>

namespace platform {

class CWSlide : public QSlider {
  Q_OBJECT
 public:
  enum class Look {
    kFader,  // vertical, caption on top, moved by mouse, wheel and keyboard
    kBar,    // horizontal, shows its value as a filled bar and takes no input
  };

  explicit CWSlide(Look look, QWidget* parent = nullptr);

  int Value() const { return value(); }

  // Sets the value, cut to the scale. A change raises `ValueChanged` before the call returns;
  // setting the value already held raises nothing.
  void SetValue(int value) { setValue(value); }

  // The scale 0 .. `maximum`; a maximum below 0 counts as 0. A value above it is cut, which is a
  // change like any other.
  void SetScaleMaximum(int maximum);

  // Text drawn above a fader, e.g. "Ch3".
  void SetCaption(const QString& caption);
  QString Caption() const { return caption_; }

  Look Kind() const { return look_; }

  QSize sizeHint() const override;

 signals:
  // Every change of the value, whoever makes it.
  void ValueChanged(int value);

 private:
  Look look_;
  QString caption_;
};

}  // namespace platform
