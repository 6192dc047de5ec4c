// The simulated board by itself: its times, and the pace of its pseudo terminal.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "board/simulated_board.h"
#include "rig/bytes.h"

using namespace std::chrono_literals;

namespace simboard {
namespace {

using namespace rig;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kCount = 800;

// How long so many bytes take to the board and back at once.
Clock::duration ThereAndBack() {
  SimulatedBoard board(Pace::k9600);
  const int line = open(board.DevicePath().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
  const auto start = Clock::now();
  board.Send(Counting(kCount));
  EXPECT_EQ(write(line, Bytes(kCount, 0x55).data(), kCount), ssize_t{kCount});
  Bytes received;
  pollfd watched{.fd = line, .events = POLLIN, .revents = 0};
  while (received.size() < kCount && poll(&watched, 1, 1000) == 1) {
    std::uint8_t byte = 0;
    while (read(line, &byte, 1) == 1) received.push_back(byte);
  }
  const Clock::time_point back = Clock::now();
  EXPECT_EQ(received, Counting(kCount));
  EXPECT_TRUE(board.WaitForBytes(kCount, 2s));
  const std::vector<LoggedByte> log = board.Log();
  // Each byte bears the time at which it has arrived, whenever the board came to look at it.
  for (std::size_t i = 1; i < kCount; ++i) EXPECT_GE(log[i].when - log[i - 1].when, 1145us) << i;
  close(line);
  const auto [first, last] = std::minmax(back, log.back().when);
  EXPECT_GE(first - start, kCount * 11 * 1.0s / 9600);
  return last - start;
}

TEST(PtyLine, KeepsThePaceOf9600BaudInBothDirectionsAtOnce) {
  auto least = ThereAndBack();
  // A busy machine may stall some runs, but not all.
  constexpr auto kAtMost = kCount * 11 * 1.02s / 9600;
  for (int i = 0; i < 4 && least > kAtMost; ++i) least = std::min(least, ThereAndBack());
  EXPECT_LE(least, kAtMost);
}

}  // namespace
}  // namespace simboard
