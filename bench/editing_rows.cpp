#include <QCoreApplication>
#include <functional>

#include "bench/connected_program.h"
#include "bench/rows.h"

namespace bench {
namespace {

constexpr int kLongList = 256;
constexpr int kShortList = 4;
constexpr int kRounds = 50;

struct Timings {
  std::vector<double> remove, add, replace, up, breakpoint;
};

// Each command on the line in the middle of a list that has `lines` lines before and after.
Timings Edit(ConnectedProgram& program, int lines) {
  program.Load(rig::FilledSequences(1, lines, 5));
  const auto time = [&](const char* button) {
    const auto start = Clock::now();
    program.Press(button);
    const double taken = Milliseconds(Clock::now() - start);
    QCoreApplication::processEvents();
    return taken;
  };
  Timings timings;
  for (int i = 0; i < kRounds; ++i) {
    program.Select(lines / 2);
    timings.remove.push_back(time("CommandRem"));
    timings.replace.push_back(time("CommandReplace"));
    timings.add.push_back(time("CommandAdd"));
    timings.up.push_back(time("CommandUp"));
    timings.breakpoint.push_back(time("CommandBrk"));
    if (program.Lines().size() != lines) qFatal("an editing command went wrong");
  }
  return timings;
}

}  // namespace

void AddEditingRows(Report& report) {
  ConnectedProgram program(simboard::Pace::kUnpaced);
  const Timings long_list = Edit(program, kLongList);
  const Timings short_list = Edit(program, kShortList);
  const auto add = [&](const char* what, std::vector<double> Timings::*which) {
    report.Add(std::string("list of 256 lines, median of \"") + what + "\"",
               Median(long_list.*which), "a list of 4 lines", Median(short_list.*which), "ms");
  };
  add("Add", &Timings::add);
  add("Remove", &Timings::remove);
  add("Replace", &Timings::replace);
  add("--->", &Timings::up);
  add("Set/Reset Break", &Timings::breakpoint);
}

}  // namespace bench
