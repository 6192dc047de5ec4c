// The program as it runs on a machine: the main window with everything that surrounds it.
#pragma once

#include <QApplication>

#include "platform/dialogs/file_dialog.h"
#include "platform/dialogs/modal_message_box.h"
#include "platform/serial/port_directory.h"
#include "platform/system/hi_timer.h"
#include "platform/system/main_loop.h"
#include "ui/form1.h"

namespace pelmora {

class Program {
 public:
  // The application, which has the program's look already, ends when the program does.
  explicit Program(QApplication& application);

  Form1& Window() { return form_; }

 private:
  platform::MainLoop main_loop_;
  platform::ModalMessageBox message_box_;
  platform::ModalFileDialog file_dialog_;
  platform::SystemHiTimer timer_;
  const platform::MachinePorts ports_;
  Form1 form_;
};

}  // namespace pelmora
