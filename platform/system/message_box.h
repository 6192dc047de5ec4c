// The modal message box, as those who have something to say see it: a text, a title, one button.
#pragma once

#include <QString>

class QWidget;

namespace platform {

struct MessageOptions {
  // The message is no answer to a press of this moment: a line was lost, a transfer has ended. It
  // ignores keys for half a second, so that what is being typed doesn't answer it unread.
  bool by_itself = false;
  // The window that it belongs to; without one the program's main window.
  QWidget* parent = nullptr;
};

class MessageBox {
 public:
  virtual ~MessageBox() = default;

  // Shows the box and returns when the operator has closed it; events are processed meanwhile.
  virtual void Show(const QString& text, const QString& title,
                    const MessageOptions& options = {}) = 0;
};

}  // namespace platform
