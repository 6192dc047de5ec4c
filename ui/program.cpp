#include "ui/program.h"

namespace pelmora {

Program::Program(QApplication& application)
    : message_box_(main_loop_),
      file_dialog_(main_loop_),
      form_({main_loop_, message_box_, file_dialog_, timer_, ports_}) {
  message_box_.SetParent(&form_);
  file_dialog_.SetParent(&form_);
  QObject::connect(&main_loop_, &platform::MainLoop::Ended, &application,
                   [] { QApplication::exit(0); });
}

}  // namespace pelmora
