// The message box on the screen, with an information icon and one OK button.
#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/system/main_loop.h"
#include "platform/system/message_box.h"

namespace platform {

// Once the program is ending it shows nothing, and an open one closes.
class ModalMessageBox : public MessageBox {
 public:
  explicit ModalMessageBox(MainLoop& main_loop) : main_loop_(main_loop) {}

  // The main window, once there is one.
  void SetParent(QWidget* parent) { parent_ = parent; }

  void Show(const QString& text, const QString& title, const MessageOptions& options = {}) override;

 private:
  MainLoop& main_loop_;
  QPointer<QWidget> parent_;
};

}  // namespace platform
