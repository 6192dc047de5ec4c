// The simulated board by itself: its times, and the pace of its pseudo terminal.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <vector>

#include "board/simulated_board.h"
#include "rig/bytes.h"

using namespace std::chrono_literals;

namespace simboard {
namespace {

using namespace rig;
using Clock = std::chrono::steady_clock;

TEST(PtyLine, KeepsThePaceOf9600BaudInBothDirectionsAtOnce) {
  constexpr std::size_t kCount = 800;
  constexpr auto kByteTime = 11 * 1.0s / 9600;
  SimulatedBoard board(Pace::k9600);
  const int line = open(board.DevicePath().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
  const auto start = Clock::now();
  board.Send(Counting(kCount));
  ASSERT_EQ(write(line, Bytes(kCount, 0x55).data(), kCount), ssize_t{kCount});
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
  close(line);
}

}  // namespace
}  // namespace simboard
