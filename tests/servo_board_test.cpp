// The board's firmware: bytes in, replies and behaviour out, at times that the test chooses.
#include "board/servo_board.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "rig/sequences.h"

using namespace std::chrono_literals;

namespace simboard {
namespace {

using namespace rig;

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

TEST_F(ServoBoardTest, AcknowledgesTheHeaderAndEveryCompleteBlock) {
  for (const std::size_t total : {0, 1, 255, 256, 257, 512, 24064}) {
    SCOPED_TRACE(total);
    EXPECT_EQ(Feed(Bytes{2} + HeaderFor(total)), Bytes{255});
    for (std::size_t i = 1; i <= total; ++i) {
      EXPECT_EQ(Feed({5}), i % 256 == 0 ? Bytes{255} : Bytes{}) << "after byte " << i;
    }
    EXPECT_EQ(Feed({6}), HeaderFor(total) + Bytes(total, 5));
    EXPECT_EQ(Feed({7}), Bytes{255});
    EXPECT_EQ(Feed({6}), Bytes(66, 0));
  }
}

// Position bytes that look like commands are positions.
TEST_F(ServoBoardTest, PositionsControlAndReset) {
  EXPECT_EQ(Feed({1, 8, 0, 41, 17, 15, 7}), Bytes{});
  EXPECT_EQ(board_.Positions()[0], 0);
  EXPECT_EQ(board_.Positions()[9], 17);
  EXPECT_TRUE(board_.PcControl());
  Feed({0});
  EXPECT_FALSE(board_.PcControl());
  Feed({1, 17});
  EXPECT_FALSE(board_.PcControl());
  EXPECT_EQ(std::ranges::count(board_.Positions(), 128), 12);
}

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

}  // namespace
}  // namespace simboard
