#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <fstream>
#include <string>

#include "bench/rows.h"
#include "ui/inventory.h"
#include "ui/look.h"
#include "ui/program.h"

namespace bench {
namespace {

constexpr int kRuns = 11;
constexpr char kProgram[] = "program";
constexpr char kStock[] = "stock";

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

// Prints the peak memory when the window has been painted for the first time, and ends the process.
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

// The toolkit's own control for each kind of ours.
QWidget* Make(const pelmora::ControlRow& row, QWidget* parent) {
  const QString caption = QString::fromUtf8(row.caption);
  if (pelmora::Is<QGroupBox>(row)) return new QGroupBox(caption, parent);
  if (pelmora::Is<QPushButton>(row)) return new QPushButton(caption, parent);
  if (pelmora::Is<QSpinBox>(row)) return new QSpinBox(parent);
  if (pelmora::Is<QComboBox>(row)) return new QComboBox(parent);
  if (pelmora::Is<QListWidget>(row)) return new QListWidget(parent);
  if (pelmora::Is<QProgressBar>(row)) return new QProgressBar(parent);
  if (pelmora::Is<QLineEdit>(row)) return new QLineEdit(caption, parent);
  if (pelmora::Is<QSlider>(row)) return new QSlider(Qt::Vertical, parent);
  return new QLabel(caption, parent);
}

void FillWithStockControls(QWidget& window) {
  using pelmora::Pixels;
  window.resize(Pixels(pelmora::kFormWidth), Pixels(pelmora::kFormHeight));
  for (const pelmora::ControlRow& row : pelmora::Inventory()) {
    auto* panel = window.findChild<QWidget*>(QLatin1String(row.parent.name));
    for (int i = 0; i < row.count; ++i) {
      QWidget* control = Make(row, panel ? panel : &window);
      control->setObjectName(pelmora::ElementName(row, i));
      control->setGeometry(Pixels(row.left + i * row.pitch), Pixels(row.top), Pixels(row.width),
                           Pixels(row.height));
      control->setVisible(row.start != pelmora::Start::kHidden);
    }
  }
}

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
  if (kind == QLatin1String(kStock)) {
    QWidget window;
    FillWithStockControls(window);
    window.installEventFilter(&watch);
    window.show();
    return QApplication::exec();
  }
  pelmora::SetUpLook(application);
  pelmora::Program program(application);
  pelmora::Form1& form = program.Window();
  form.installEventFilter(&watch);
  form.show();
  return QApplication::exec();
}

void AddStartUpRows(Report& report) {
  Painted program;
  Painted stock;
  for (int i = 0; i < kRuns; ++i) {
    Measure(kProgram, program);
    Measure(kStock, stock);
  }
  report.Add("start to the first painted window, median", Median(program.times),
             "a window of as many stock controls", Median(stock.times), "ms");
  report.Add("peak memory", Median(program.memory), "a window of as many stock controls",
             Median(stock.memory), "MB");
}

}  // namespace bench
