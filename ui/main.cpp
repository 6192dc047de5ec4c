// The program on the machine's serial ports.
#include <QApplication>
#include <QScreen>

#include "platform/system/end_signals.h"
#include "ui/look.h"
#include "ui/program.h"

int main(int argc, char** argv) {
  platform::EndSignals end_signals;
  QApplication application(argc, argv);
  pelmora::SetUpLook(application);
  pelmora::Program program(application);
  pelmora::Form1& form = program.Window();
  QObject::connect(&end_signals, &platform::EndSignals::Requested, &form, &QWidget::close);
  end_signals.Watch();
  form.PlaceOn(QApplication::primaryScreen()->availableGeometry());
  form.show();
  return application.exec();
}
