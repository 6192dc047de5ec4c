// The board on its pseudo terminal: its pace, and what its window is told.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "board/simulated_board.h"
#include "rig/processor_time.h"
#include "rig/sequences.h"

using namespace std::chrono_literals;

namespace simboard {
namespace {

using namespace rig;
using Clock = std::chrono::steady_clock;

constexpr double kByteMilliseconds = 11 * 1000.0 / 9600;

double MillisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

class PtyLine : public testing::Test {
 protected:
  explicit PtyLine(Pace pace = Pace::k9600)
      : board(pace), line(open(board.DevicePath().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK)) {
    EXPECT_GE(line, 0);
  }
  ~PtyLine() override { close(line); }

  // What the system has room for.
  std::size_t Write(const Bytes& bytes) const {
    return static_cast<std::size_t>(std::max<ssize_t>(0, write(line, bytes.data(), bytes.size())));
  }

  SimulatedBoard board;
  const int line;
};

TEST_F(PtyLine, KeepsThePaceOf9600BaudInBothDirectionsAtOnce) {
  constexpr std::size_t kCount = 800;
  const auto start = Clock::now();
  board.Send(Counting(kCount));
  Bytes received;
  std::size_t sent = 0;
  pollfd watched{.fd = line, .events = POLLIN, .revents = 0};
  while (received.size() < kCount && poll(&watched, 1, 1000) == 1) {
    while (sent < kCount && Write({0x55}) == 1) ++sent;  // as fast as the line takes them
    std::uint8_t byte = 0;
    while (read(line, &byte, 1) == 1) received.push_back(byte);
  }
  const double back = MillisecondsSince(start);
  EXPECT_EQ(received, Counting(kCount));
  ASSERT_TRUE(board.WaitForBytes(kCount, 2s));
  const double taken =
      std::chrono::duration<double, std::milli>(board.Log().back().when - start).count();
  for (const double time : {back, taken}) {
    EXPECT_GE(time, kCount * kByteMilliseconds);
    EXPECT_LE(time, kCount * kByteMilliseconds * 1.02);
  }
}

// The system's own buffers hold up to 21 KB for a terminal that nobody reads.
TEST_F(PtyLine, SlowLineLeavesInTheTerminalWhatItHasNotCarriedYet) {
  const Bytes block(2000, 0x55);
  constexpr std::size_t kBuffers = 24'000;
  std::size_t accepted = 0;
  const auto start = Clock::now();
  const double before = ProcessorMilliseconds();
  while (MillisecondsSince(start) < 500) {
    accepted += Write(block);
    std::this_thread::sleep_for(10ms);
  }
  EXPECT_LT(ProcessorMilliseconds() - before, 100) << "a line that is busy costs little";
  const std::vector<LoggedByte> log = board.Log();
  const double elapsed = MillisecondsSince(start);
  EXPECT_GE(accepted, 2 * block.size());
  EXPECT_LT(accepted, kBuffers + log.size());
  EXPECT_LE(static_cast<double>(log.size()), elapsed / kByteMilliseconds);
  EXPECT_GE(static_cast<double>(log.size()), 0.5 * 500 / kByteMilliseconds);
  // Each byte bears the time at which it has arrived, whenever the board came to look at it.
  ASSERT_GE(log.size(), 100U);
  for (std::size_t i = 1; i < 100; ++i) {
    EXPECT_GE(log[i].when - log[i - 1].when, 1145us) << "byte " << i;
  }
  EXPECT_GE(log.front().when - start, 1145us);
}

TEST_F(PtyLine, IdleBoardCostsNothing) {
  const double before = ProcessorMilliseconds();
  std::this_thread::sleep_for(500ms);
  EXPECT_LT(ProcessorMilliseconds() - before, 5);
}

class BoardsWindow : public PtyLine {
 protected:
  BoardsWindow() : PtyLine(Pace::kUnpaced) {}
  bool WaitUntil(const std::function<bool(const State&)>& shown) const {
    const auto start = Clock::now();
    while (!shown(board.Snapshot())) {
      if (MillisecondsSince(start) > 2000) return false;
      std::this_thread::sleep_for(1ms);
    }
    return true;
  }
};

TEST_F(BoardsWindow, IsToldOfEveryLastChange) {
  std::atomic<int> calls = 0;
  board.SetChanged([&calls] { ++calls; });
  Bytes header = HeaderFor(28);
  header[3] = 2;
  Bytes data(28, 10);
  data[12] = data[26] = 0;
  data[13] = data[27] = 1;
  data[14] = 99;
  board.SetFlash(header, data);
  Write({3, 0});
  EXPECT_TRUE(WaitUntil([](const State& state) { return state.positions[0] == 99; }));
  EXPECT_EQ(board.Snapshot().playing_sequence, 0);
  Write({4});
  EXPECT_TRUE(WaitUntil([](const State& state) { return state.activity == "idle"; }));
  const int before = calls;
  board.ClearLog();
  for (std::size_t i = 1; i <= 7; ++i) {
    Write({1});
    ASSERT_TRUE(board.WaitForBytes(i, 2s));
  }
  std::this_thread::sleep_for(50ms);
  EXPECT_EQ(calls, before + 1) << "one call until the listener has looked";
  EXPECT_TRUE(board.Snapshot().pc_control);
  board.Unplug();
  EXPECT_EQ(board.Snapshot().activity, "unplugged");
  board.Replug();
  EXPECT_FALSE(board.Snapshot().pc_control);
  EXPECT_EQ(board.FlashData(), data);
}

}  // namespace
}  // namespace simboard
