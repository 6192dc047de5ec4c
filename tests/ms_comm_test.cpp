#include "platform/ms_comm.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QTest>
#include <future>
#include <span>

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

TEST_F(MSCommTest, FullReceiveBufferDropsAndReports) {
  comm.SetInBufferSize(4);
  comm.SetInputLen(1);
  QStringList events;
  QObject::connect(&comm, &MSComm::OnComm, [&] {
    const bool received = comm.CommEvent() == kCommEvReceive;
    events += received ? QString(comm.Input()) : QString::number(comm.CommEvent());
  });
  Receive("ab");  // the limit counts for all that waits, in however many bursts it came
  Receive("cd");
  EXPECT_EQ(events.join(' '), "");
  Receive("efg");
  comm.SetRThreshold(1);
  QTest::qWait(25);
  EXPECT_EQ(events.join(' '), "1008 a b c d");
}

// A line that is read by nobody, or not at once.
struct StuckLine {
  StuckLine() : fd(posix_openpt(O_RDWR | O_NOCTTY)) {
    EXPECT_TRUE(grantpt(fd) == 0 && unlockpt(fd) == 0);
  }
  ~StuckLine() { close(fd); }
  QString Device() const { return ptsname(fd); }

  // What arrives until the line has been quiet for half a second; it begins to read late.
  Bytes TakeAll() const {
    usleep(100'000);
    Bytes bytes;
    pollfd line{fd, POLLIN, 0};
    std::uint8_t buffer[512];
    while (poll(&line, 1, 500) == 1) {
      const ssize_t got = read(fd, buffer, sizeof buffer);
      if (got <= 0) break;
      bytes.insert(bytes.end(), buffer, buffer + got);
    }
    return bytes;
  }

  const int fd;
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
    comm.Output(std::span(sent).first(20000));
    comm.Output(std::span(sent).subspan(20000));
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
  comm.Close();
  EXPECT_LT(clock.elapsed(), 1500);
  EXPECT_GT(clock.elapsed(), 900);
}

// What the system has taken is no longer in any queue that can be looked at.
TEST_F(MSCommTest, KnowsWhatTheLineCannotHaveCarriedYet) {
  for (int i = 0; i < 100; ++i) comm.Output(Bytes{1});
  EXPECT_TRUE(board.WaitForBytes(100, std::chrono::milliseconds(20))) << "it left at once";
  EXPECT_GT(comm.OutBufferCount(), 80);
  EXPECT_GT(comm.TimeUntilLeft(24).count(), 66);
  EXPECT_LE(comm.TimeUntilLeft(24).count(), 88);
  QElapsedTimer clock;
  clock.start();
  comm.Close();
  EXPECT_GT(clock.elapsed(), 90);
  EXPECT_LT(clock.elapsed(), 400);
}

TEST_F(MSCommTest, PulledLineIsOneLossAndCostsNothing) {
  for (const bool while_sending : {false, true}) {
    lost.clear();
    comm.Output(Bytes(600, 1));  // more than the line carries in the time below
    board.Unplug();
    if (while_sending) comm.Output(Bytes{1, 2, 3});
    const double before = rig::ProcessorMilliseconds();
    QTest::qWait(300);
    EXPECT_LT(rig::ProcessorMilliseconds() - before, 100.0);
    EXPECT_EQ(lost.size(), 1);
    board.Replug();
    ASSERT_TRUE(comm.Open());
    EXPECT_EQ(comm.OutBufferCount(), 0) << "those of the line before";
  }
}

}  // namespace
}  // namespace platform
