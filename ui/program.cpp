#include "ui/program.h"

namespace pelmora {

Program::Program(QApplication& application)
    : message_box_(events_),
      file_dialog_(events_),
      form_({events_, message_box_, file_dialog_, timer_, ports_}) {
  message_box_.SetParent(&form_);
  file_dialog_.SetParent(&form_);
  QObject::connect(&events_, &platform::Events::Ended, &application, [] { QApplication::exit(0); });
}

}  // namespace pelmora
