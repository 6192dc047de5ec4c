// The board on its pseudo terminal: pace, faults, hang-up and idleness, seen from the PC's end.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include "board/outbox.h"
#include "board/simulated_board.h"
#include "rig/processor_time.h"
#include "rig/sequences.h"

using namespace std::chrono_literals;

namespace simboard {
namespace {

using namespace rig;
using Clock = std::chrono::steady_clock;

// The PC's end of the line.
class Pc {
 public:
  explicit Pc(const SimulatedBoard& board)
      : fd_(open(board.DevicePath().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    EXPECT_GE(fd_, 0);
  }
  ~Pc() { close(fd_); }

  void Write(const Bytes& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
      const ssize_t count = write(fd_, bytes.data() + sent, bytes.size() - sent);
      ASSERT_GT(count, 0);
      sent += static_cast<std::size_t>(count);
    }
  }

  // Reads until `count` bytes are there or the line was quiet for `limit`.
  Bytes Read(std::size_t count, std::chrono::milliseconds limit = 2s) {
    Bytes bytes;
    while (bytes.size() < count && Wait(limit) == POLLIN) {
      Bytes chunk(count - bytes.size());
      const ssize_t got = read(fd_, chunk.data(), chunk.size());
      if (got <= 0) break;
      bytes.insert(bytes.end(), chunk.begin(), chunk.begin() + got);
    }
    return bytes;
  }

  // Everything that comes until the line has been quiet for a while.
  Bytes ReadAll() { return Read(1 << 20, 100ms); }

  short Wait(std::chrono::milliseconds limit) {
    pollfd watched{.fd = fd_, .events = POLLIN, .revents = 0};
    poll(&watched, 1, static_cast<int>(limit.count()));
    return watched.revents;
  }

