// Measures the program and prints one table. See scripts/bench.
#include <QApplication>
#include <QString>
#include <cstdio>

#include "bench/rows.h"

namespace {

// The off-screen platform warns at every window of what it can't do; the table stays without that.
void Print(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (text.startsWith(QLatin1String("This plugin does not support"))) return;
  if (text.startsWith(QLatin1String("QStandardPaths:"))) return;
  std::fprintf(stderr, "%s\n", qPrintable(text));
  if (type == QtFatalMsg) std::exit(1);
}

}  // namespace

int main(int argc, char** argv) {
  qInstallMessageHandler(Print);
  if (argc == 3 && QLatin1String(argv[1]) == QLatin1String("--paint")) {
    return bench::PaintOneWindow(QString::fromLocal8Bit(argv[2]), argc, argv);
  }
  QApplication application(argc, argv);
  bench::Report report;
  bench::AddStartUpRows(report);
  bench::AddLinkRows(report);
  bench::AddFlashRows(report);
  bench::AddPlaybackRows(report);
  bench::AddMovementRows(report);
  bench::AddEditingRows(report);
  bench::AddHistoryRows(report);
  bench::AddFileRows(report);
  report.Print();
  return 0;
}
