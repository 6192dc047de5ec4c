// A push button that takes the keyboard focus before it acts, also when its mnemonic is pressed, so
// that a text field left that way commits before the button's click is handled. Enter presses it
// like Space, and a key that is held presses it once: the toolkit repeats mnemonics.
#pragma once

#include <QPushButton>

namespace platform {

class PushButton : public QPushButton {
  Q_OBJECT
 public:
  using QPushButton::QPushButton;

  // A double click counts as one press instead of two.
  void SetDoubleClickPressesOnce(bool once) { double_click_presses_once_ = once; }

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  bool double_click_presses_once_ = false;
};

}  // namespace platform
