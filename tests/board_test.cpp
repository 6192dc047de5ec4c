// The simulated board by itself: its times, and the pace of its pseudo terminal.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <tuple>
#include <vector>

#include "board/servo_board.h"
#include "board/simulated_board.h"
#include "rig/sequences.h"

using namespace std::chrono_literals;

namespace simboard {
namespace {

using namespace rig;
using Clock = std::chrono::steady_clock;

struct ServoBoardTest : testing::Test {
  // Feeds the bytes at the present time; what the board answers.
  Bytes Feed(const Bytes& bytes) {
    Bytes answer;
    for (const std::uint8_t byte : bytes) {
      board_.Receive(byte, now_);
      for (const auto& reply : board_.TakeReplies()) answer = answer + reply.bytes;
    }
    return answer;
  }

  void PassTime(std::chrono::milliseconds time) {
    now_ += time;
    board_.Tick(now_);
  }

  ServoBoard board_;
  ServoBoard::TimePoint now_{1000s};
};

TEST_F(ServoBoardTest, PlaysStepsForTheirTimeOverAndOver) {
  Feed(Bytes{2} + ExampleImage() + Bytes{3, 0});
  const std::tuple<std::chrono::milliseconds, std::size_t, int> moments[] = {
      {99ms, 0, 128}, {1ms, 1, 255}, {999ms, 1, 255}, {1ms, 0, 128}, {2300ms, 1, 255}};
  for (const auto& [later, step, channel0] : moments) {
    PassTime(later);
    EXPECT_EQ(board_.NowPlaying()->step, step) << later.count();
    EXPECT_EQ(board_.Positions()[0], channel0) << later.count();
  }
  Feed({8, 77, 3, 3});
  EXPECT_EQ(board_.NowPlaying()->sequence, 3u);
}

TEST_F(ServoBoardTest, GivesUpAProgramThatTheSenderAbandons) {
  Feed(Bytes{2} + HeaderFor(1000) + Bytes(600, 5));
  PassTime(999ms);
  Feed({5});
  PassTime(999ms);
  EXPECT_TRUE(board_.Programming()) << "every byte starts the patience anew";
  PassTime(1ms);
  EXPECT_EQ(Feed({6}), HeaderFor(1000) + Bytes(512, 5) + Bytes(488, 0)) << "whole blocks stay";
}

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
