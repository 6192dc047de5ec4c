// The message box on the screen, with an information icon and one OK button.
#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/system/events.h"
#include "platform/system/message_box.h"

namespace platform {

// Once the program is ending it shows nothing, and an open one closes.
class ModalMessageBox : public MessageBox {
 public:
  explicit ModalMessageBox(Events& events) : events_(events) {}

  // The main window, once there is one.
  void SetParent(QWidget* parent) { parent_ = parent; }

  void Show(const QString& text, const QString& title, const MessageOptions& options = {}) override;

 private:
  Events& events_;
  QPointer<QWidget> parent_;
};

}  // namespace platform
