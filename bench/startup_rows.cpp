#include <QApplication>
#include <QProcess>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <fstream>
#include <string>

#include "bench/rows.h"
#include "platform/events.h"
#include "platform/file_dialog.h"
#include "platform/hi_timer.h"
#include "platform/message_box.h"
#include "platform/port_directory.h"
#include "ui/form1.h"
#include "ui/inventory.h"
#include "ui/look.h"

namespace bench {
namespace {

constexpr int kRuns = 11;
constexpr char kProgram[] = "program";
constexpr char kBare[] = "bare";

// The most memory that this process has had, in kB.
long PeakMemory() {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word) {
    long kilobytes = 0;
    if (word == "VmHWM:" && status >> kilobytes) return kilobytes;
  }
  return 0;
}

// Says so, with the memory, when the window has been painted for the first time, and ends.
class PaintWatch : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && !painted_) {
      painted_ = true;
      QTimer::singleShot(0, this, [] {
        std::printf("%ld\n", PeakMemory());
        std::fflush(stdout);
        QApplication::quit();
      });
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  bool painted_ = false;
};

struct Painted {
  std::vector<double> times;   // ms from the start of the process
  std::vector<double> memory;  // MB
};

void Measure(const char* kind, Painted& painted) {
  QProcess process;
  const auto start = Clock::now();
  process.start(QApplication::applicationFilePath(),
                {QStringLiteral("--paint"), QLatin1String(kind)});
  if (!process.waitForReadyRead()) qFatal("a window was not painted");
  painted.times.push_back(Milliseconds(Clock::now() - start));
  process.waitForFinished();
  painted.memory.push_back(process.readAllStandardOutput().trimmed().toDouble() / 1024);
}

}  // namespace

int PaintOneWindow(const QString& kind, int argc, char** argv) {
  QApplication application(argc, argv);
  PaintWatch watch;
  if (kind == QLatin1String(kBare)) {
    QWidget window;
    window.resize(pelmora::Pixels(pelmora::kFormWidth), pelmora::Pixels(pelmora::kFormHeight));
    window.installEventFilter(&watch);
    window.show();
    return QApplication::exec();
  }
  pelmora::SetUpLook(application);
  platform::Events events;
  platform::ModalMessageBox message_box(events);
  platform::ModalFileDialog file_dialog(events);
  platform::SystemHiTimer timer;
  const platform::MachinePorts ports;
  pelmora::Form1 form({events, message_box, file_dialog, timer, ports});
  form.installEventFilter(&watch);
  form.show();
  return QApplication::exec();
}

void AddStartUpRows(Report& report) {
  Painted program;
  Painted bare;
  for (int i = 0; i < kRuns; ++i) {
    Measure(kProgram, program);
    Measure(kBare, bare);
  }
  report.Add("start to the first painted window, median", Median(program.times),
             "a bare window of the toolkit", Median(bare.times), "ms");
  report.Add("peak memory", Median(program.memory), "a bare window of the toolkit",
             Median(bare.memory), "MB");
}

}  // namespace bench
