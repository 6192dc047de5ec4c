// The program: the main window on the machine's serial ports.
#include <QApplication>
#include <QScreen>

#include "platform/dialogs/file_dialog.h"
#include "platform/dialogs/modal_message_box.h"
#include "platform/serial/port_directory.h"
#include "platform/system/end_signals.h"
#include "platform/system/events.h"
#include "platform/system/hi_timer.h"
#include "ui/form1.h"
#include "ui/look.h"

int main(int argc, char** argv) {
  platform::EndSignals end_signals;
  QApplication application(argc, argv);
  pelmora::SetUpLook(application);
  platform::Events events;
  platform::ModalMessageBox message_box(events);
  platform::ModalFileDialog file_dialog(events);
  platform::SystemHiTimer timer;
  const platform::MachinePorts ports;
  pelmora::Form1 form({events, message_box, file_dialog, timer, ports});
  message_box.SetParent(&form);
  file_dialog.SetParent(&form);
  QObject::connect(&events, &platform::Events::Ended, &application, [] { QApplication::exit(0); });
  QObject::connect(&end_signals, &platform::EndSignals::Requested, &form, &QWidget::close);
  end_signals.Watch();
  form.PlaceOn(QApplication::primaryScreen()->availableGeometry());
  form.show();
  return application.exec();
}
