// The board on its pseudo terminal: its pace, and what its window is told.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <thread>
#include <vector>

#include "board/simulated_board.h"
#include "rig/sequences.h"

using namespace std::chrono_literals;

namespace simboard {
namespace {

using namespace rig;
using Clock = std::chrono::steady_clock;

constexpr auto kByteTime = 11 * 1.0s / 9600;

struct PtyLine : testing::Test {
  explicit PtyLine(Pace pace = Pace::k9600)
      : board(pace), line(open(board.DevicePath().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK)) {}
  ~PtyLine() override { close(line); }

  void Write(const Bytes& bytes) const {
    ASSERT_EQ(write(line, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }

  SimulatedBoard board;
  const int line;
};

TEST_F(PtyLine, KeepsThePaceOf9600BaudInBothDirectionsAtOnce) {
  constexpr std::size_t kCount = 800;
  const auto start = Clock::now();
  board.Send(Counting(kCount));
  Write(Bytes(kCount, 0x55));
  Bytes received;
  pollfd watched{.fd = line, .events = POLLIN, .revents = 0};
  while (received.size() < kCount && poll(&watched, 1, 1000) == 1) {
    std::uint8_t byte = 0;
    while (read(line, &byte, 1) == 1) received.push_back(byte);
  }
  const Clock::duration back = Clock::now() - start;
  EXPECT_EQ(received, Counting(kCount));
  ASSERT_TRUE(board.WaitForBytes(kCount, 2s));
  const std::vector<LoggedByte> log = board.Log();
  for (const Clock::duration time : {back, log.back().when - start}) {
    EXPECT_GE(time, kCount * kByteTime);
    EXPECT_LE(time, kCount * kByteTime * 1.02);
  }
  // Each byte bears the time at which it has arrived, whenever the board came to look at it.
  for (std::size_t i = 1; i < kCount; ++i) EXPECT_GE(log[i].when - log[i - 1].when, 1145us) << i;
}

struct BoardsWindow : PtyLine {
  BoardsWindow() : PtyLine(Pace::kUnpaced) {}
};

TEST_F(BoardsWindow, IsToldOfEveryLastChange) {
  std::atomic<int> calls = 0;
  board.SetChanged([&calls] { ++calls; });
  for (const int position : {99, 100}) {
    const int before = calls;
    board.ClearLog();
    Write({1, 8, 5, 8, static_cast<std::uint8_t>(position)});
    ASSERT_TRUE(board.WaitForBytes(5, 2s));
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(calls, before + 1) << "one call until the listener has looked";
    EXPECT_EQ(board.Snapshot().positions[0], position);
  }
  EXPECT_TRUE(board.Snapshot().pc_control);
  board.Unplug();
  EXPECT_EQ(board.Snapshot().activity, "unplugged");
  board.Replug();
  EXPECT_FALSE(board.Snapshot().pc_control);
}

}  // namespace
}  // namespace simboard
