#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <array>

#include "bench/connected_program.h"
#include "bench/rows.h"
#include "platform/controls/cw_slide.h"

namespace bench {
namespace {

constexpr int kMoves = 1000;

// From now until the board has taken the second of two bytes that `send` sends.
template <class Send>
double UntilReceived(simboard::SimulatedBoard& board, Send send) {
  board.ClearLog();
  const auto start = Clock::now();
  send();
  if (!board.WaitForBytes(2, std::chrono::seconds(1))) qFatal("the bytes don't arrive");
  return Milliseconds(board.Log()[1].when - start);
}

}  // namespace

void AddLinkRows(Report& report) {
  ConnectedProgram program(simboard::Pace::kUnpaced);
  simboard::SimulatedBoard other(simboard::Pace::kUnpaced);
  const int line = open(other.DevicePath().c_str(), O_RDWR | O_NOCTTY);
  if (line < 0) qFatal("the bare line can't be opened");
  auto& slide = program.hands->Find<platform::CWSlide>("CWSlide1_3");
  std::vector<double> moves;
  std::vector<double> writes;
  for (int i = 0; i < kMoves; ++i) {
    const auto position = static_cast<std::uint8_t>(i % 256);
    moves.push_back(UntilReceived(program.board, [&] { slide.setValue(position); }));
    const std::array<std::uint8_t, 2> bytes = {11, position};
    writes.push_back(UntilReceived(other, [&] {
      if (write(line, bytes.data(), bytes.size()) != 2) qFatal("the bare line takes nothing");
    }));
    QCoreApplication::processEvents();
  }
  close(line);
  report.Add("slider's move to its bytes at the other end, median", Median(moves), "a bare write",
             Median(writes), "ms");
  report.Add("  99th percentile", Quantile(moves, 0.99), "a bare write", Quantile(writes, 0.99),
             "ms");
}

}  // namespace bench
