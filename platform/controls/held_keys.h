// A key that is held counts once, wherever the window system or the toolkit takes its repetitions
// for new presses. As long as this object exists, in all windows of the program:
//
// - The window system sends a repetition as a release and a press of the same time. Where the two
//   arrive apart, on a busy machine, the toolkit takes them for a real release and a new press.
//   Here the press is passed on as the repetition that it is.
// - A repetition gets into no window but the one in which the key was pressed: Enter that opened a
//   dialog would press its default button.
#pragma once

#include <QKeyEvent>
#include <QObject>

namespace platform {

class HeldKeys : public QObject {
 public:
  HeldKeys();

 protected:
  bool eventFilter(QObject* target, QEvent* event) override;

 private:
  int released_ = 0;                 // the key that was released last
  quint64 release_time_ = 0;         // ms on the window system's clock, 0 when it told none
  const QObject* window_ = nullptr;  // in which a key was pressed last; only compared
};

}  // namespace platform
