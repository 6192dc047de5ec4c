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
#include <variant>

#include "bench/rows.h"
#include "platform/dialogs/file_dialog.h"
#include "platform/dialogs/modal_message_box.h"
#include "platform/serial/port_directory.h"
#include "platform/system/events.h"
#include "platform/system/hi_timer.h"
#include "ui/form1.h"
#include "ui/inventory.h"
#include "ui/look.h"

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

// The toolkit's own control for each kind of ours.
QWidget* Make(const pelmora::Member& member, const QString& caption, QWidget* parent) {
  using namespace pelmora;
  struct Maker {
    const QString& caption;
    QWidget* parent;
    QWidget* operator()(One<platform::Panel>) const { return new QGroupBox(caption, parent); }
    QWidget* operator()(One<platform::PushButton>) const {
      return new QPushButton(caption, parent);
    }
    QWidget* operator()(One<platform::CWButton>) const { return new QPushButton(caption, parent); }
    QWidget* operator()(One<platform::CWNumEdit>) const { return new QSpinBox(parent); }
    QWidget* operator()(One<platform::DropDownList>) const { return new QComboBox(parent); }
    QWidget* operator()(One<platform::ListBox>) const { return new QListWidget(parent); }
    QWidget* operator()(One<platform::ProgressBar>) const { return new QProgressBar(parent); }
    QWidget* operator()(One<platform::TextField>) const { return new QLineEdit(caption, parent); }
    QWidget* operator()(Several<platform::TextField, 2 * kChannels>) const {
      return new QLineEdit(caption, parent);
    }
    QWidget* operator()(Several<platform::CWSlide, kChannels>) const {
      return new QSlider(Qt::Vertical, parent);
    }
    QWidget* operator()(One<QLabel>) const { return new QLabel(caption, parent); }
    QWidget* operator()(One<Heading>) const { return new QLabel(caption, parent); }
  };
  return std::visit(Maker{caption, parent}, member);
}

void FillWithStockControls(QWidget& window) {
  using pelmora::Pixels;
  window.resize(Pixels(pelmora::kFormWidth), Pixels(pelmora::kFormHeight));
  for (const pelmora::ControlRow& row : pelmora::Inventory()) {
    auto* panel = window.findChild<QWidget*>(QLatin1String(row.parent.name));
    for (int i = 0; i < row.count; ++i) {
      QWidget* control =
          Make(row.control.member, QString::fromUtf8(row.caption), panel ? panel : &window);
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
  platform::Events events;
  platform::ModalMessageBox message_box(events);
  platform::ModalFileDialog file_dialog(events);
  platform::SystemHiTimer timer;
  const platform::MachinePorts ports;
  pelmora::Form1 form({events, message_box, file_dialog, timer, ports});
  message_box.SetParent(&form);
  file_dialog.SetParent(&form);
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
