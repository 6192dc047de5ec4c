#include <malloc.h>

#include <QAction>
#include <QCoreApplication>
#include <functional>
#include <memory>

#include "bench/connected_program.h"
#include "bench/rows.h"

namespace bench {
namespace {

constexpr int kFull = 16 * 256;  // steps in all sequences together
constexpr int kRounds = 50;
constexpr int kSteps = 200;
constexpr char kWarning[] = "Out of memory: too many steps. Max # of bytes is 24064!";

double HeapMegabytes() {
  const struct mallinfo2 heap = mallinfo2();
  return static_cast<double>(heap.uordblks + heap.hblkhd) / 1e6;
}

double MemoryOf(const std::function<void()>& work) {
  const double before = HeapMegabytes();
  work();
  QCoreApplication::processEvents();
  return HeapMegabytes() - before;
}

void LoadFull(ConnectedProgram& program, unsigned seed) {
  program.ExpectMessage(kWarning);
  program.Load(rig::FilledSequences(seed, kFull, 5));
}

void AddTimeRow(Report& report, ConnectedProgram& program) {
  const auto time = [](const std::function<void()>& work) {
    const auto start = Clock::now();
    work();
    QCoreApplication::processEvents();  // the list is laid out and painted
    return Milliseconds(Clock::now() - start);
  };
  std::vector<double> undo, next;
  for (int i = 0; i < kRounds; ++i) {
    program.Press("CommandClearAll");
    QCoreApplication::processEvents();
    undo.push_back(time([&] { program.Trigger("ListUndo"); }));
    if (program.Lines().size() != rig::kMostSteps) qFatal("the sequences did not come back");
    program.ExpectMessage(kWarning);
    next.push_back(time([&] { program.Press("CommandMoreSeq"); }));
    program.ExpectMessage(kWarning);
    program.Press("CommandLessSeq");
    QCoreApplication::processEvents();
  }
  report.Add("undoing \"Clear All\" of 16 full sequences, median", Median(undo),
             "\"+\" to a full sequence", Median(next), "ms");
}

// What 200 steps of `work` take, beside 200 copies of the data that they could go back to.
void AddMemoryRow(Report& report, const std::string& what, const std::function<void()>& work) {
  const double steps = MemoryOf([&] {
    for (int i = 0; i < kSteps; ++i) work();
  });
  std::vector<std::unique_ptr<pelmora::Declaration>> copies;
  const double copied = MemoryOf([&] {
    for (int i = 0; i < kSteps; ++i) copies.push_back(std::make_unique<pelmora::Declaration>());
  });
  report.Add("memory of 200 steps of history: " + what, steps, "200 copies of the data", copied,
             "MB");
}

}  // namespace

void AddHistoryRows(Report& report) {
  {
    ConnectedProgram program(simboard::Pace::kUnpaced);
    LoadFull(program, 1);
    AddTimeRow(report, program);
  }
  {
    ConnectedProgram program(simboard::Pace::kUnpaced);
    LoadFull(program, 1);
    program.Select(100);
    program.Press("CommandClear");
    program.Trigger("ListUndo");
    int position = 0;
    AddMemoryRow(report, "\"Remove\" and \"Add\"", [&] {
      const bool remove = program.Lines().size() == rig::kMostSteps;
      program.SetSlider(0, position++ % 256);
      program.ExpectMessage(kWarning);
      program.Press(remove ? "CommandRem" : "CommandAdd");
    });
  }
  {
    ConnectedProgram program(simboard::Pace::kUnpaced);
    unsigned seed = 1;
    AddMemoryRow(report, "full files loaded", [&] { LoadFull(program, seed++); });
  }
}

}  // namespace bench
