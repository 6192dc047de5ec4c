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
#include <QtTest/QTest>

#include "board/board_window.h"
#include "demo/placement.h"
#include "demo/tour.h"
#include "platform/system/end_signals.h"
#include "rig/program_with_board.h"

namespace {

// Both windows are shown: before that a window manager has not told how wide their frames are.
void PlaceBeside(QWidget& board_window, QWidget& form) {
  const auto places =
      demo::PlacesBeside(form.screen()->availableGeometry(), form.frameGeometry().size(),
                         board_window.frameGeometry().size());
  if (!places) return;
  form.move(places->program);
  board_window.move(places->board);
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

  // The tour never opens a port of the machine.
  const rig::RealParts real{.message_boxes = true,
                            .file_dialogs = true,
                            .timer = true,
                            .screen = QApplication::primaryScreen()->availableGeometry(),
                            .other_ports = !parser.isSet(tour)};
  const auto complain = [](const QString& problem) { qFatal("%s", qPrintable(problem)); };
  rig::ProgramWithBoard program(complain, simboard::Pace::k9600, real);
  program.board.SetFaults({.silent = parser.isSet(silent)});
  simboard::BoardWindow board_window(program.board);
  QObject::connect(&program.main_loop, &platform::MainLoop::Ended, &application,
                   [] { QApplication::exit(0); });
  QObject::connect(&end_signals, &platform::EndSignals::Requested, program.form.get(),
                   &QWidget::close);
  end_signals.Watch();
  board_window.show();
  if (QTest::qWaitForWindowExposed(program.form.get()) &&
      QTest::qWaitForWindowExposed(&board_window)) {
    QApplication::processEvents();  // the program's window finds its own place first
    PlaceBeside(board_window, *program.form);
  }
  program.form->raise();  // where there is no room for both the board is behind it
  program.form->activateWindow();
  if (parser.isSet(tour)) {
    QTimer::singleShot(0, program.form.get(), [&] {
      const QDir pictures(QDir(parser.value(tour)).absolutePath());
      demo::Tour(program, board_window, pictures).Go();
      program.form->close();
    });
  }
  const int status = application.exec();
  if (parser.isSet(log)) WriteLog(program.board, parser.value(log));
  return status;
}
