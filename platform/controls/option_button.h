// An option of a group of which one at the most is chosen. Each is a tab stop of its own: the
// toolkit lets Tab reach only one option of a group, so that the others seem not to be there.
#pragma once

#include <QRadioButton>

namespace platform {

class OptionButton : public QRadioButton {
  Q_OBJECT
 public:
  using QRadioButton::QRadioButton;

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QRadioButton::focusInEvent(event);
    // The toolkit has just taken the other options of the group out of the tab order.
    for (auto* option : parentWidget()->findChildren<OptionButton*>()) {
      option->setFocusPolicy(Qt::StrongFocus);
    }
  }
};

}  // namespace platform