 private:
  int fd_;
};

double MillisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

constexpr double kByteMilliseconds = 11 * 1000.0 / 9600;

TEST(PtyLine, EchoesNothingAndTranslatesNothing) {
  SimulatedBoard board(Pace::kUnpaced);
  Pc pc(board);
  Bytes all(256);
  for (std::size_t i = 0; i < 256; ++i) all[i] = static_cast<std::uint8_t>(i);
  board.SetFlash(HeaderFor(256), all);
  pc.Write({6});
  EXPECT_EQ(pc.ReadAll(), [&] {
    Bytes reply = HeaderFor(256);
    reply.insert(reply.end(), all.begin(), all.end());
    return reply;
  }());

  board.ClearLog();
  board.SetFaults({.silent = true});
  pc.Write(all);
  ASSERT_TRUE(board.WaitForBytes(256, 2s));
  EXPECT_EQ(board.Received(), all);
  EXPECT_EQ(pc.ReadAll(), Bytes{});
}

TEST(PtyLine, ProgramsAndReadsAFullFlash) {
  SimulatedBoard board(Pace::kUnpaced);
  Pc pc(board);
  const Bytes data = Counting(24064);
  pc.Write({2});
  pc.Write(HeaderFor(data.size()));
  ASSERT_EQ(pc.Read(1), Bytes{255});
  for (auto block = data.begin(); block != data.end(); block += 256) {
    pc.Write(Bytes(block, block + 256));
    ASSERT_EQ(pc.Read(1), Bytes{255});
  }
  EXPECT_EQ(board.FlashData(), data);
  EXPECT_EQ(board.Snapshot().flash_bytes, 24064);
  pc.Write({6});
  const Bytes reply = pc.Read(66 + 24064);
  ASSERT_EQ(reply.size(), 66u + 24064u);
  EXPECT_TRUE(std::equal(data.begin(), data.end(), reply.begin() + 66));
}

TEST(PtyLine, NothingIsLostWhileThePcDoesNotRead) {
  SimulatedBoard board(Pace::kUnpaced);
  Pc pc(board);
  const Bytes flood = Counting(300'000);
  board.Send(flood);
  std::this_thread::sleep_for(50ms);
  pc.Write({1});
  EXPECT_TRUE(board.WaitForBytes(1, 2s)) << "the board still listens";
  EXPECT_EQ(pc.Read(flood.size()), flood);
}

TEST(PtyLine, HeldUpSlowLineDoesNotMakeUpForLostTime) {
  Outbox outbox(Pace::k9600);
  const Clock::time_point start{1000s};
  outbox.Add({.bytes = Bytes(100, 1), .not_before = start});
  std::size_t room = 3;
  std::size_t sent = 0;
  const auto write = [&](std::span<const std::uint8_t> bytes) {
    const std::size_t taken = std::min(room, bytes.size());
    room -= taken;
    sent += taken;
    return taken;
  };
  outbox.Pump(write, start + 10ms);
  EXPECT_EQ(sent, 3u) << "eight bytes are due, the line takes three";
  EXPECT_TRUE(outbox.HeldUp());
  EXPECT_FALSE(outbox.NextDue());
  room = 1000;
  outbox.Pump(write, start + 50ms);
  EXPECT_EQ(sent, 4u) << "the byte that waited";
  outbox.Pump(write, start + 61ms);
  EXPECT_EQ(sent, 13u) << "and in 11 ms nine more";
}

TEST(PtyLine, KeepsThePaceOf9600BaudInBothDirectionsAtOnce) {
  SimulatedBoard board(Pace::k9600);
  Pc pc(board);
  constexpr std::size_t kCount = 1500;
  const auto start = Clock::now();
  board.Send(Counting(kCount));
  // One byte at a time, as fast as the line takes them.
  for (const std::uint8_t byte : Bytes(kCount, 0x55)) pc.Write({byte});
  EXPECT_EQ(pc.Read(kCount), Counting(kCount));
  const double received = MillisecondsSince(start);
  ASSERT_TRUE(board.WaitForBytes(kCount, 2s));
  const double taken =
      std::chrono::duration<double, std::milli>(board.Log().back().when - start).count();
  for (const double time : {received, taken}) {
    EXPECT_GE(time, kCount * kByteMilliseconds);
    EXPECT_LE(time, kCount * kByteMilliseconds * 1.01);
  }
}

// The system's own buffers hold up to 21 KB for a terminal that nobody reads.
TEST(PtyLine, SlowLineLeavesInTheTerminalWhatItHasNotCarriedYet) {
  SimulatedBoard board(Pace::k9600);
  const int line = open(board.DevicePath().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
  ASSERT_GE(line, 0);
  const Bytes block(2000, 0x55);
  constexpr std::size_t kBuffers = 24'000;
  std::size_t accepted = 0;
  const auto start = Clock::now();
  const double before = ProcessorMilliseconds();
  while (MillisecondsSince(start) < 500) {
    const ssize_t count = write(line, block.data(), block.size());
    if (count > 0) accepted += static_cast<std::size_t>(count);
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
  close(line);
}

TEST(PtyLine, SlowLineDoesNotDriftOverAcknowledgedBlocks) {
  SimulatedBoard board(Pace::k9600);
  Pc pc(board);
  const auto start = Clock::now();
  pc.Write({2});
  pc.Write(HeaderFor(1024));
  ASSERT_EQ(pc.Read(1), Bytes{255});
  for (int block = 0; block < 4; ++block) {
    pc.Write(Bytes(256, 1));
    ASSERT_EQ(pc.Read(1), Bytes{255});
  }
  constexpr double kExpected = (1 + 66 + 1 + 4 * 257) * kByteMilliseconds;
  EXPECT_GE(MillisecondsSince(start), kExpected);
  EXPECT_LE(MillisecondsSince(start), kExpected * 1.01);
}

TEST(PtyLine, FaultsDistortTheReplies) {
  std::array<std::uint8_t, 66> lie{};
  lie.fill(255);
  const Bytes honest = [] {
    Bytes reply = HeaderFor(4);
    reply.insert(reply.end(), {1, 2, 3, 4});
    return reply;
  }();
  const auto joined = [](Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
  };
  struct Case {
    const char* what;
    Faults faults;
    Bytes to_erase;
    Bytes to_read;
  };
  const std::vector<Case> cases = {
      {"none", {}, {255}, honest},
      {"silent", {.silent = true}, {}, {}},
      {"wrong bytes", {.before_reply = {0, 9}}, {0, 9, 255}, joined({0, 9}, honest)},
      {"extra replies", {.extra_replies = 2}, {255, 255, 255}, honest},
      {"wrong bytes go once before the extra replies",
       {.before_reply = {7}, .extra_replies = 1},
       {7, 255, 255},
       joined({7}, honest)},
      {"cut in the data", {.cut_reply_at = 68}, {255}, Bytes(honest.begin(), honest.begin() + 68)},
      {"cut in the header",
       {.cut_reply_at = 10},
       {255},
       Bytes(honest.begin(), honest.begin() + 10)},
      {"cut to nothing", {.cut_reply_at = 0}, {}, {}},
      {"lying header", {.lying_header = lie}, {255}, joined(Bytes(66, 255), {1, 2, 3, 4})},
      {"too much data", {.after_reply = {5, 6}}, {255}, joined(honest, {5, 6})},
      {"no acknowledgement left", {.silent_after_acks = 0}, {}, honest},
      {"one acknowledgement left", {.silent_after_acks = 1}, {255}, honest},
  };
  SimulatedBoard board(Pace::kUnpaced);
  Pc pc(board);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    board.SetFaults(c.faults);
    board.SetFlash(honest, {1, 2, 3, 4});
    pc.Write({6});
    EXPECT_EQ(pc.ReadAll(), c.to_read);
    pc.Write({7});
    EXPECT_EQ(pc.ReadAll(), c.to_erase);
  }
  pc.Write({7});
  EXPECT_EQ(pc.ReadAll(), Bytes{}) << "the one acknowledgement is used up";
}

TEST(PtyLine, LateAcknowledgementCostsTheBoardNoProgram) {
  SimulatedBoard board(Pace::kUnpaced);
  Pc pc(board);
  board.SetFaults({.reply_delay = 1200ms});
  const auto start = Clock::now();
  pc.Write({2});
  pc.Write(HeaderFor(3));
  ASSERT_EQ(pc.Read(1), Bytes{255});
  EXPECT_GE(MillisecondsSince(start), 1200);
  pc.Write({1, 2, 3});
  ASSERT_TRUE(board.WaitForBytes(1 + 66 + 3, 2s));
  EXPECT_EQ(board.FlashData(), (Bytes{1, 2, 3}));
}

TEST(PtyLine, FallsSilentInTheMiddleOfAReply) {
  SimulatedBoard board(Pace::k9600);
  Pc pc(board);
  board.SetFlash(HeaderFor(2000), Bytes(2000, 1));
  pc.Write({6});
  ASSERT_EQ(pc.Read(100).size(), 100u);
  EXPECT_EQ(board.Snapshot().activity.substr(0, 17), "sending its flash");
  board.SetFaults({.silent = true});
  EXPECT_LT(pc.ReadAll().size(), 100u);
  EXPECT_EQ(board.Snapshot().activity, "idle");
}

TEST(PtyLine, UnplugHangsUpAndReplugKeepsOnlyTheFlash) {
  SimulatedBoard board(Pace::kUnpaced);
  board.SetFlash(HeaderFor(3), {1, 2, 3});
  {
    Pc pc(board);
    pc.Write({1, 8, 200});
    ASSERT_TRUE(board.WaitForBytes(3, 2s));
    board.Unplug();
    EXPECT_TRUE(pc.Wait(0ms) & POLLHUP);
    EXPECT_EQ(pc.Read(1, 100ms), Bytes{});
    EXPECT_EQ(board.DevicePath(), "");
    EXPECT_EQ(board.Snapshot().activity, "unplugged");
    board.Unplug();
  }
  board.Replug();
  Pc pc(board);
  EXPECT_EQ(board.Snapshot().positions[0], 128);
  EXPECT_FALSE(board.Snapshot().pc_control);
  pc.Write({6});
  EXPECT_EQ(pc.ReadAll().size(), 69u);
}

TEST(PtyLine, PlaysAndReportsEveryLastChange) {
  SimulatedBoard board(Pace::kUnpaced);
  std::atomic<int> calls = 0;
  board.SetChanged([&calls] { ++calls; });
  Bytes header = HeaderFor(28);
  header[3] = 2;
  Bytes data(28, 10);
  data[12] = data[26] = 0;
  data[13] = data[27] = 1;
  data[14] = 99;
  board.SetFlash(header, data);
  Pc pc(board);
  pc.Write({3, 0});
  const auto deadline = Clock::now() + 2s;
  while (board.Snapshot().positions[0] != 99 && Clock::now() < deadline) {
    std::this_thread::sleep_for(1ms);
  }
  EXPECT_EQ(board.Snapshot().positions[0], 99);
  EXPECT_EQ(board.Snapshot().playing_sequence, 0);
  pc.Write({4});
  while (board.Snapshot().playing_sequence >= 0 && Clock::now() < deadline) {
    std::this_thread::sleep_for(1ms);
  }
  board.Snapshot();
  const int before = calls;
  board.ClearLog();
  for (std::size_t i = 1; i <= 7; ++i) {
    pc.Write({1});
    ASSERT_TRUE(board.WaitForBytes(i, 2s));
  }
  std::this_thread::sleep_for(50ms);
  EXPECT_EQ(calls, before + 1) << "one call until the listener has looked";
}

TEST(PtyLine, IdleBoardCostsNothing) {
  SimulatedBoard board(Pace::k9600);
  // Nobody has the other end open, then somebody has and left again.
  { Pc pc(board); }
  std::this_thread::sleep_for(50ms);
  const double before = ProcessorMilliseconds();
  std::this_thread::sleep_for(1s);
  const double used = ProcessorMilliseconds() - before;
  EXPECT_LT(used, 5) << "milliseconds of processor time in a second";
}

}  // namespace
}  // namespace simboard
