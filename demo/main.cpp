// The program's window with the simulated board on "Comm1", beside the board's own window.
//
//   pelmora-demo                  for an operator
//   pelmora-demo --tour FOLDER    goes through a tour by itself and leaves pictures in FOLDER
//   pelmora-demo --log FILE       writes the bytes that the board received into FILE at the end
//   pelmora-demo --silent         the board takes everything and answers nothing
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QScreen>
#include <QTextStream>
#include <QThread>
#include <QTimer>

#include "board/board_window.h"
#include "board/simulated_board.h"
#include "demo/tour.h"
#include "platform/end_signals.h"
#include "platform/events.h"
#include "platform/file_dialog.h"
#include "platform/hi_timer.h"
#include "platform/message_box.h"
#include "platform/port_directory.h"
#include "ui/form1.h"
#include "ui/look.h"

namespace {

// The simulated board on the first entry, the machine's ports on the others. The tour leaves the
// machine's ports alone: it sees only the board.
class DemoPorts : public platform::PortDirectory {
 public:
  DemoPorts(const simboard::SimulatedBoard& board, bool board_only)
      : board_(board), board_only_(board_only) {}

  QString DeviceFor(int number) const override {
    if (number == 1) return QString::fromStdString(board_.DevicePath());
    return board_only_ ? QString() : machine_.DeviceFor(number);
  }

 private:
  const simboard::SimulatedBoard& board_;
  const bool board_only_;
  const platform::MachinePorts machine_;
};

// Beside the program's window where the screen has space.
void PlaceBeside(QWidget& board_window, QWidget& form) {
  const QRect screen = form.screen()->availableGeometry();
  const int together = form.width() + board_window.width();
  if (together > screen.width()) return;
  const int left = screen.left() + (screen.width() - together) / 2;
  form.move(left, form.y());
  board_window.move(left + form.width(), form.y());
}

void WriteLog(const simboard::SimulatedBoard& board, const QString& path) {
  // The last bytes may still be on the slow line.
  std::size_t received = 0;
  do {
    received = board.Received().size();
    QThread::msleep(50);
  } while (board.Received().size() != received);
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return;
  QTextStream out(&file);
  for (const std::uint8_t byte : board.Received()) out << byte << ' ';
}

}  // namespace

int main(int argc, char** argv) {
  platform::EndSignals end_signals;
  QApplication application(argc, argv);
  QCommandLineParser parser;
  const QCommandLineOption tour(QStringLiteral("tour"),
                                QStringLiteral("Go on a tour and leave pictures in <folder>."),
                                QStringLiteral("folder"));
  const QCommandLineOption log(QStringLiteral("log"),
                               QStringLiteral("At the end, write the bytes that the board received "
                                              "into <file>, in decimal."),
                               QStringLiteral("file"));
  const QCommandLineOption silent(QStringLiteral("silent"),
                                  QStringLiteral("Let the board answer nothing."));
  parser.addOptions({tour, log, silent});
  parser.addHelpOption();
  parser.process(application);

  pelmora::SetUpLook(application);
  simboard::SimulatedBoard board(simboard::SimulatedBoard::Pace::k9600);
  simboard::Faults faults;
  faults.silent = parser.isSet(silent);
  board.SetFaults(faults);
  const DemoPorts ports(board, parser.isSet(tour));
  platform::Events events;
  platform::ModalMessageBox message_box(events);
  platform::ModalFileDialog file_dialog(events);
  platform::SystemHiTimer timer;
  pelmora::Form1 form({events, message_box, file_dialog, timer, ports});
  simboard::BoardWindow board_window(board);
  QObject::connect(&events, &platform::Events::Ended, &application, [] { QApplication::exit(0); });
  QObject::connect(&end_signals, &platform::EndSignals::Requested, &form, &QWidget::close);
  end_signals.Watch();
  form.PlaceOn(QApplication::primaryScreen()->availableGeometry());
  form.show();
  PlaceBeside(board_window, form);
  board_window.show();
  form.activateWindow();
  if (parser.isSet(tour)) {
    QTimer::singleShot(0, &form, [&] {
      const QDir pictures(QDir(parser.value(tour)).absolutePath());
      demo::Tour(form, board_window, board, pictures).Go();
      form.close();
    });
  }
  const int status = application.exec();
  if (parser.isSet(log)) WriteLog(board, parser.value(log));
  return status;
}
