#include "platform/controls/option_button.h"

namespace platform {

void OptionButton::focusInEvent(QFocusEvent* event) {
  QRadioButton::focusInEvent(event);
  // The toolkit has just taken the other options of the group out of the tab order.
  for (OptionButton* option : parentWidget()->findChildren<OptionButton*>()) {
    option->setFocusPolicy(Qt::StrongFocus);
  }
}

}  // namespace platform
