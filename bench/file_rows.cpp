#include <QCoreApplication>
#include <QFile>

#include "bench/program_window.h"
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
  ProgramWindow program(simboard::Pace::kUnpaced);
  program.Load(kLargest);
  std::vector<double> saves, writes, loads, reads;
  for (int i = 0; i < kRounds; ++i) {
    QFile file(program.File());
    QByteArray content;
    saves.push_back(Time([&] { program.Save(); }));
    reads.push_back(Time([&] {
      if (!file.open(QIODevice::ReadOnly)) qFatal("the file is gone");
      content = file.readAll();
      file.close();
    }));
    writes.push_back(Time([&] {
      if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("the file can't be written");
      }
      file.close();
    }));
    loads.push_back(Time([&] { program.LoadAgain(); }));
    QCoreApplication::processEvents();
  }
  report.Add("saving the largest file, median", Median(saves), "writing its bytes", Median(writes),
             "ms");
  report.Add("loading it", Median(loads), "reading its bytes", Median(reads), "ms");
}

}  // namespace bench
