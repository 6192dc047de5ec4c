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
  explicit Program(QApplication& application) {
    message_box_.SetParent(&form_);
    file_dialog_.SetParent(&form_);
    QObject::connect(&main_loop_, &platform::MainLoop::Ended, &application,
                     [] { QApplication::exit(0); });
  }

  Form1& Window() { return form_; }

 private:
  platform::MainLoop main_loop_;
  platform::ModalMessageBox message_box_{main_loop_};
  platform::ModalFileDialog file_dialog_{main_loop_};
  platform::SystemHiTimer timer_;
  const platform::MachinePorts ports_;
  Form1 form_{{main_loop_, message_box_, file_dialog_, timer_, ports_}};
};

}  // namespace pelmora
