// A push button that takes the keyboard focus before it acts, also when its mnemonic is pressed, so
// that a text field left that way commits before the button's click is handled.
#pragma once

#include <QPushButton>

namespace platform {

class PushButton : public QPushButton {
  Q_OBJECT
 public:
  explicit PushButton(const QString& caption, QWidget* parent = nullptr);

 protected:
  bool event(QEvent* event) override;
};

}  // namespace platform
