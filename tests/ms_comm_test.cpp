#include "platform/ms_comm.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QTest>
#include <future>
#include <vector>

#include "board/simulated_board.h"
#include "rig/bytes.h"
#include "rig/first_port.h"
#include "rig/processor_time.h"

namespace platform {
namespace {

using rig::Bytes;

struct MSCommTest : testing::Test {
  MSCommTest() {
    Open("9600,N,8,2");
    comm.SetInBufferSize(20000);
    QObject::connect(&comm, &MSComm::PortLost, [this](const QString& reason) { lost += reason; });
  }
  void Open(const QString& settings) {
    comm.Close();
    comm.SetSettings(settings);
    EXPECT_TRUE(comm.Open()) << comm.LastError().toStdString();
  }
  void Receive(const QByteArray& bytes) {
    board.Send({bytes.begin(), bytes.end()});
    QTest::qWait(25);
  }

  simboard::SimulatedBoard board{simboard::Pace::kUnpaced};
  QString other_device;  // instead of the board's
  rig::FirstPort entries{[this] {
    return other_device.isEmpty() ? QString::fromStdString(board.DevicePath()) : other_device;
  }};
  MSComm comm{entries};
  QStringList lost;
};

TEST_F(MSCommTest, ThresholdDecidesWhenBytesAreAnnounced) {
  struct Case {
    int threshold;
    int input_len;
    QByteArray burst;
    QList<QByteArray> events;
    int left;
  };
  const Case cases[] = {
      {1, 1, "abc", {"a", "b", "c"}, 0},    {1, 0, "abc", {"abc"}, 0},         {0, 1, "abc", {}, 3},
      {3, 3, "abcdefg", {"abc", "def"}, 1}, {3, 2, "abcdef", {"ab", "cd"}, 2},
  };
  for (const Case& c : cases) {
    comm.ClearInBuffer();
    comm.SetRThreshold(c.threshold);
    comm.SetInputLen(c.input_len);
    QList<QByteArray> got;
    const auto connection = QObject::connect(&comm, &MSComm::OnComm, [&] { got += comm.Input(); });
    Receive(c.burst);
    QObject::disconnect(connection);
    EXPECT_EQ(got, c.events) << "threshold " << c.threshold << " length " << c.input_len;
    EXPECT_EQ(comm.InBufferCount(), c.left);
  }
}

TEST_F(MSCommTest, HandlerThatTakesNothingWaitsForTheNextByte) {
  int events_seen = 0;
  QObject::connect(&comm, &MSComm::OnComm, [&] {
    ++events_seen;
    comm.SetRThreshold(1);
  });
  Receive("ab");
  EXPECT_EQ(events_seen, 0);
  comm.SetRThreshold(1);  // announces what waits already
  QTest::qWait(25);
  EXPECT_EQ(events_seen, 1);
  Receive("c");
  EXPECT_EQ(events_seen, 2);
}

TEST_F(MSCommTest, FullReceiveBufferDropsAndReports) {
  comm.SetInBufferSize(4);
  comm.SetInputLen(1);
  std::vector<int> kinds;
  QByteArray got;
  QObject::connect(&comm, &MSComm::OnComm, [&] {
    kinds.push_back(comm.CommEvent());
    if (comm.CommEvent() == kCommEvReceive) got += comm.Input();
  });
  Receive("ab");  // the limit counts for all that waits, in however many bursts it came
  Receive("cd");
  EXPECT_EQ(kinds, std::vector<int>{});
  Receive("efg");
  comm.SetRThreshold(1);
  QTest::qWait(25);
  EXPECT_EQ(got, "abcd");
  EXPECT_EQ(kinds, (std::vector<int>{kCommEventRxOver, 2, 2, 2, 2}));
}

// A line that is read by nobody, or not at once.
class StuckLine {
 public:
  StuckLine() : fd_(posix_openpt(O_RDWR | O_NOCTTY)) {
    EXPECT_TRUE(grantpt(fd_) == 0 && unlockpt(fd_) == 0);
  }
  ~StuckLine() { close(fd_); }
  QString Device() const { return ptsname(fd_); }

