#include <QCoreApplication>
#include <QTemporaryDir>

#include "bench/connected_program.h"
#include "bench/rows.h"

namespace bench {
namespace {

constexpr int kLargest = 16 * 256;  // steps
constexpr int kRounds = 15;

template <class Work>
double Time(Work work) {
  const auto start = Clock::now();
  work();
  return Milliseconds(Clock::now() - start);
}

}  // namespace

void AddFileRows(Report& report) {
  ConnectedProgram program(simboard::Pace::kUnpaced);
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("sequences.dat"));
  const auto warning = QStringLiteral("Out of memory: too many steps. Max # of bytes is 24064!");
  program.ExpectMessage(warning);
  program.Load(rig::FilledSequences(1, kLargest, 5));
  program.files.answer = file;
  std::vector<double> saves, writes, loads, reads;
  for (int i = 0; i < kRounds; ++i) {
    QByteArray content;
    program.ExpectMessage(warning);
    program.box.Expect("Save", "Data Saved!");
    saves.push_back(Time([&] { program.Trigger("SaveBuffer"); }));
    reads.push_back(Time([&] { content = rig::ReadFile(file); }));
    writes.push_back(Time([&] { rig::WriteFile(file, content); }));
    program.ExpectMessage(warning);
    program.box.Expect("Load", "Data Loaded!");
    loads.push_back(Time([&] { program.Trigger("LoadBuffer"); }));
    QCoreApplication::processEvents();
  }
  report.Add("saving the largest file, median", Median(saves), "writing its bytes", Median(writes),
             "ms");
  report.Add("loading it", Median(loads), "reading its bytes", Median(reads), "ms");
}

}  // namespace bench
