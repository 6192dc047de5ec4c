// The modal message box: a text, an information icon, one OK button, a title.
#pragma once

#include <QString>

#include "platform/events.h"

namespace platform {

class MessageBox {
 public:
  virtual ~MessageBox() = default;

  // Shows the box and returns when the operator has closed it; events are processed meanwhile.
  virtual void Show(const QString& text, const QString& title) = 0;
};

// The one on the screen. Once the program is ending it shows nothing, and an open one closes.
class ModalMessageBox : public MessageBox {
 public:
  explicit ModalMessageBox(Events& events) : events_(events) {}

  void Show(const QString& text, const QString& title) override;

 private:
  Events& events_;
};

}  // namespace platform
