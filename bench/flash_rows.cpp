#include <QPushButton>
#include <QTimer>
#include <algorithm>

#include "bench/connected_program.h"
#include "bench/rows.h"
#include "rig/processor_time.h"

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

void AddProgramming(ConnectedProgram& program, Report& report) {
  program.board.ClearLog();
  const PauseWatch pauses;
  const auto start = Clock::now();
  program.ExpectMessage("Data Flash Erased");
  program.ExpectMessage("Data Flash Programmed!");
  program.Press("CommandFlash");
  const int sent = 1 + 1 + kHeader + kStepData;
  if (!program.board.WaitForBytes(static_cast<std::size_t>(sent), std::chrono::seconds(1))) {
    qFatal("the board misses bytes");
  }
  // The sender waits for each acknowledgement: of the erase, the header and every whole block.
  const int acknowledgements = 2 + kStepData / kBlock;
  report.Add("programming a full flash",
             Milliseconds(program.board.Log().back().when - start) / 1000, "the line's own time",
             (sent + acknowledgements) * kByteTime / 1000, "s");
  report.Add("  longest pause of the window meanwhile", pauses.Longest(),
             "a block's time on the line", kBlock * kByteTime, "ms");
}

void AddReading(ConnectedProgram& program, Report& report) {
  const PauseWatch pauses;
  program.ExpectMessage("Data Flash Read!");
  const auto start = Clock::now();
  program.Press("CommandRead");
  const auto end = Clock::now();
  report.Add("reading a full flash", Milliseconds(end - start) / 1000, "the line's own time",
             (1 + kHeader + kStepData) * kByteTime / 1000, "s");
  report.Add("  longest pause of the window meanwhile", pauses.Longest(),
             "a block's time on the line", kBlock * kByteTime, "ms");
}

void AddWaiting(ConnectedProgram& program, Report& report) {
  program.board.SetFaults({.silent = true});
  QTimer::singleShot(kWait, Qt::PreciseTimer, &program.hands->Find<QPushButton>("Command1"),
                     &QPushButton::click);
  const double used = rig::ProcessorMilliseconds();
  const auto start = Clock::now();
  program.ExpectMessage("Reading Error!");
  program.Press("CommandRead");
  report.Add("processor time of a wait for a silent board", rig::ProcessorMilliseconds() - used,
             "the time waited", Milliseconds(Clock::now() - start), "ms");
}

}  // namespace

void AddFlashRows(Report& report) {
  ConnectedProgram program(simboard::Pace::k9600);
  program.Load(rig::FilledSequences(1, kFullFlash, 5));
  AddProgramming(program, report);
  AddReading(program, report);
  AddWaiting(program, report);
}

}  // namespace bench
