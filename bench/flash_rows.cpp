#include <time.h>

#include <QTimer>
#include <algorithm>

#include "bench/program_window.h"
#include "bench/rows.h"

namespace bench {
namespace {

constexpr int kFullFlash = 1718;            // steps
constexpr int kStepData = 14 * kFullFlash;  // bytes
constexpr int kHeader = 66;
constexpr double kByteTime = 11 * 1000.0 / 9600;  // ms: a start bit, 8 data bits, 2 stop bits
constexpr int kBlock = 256;
constexpr int kWait = 10000;  // ms

// How long the window went without handling an event that was due.
class PauseWatch {
 public:
  PauseWatch() {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.callOnTimeout([this] {
      const auto now = Clock::now();
      longest_ = std::max(longest_, Milliseconds(now - last_) - kInterval);
      last_ = now;
    });
    timer_.start(kInterval);
  }
  double Longest() const { return longest_; }

 private:
  static constexpr int kInterval = 5;
  QTimer timer_;
  Clock::time_point last_ = Clock::now();
  double longest_ = 0;
};

void AddProgramming(ProgramWindow& program, Report& report) {
  program.Board().ClearLog();
  const PauseWatch pauses;
  const auto start = Clock::now();
  program.Click("CommandFlash");
  program.RequireMessage("Data Flash Programmed!");
  const int sent = 1 + 1 + kHeader + kStepData;
  if (!program.Board().WaitForBytes(static_cast<std::size_t>(sent), std::chrono::seconds(1))) {
    qFatal("the board misses bytes");
  }
  // The sender waits for each acknowledgement: of the erase, the header and every whole block.
  const int acknowledgements = 2 + kStepData / kBlock;
  report.Add("programming a full flash",
             Milliseconds(program.Board().Log().back().when - start) / 1000, "the line's own time",
             (sent + acknowledgements) * kByteTime / 1000, "s");
  report.Add("  longest pause of the window meanwhile", pauses.Longest(),
             "a block's time on the line", kBlock * kByteTime, "ms");
}

void AddReading(ProgramWindow& program, Report& report) {
  const PauseWatch pauses;
  const auto start = Clock::now();
  program.Click("CommandRead");
  const auto end = Clock::now();
  program.RequireMessage("Data Flash Read!");
  report.Add("reading a full flash", Milliseconds(end - start) / 1000, "the line's own time",
             (1 + kHeader + kStepData) * kByteTime / 1000, "s");
  report.Add("  longest pause of the window meanwhile", pauses.Longest(),
             "a block's time on the line", kBlock * kByteTime, "ms");
}

double ProcessorTime() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_nsec) / 1e6;
}

void AddWaiting(ProgramWindow& program, Report& report) {
  program.Board().SetFaults({.silent = true});
  QTimer::singleShot(kWait, Qt::PreciseTimer, &program.Find<QPushButton>("Command1"),
                     &QPushButton::click);
  const double used = ProcessorTime();
  const auto start = Clock::now();
  program.Click("CommandRead");
  program.RequireMessage("Reading Error!");
  report.Add("processor time of a wait for a silent board", ProcessorTime() - used,
             "the time waited", Milliseconds(Clock::now() - start), "ms");
}

}  // namespace

void AddFlashRows(Report& report) {
  ProgramWindow program(simboard::Pace::k9600);
  program.Load(kFullFlash);
  AddProgramming(program, report);
  AddReading(program, report);
  AddWaiting(program, report);
}

}  // namespace bench