  // What arrives until the line has been quiet for half a second; it begins to read late.
  Bytes TakeAll() const {
    usleep(100'000);
    Bytes bytes;
    pollfd line{fd_, POLLIN, 0};
    std::uint8_t buffer[512];
    while (poll(&line, 1, 500) == 1) {
      const ssize_t got = read(fd_, buffer, sizeof buffer);
      if (got <= 0) break;
      bytes.insert(bytes.end(), buffer, buffer + got);
    }
    return bytes;
  }

 private:
  const int fd_;
};

TEST_F(MSCommTest, AllThatWasWrittenLeavesInItsOrderAlsoByAClose) {
  const StuckLine line;
  const Bytes sent = rig::Counting(24000);  // more than the system's queue takes
  for (const bool closes : {false, true}) {
    other_device = line.Device();
    Open("4000000,N,8,1");
    auto reader = std::async(std::launch::async, [&] { return line.TakeAll(); });
    QElapsedTimer clock;
    clock.start();
    comm.Output(sent);
    if (closes) comm.Close();
    while (reader.wait_for(std::chrono::seconds(0)) != std::future_status::ready) QTest::qWait(10);
    EXPECT_LT(clock.elapsed(), 3000);
    EXPECT_TRUE(reader.get() == sent) << closes;
    EXPECT_TRUE(lost.isEmpty());
  }
}

TEST_F(MSCommTest, ClosingADeadLineEnds) {
  const StuckLine line;
  other_device = line.Device();
  Open("4000000,N,8,1");
  comm.Output(rig::Counting(30000));
  QElapsedTimer clock;
  clock.start();
  const double before = rig::ProcessorMilliseconds();
  comm.Close();
  EXPECT_LT(clock.elapsed(), 1500);
  EXPECT_GT(clock.elapsed(), 900);
  EXPECT_LT(rig::ProcessorMilliseconds() - before, 200.0);
  QTest::qWait(20);
  EXPECT_TRUE(lost.isEmpty());
}

// What the system has taken is no longer in any queue that can be looked at.
TEST_F(MSCommTest, KnowsWhatTheLineCannotHaveCarriedYet) {
  EXPECT_EQ(comm.OutBufferCount(), 0);
  for (int i = 0; i < 100; ++i) comm.Output(Bytes{1});
  EXPECT_TRUE(board.WaitForBytes(100, std::chrono::milliseconds(20))) << "it left at once";
  EXPECT_GT(comm.OutBufferCount(), 80);
  EXPECT_LE(comm.OutBufferCount(), 100);
  EXPECT_GT(comm.TimeUntilLeft(24).count(), 66);
  EXPECT_LE(comm.TimeUntilLeft(24).count(), 88);
  QElapsedTimer clock;
  clock.start();
  comm.Close();
  EXPECT_GT(clock.elapsed(), 90);
  EXPECT_LT(clock.elapsed(), 400);
  EXPECT_EQ(comm.OutBufferCount(), 0);
}

TEST_F(MSCommTest, PulledLineIsOneLossAndCostsNothing) {
  for (const bool while_sending : {false, true}) {
    lost.clear();
    Receive("last");
    comm.Output(Bytes(600, 1));  // more than the line carries in the time below
    board.Unplug();
    if (while_sending) comm.Output(Bytes{1, 2, 3});
    const double before = rig::ProcessorMilliseconds();
    QTest::qWait(300);
    EXPECT_LT(rig::ProcessorMilliseconds() - before, 100.0);
    EXPECT_EQ(lost.size(), 1);
    EXPECT_FALSE(lost.join("").isEmpty());
    EXPECT_FALSE(comm.PortOpen());
    EXPECT_EQ(comm.Input(), "last");
    comm.Output(Bytes{1});

    const int session = comm.Session();
    board.Replug();
    ASSERT_TRUE(comm.Open());
    EXPECT_EQ(comm.Session(), session + 1);
    EXPECT_EQ(comm.OutBufferCount(), 0) << "those of the line before";
  }
}

}  // namespace
}  // namespace platform
