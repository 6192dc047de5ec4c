// The modal message box, as those who have something to say see it: a text, a title, one button.
#pragma once

#include <QString>

namespace platform {

class MessageBox {
 public:
  virtual ~MessageBox() = default;

  // Shows the box and returns when the operator has closed it; events are processed meanwhile.
  virtual void Show(const QString& text, const QString& title) = 0;
};

}  // namespace platform
