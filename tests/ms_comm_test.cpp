#include "platform/ms_comm.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QTest>
#include <QTimer>
#include <thread>
#include <vector>

#include "platform/events.h"
#include "rig/bytes.h"
#include "rig/first_port.h"
#include "rig/processor_time.h"

namespace platform {
namespace {

// The far end of a serial line whose near end is a device.
class FarEnd {
 public:
  FarEnd() : fd_(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (grantpt(fd_) == 0 && unlockpt(fd_) == 0) device_ = ptsname(fd_);
  }
  ~FarEnd() { Unplug(); }
  FarEnd(FarEnd&& other) noexcept : fd_(std::exchange(other.fd_, -1)), device_(other.device_) {}
  FarEnd& operator=(FarEnd&& other) noexcept {
    std::swap(fd_, other.fd_);
    std::swap(device_, other.device_);
    return *this;
  }

  QString Device() const { return device_; }
  int Fd() const { return fd_; }
  void Send(const QByteArray& bytes) const {
    ASSERT_EQ(write(fd_, bytes.constData(), static_cast<std::size_t>(bytes.size())), bytes.size());
  }
  void Unplug() {
    if (fd_ >= 0) close(fd_);
    fd_ = -1;
  }
  // Up to `count` bytes, fewer when none comes for `patience` ms. Processes no events.
  QByteArray Take(qsizetype count, int patience) const {
    QByteArray bytes;
    pollfd line{fd_, POLLIN, 0};
    while (bytes.size() < count && poll(&line, 1, patience) == 1) {
      char buffer[64];
      const ssize_t got = read(fd_, buffer, sizeof buffer);
      if (got <= 0) break;
      bytes.append(buffer, got);
    }
    return bytes;
  }

 private:
  int fd_;
  QString device_;
};

void Send(MSComm& comm, const QByteArray& bytes) {
  for (const char byte : bytes) {
    const std::uint8_t one[] = {static_cast<std::uint8_t>(byte)};
    comm.Output(one);
  }
}

QByteArray Pattern(std::size_t size) {
  const rig::Bytes bytes = rig::Counting(size);
  return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

double ProcessorTimeOf(const std::function<void()>& work) {
  const double start = rig::ProcessorMilliseconds();
  work();
  return rig::ProcessorMilliseconds() - start;
}

struct MSCommTest : testing::Test {
  MSCommTest() {
    device = far.Device();
    comm.SetSettings("9600,N,8,2");
    comm.SetInBufferSize(20000);
    EXPECT_TRUE(comm.Open()) << comm.LastError().toStdString();
    QObject::connect(&comm, &MSComm::PortLost, [this](const QString& reason) { lost += reason; });
  }

  // The same line, but so fast that a long text takes next to no time.
  void OpenFast() {
    comm.Close();
    comm.SetSettings("4000000,N,8,1");
    ASSERT_TRUE(comm.Open());
  }

  FarEnd far;
  QString device;
  rig::FirstPort entries{[this] { return device; }};
  MSComm comm{entries};
  Events events;
  QStringList lost;
};

TEST_F(MSCommTest, SetsTheLineAsAsked) {
  termios line{};
  ASSERT_EQ(tcgetattr(far.Fd(), &line), 0);
  EXPECT_EQ(cfgetospeed(&line), static_cast<speed_t>(B9600));
  EXPECT_EQ(cfgetispeed(&line), static_cast<speed_t>(B9600));
  EXPECT_EQ(line.c_cflag & (CSIZE | PARENB | CSTOPB | CRTSCTS),
            static_cast<tcflag_t>(CS8 | CSTOPB));
  EXPECT_EQ(line.c_iflag & (IXON | IXOFF | ICRNL | INLCR | ISTRIP), 0U);
  EXPECT_EQ(line.c_lflag & (ICANON | ECHO | ISIG), 0U);
  EXPECT_EQ(line.c_oflag & OPOST, 0U);
}

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
    const auto connection = QObject::connect(&comm, &MSComm::OnComm, [&] {
      EXPECT_EQ(comm.CommEvent(), kCommEvReceive);
      got += comm.Input();
    });
    far.Send(c.burst);
    QTest::qWait(30);
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
  far.Send("ab");
  QTest::qWait(20);
  EXPECT_EQ(events_seen, 0);
  comm.SetRThreshold(1);  // announces what waits already
  QTest::qWait(30);
  const int before = events_seen;
  EXPECT_GE(before, 1);
  QTest::qWait(30);
  EXPECT_EQ(events_seen, before);
  far.Send("c");
  QTest::qWait(30);
  EXPECT_EQ(events_seen, before + 1);
}

TEST_F(MSCommTest, HandlerMayWaitForMoreAndAnotherWaitMayRunInside) {
  // A header announces a body; while the handler polls for the body another exchange runs inside.
  QByteArray header, inner, body;
  QObject::connect(&comm, &MSComm::OnComm, [&] {
    if (!header.isEmpty()) {
      inner += comm.Input();
      return;
    }
    header = comm.Input();
    comm.SetRThreshold(0);
    QTimer::singleShot(10, &comm, [&] {
      comm.SetRThreshold(1);
      comm.SetInputLen(1);
      far.Send("XY");
      while (inner.size() < 2) events.DoEvents();
      comm.SetRThreshold(0);
      comm.SetInputLen(0);
      far.Send("bo");
    });
    QTimer::singleShot(60, &comm, [&] { far.Send("dy"); });
    while (inner.size() < 2 || comm.InBufferCount() < 4) events.DoEvents();
    body = comm.Input();
  });
  comm.SetInputLen(2);
  comm.SetRThreshold(2);
  far.Send("he");
  QTRY_VERIFY_WITH_TIMEOUT(!body.isEmpty(), 3000);
  EXPECT_EQ(header + inner + body, "heXYbody");
}

TEST_F(MSCommTest, FullReceiveBufferDropsAndReports) {
  comm.SetInBufferSize(4);
  comm.SetInputLen(1);
  comm.SetRThreshold(1);
  std::vector<int> kinds;
  QByteArray got;
  QObject::connect(&comm, &MSComm::OnComm, [&] {
    kinds.push_back(comm.CommEvent());
    if (comm.CommEvent() == kCommEvReceive) got += comm.Input();
  });
  far.Send("abcdefg");
  QTest::qWait(30);
  EXPECT_EQ(got, "abcd");
  EXPECT_EQ(kinds, (std::vector<int>{kCommEventRxOver, 2, 2, 2, 2}));
}

TEST_F(MSCommTest, OutputLeavesAtOnceAndKeepsItsOrder) {
  Send(comm, "\x29\xc8");
  EXPECT_EQ(far.Take(2, 0), "\x29\xc8");

  OpenFast();
  const QByteArray sent = Pattern(24000);
  QByteArray got;
  std::thread reader([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));  // the system's queue fills up
    got = far.Take(sent.size(), 2000);
  });
  QElapsedTimer clock;
  clock.start();
  Send(comm, sent);
  EXPECT_LT(clock.elapsed(), 3000);
  std::atomic<bool> done = false;
  std::thread joiner([&] {
    reader.join();
    done = true;
  });
  while (!done) QTest::qWait(10);
  joiner.join();
  EXPECT_TRUE(got == sent) << got.size();
  EXPECT_TRUE(lost.isEmpty());
}

TEST_F(MSCommTest, ClosingSendsEverythingFirst) {
  OpenFast();
  const QByteArray sent = Pattern(24000);  // more than the system's queue takes
  QByteArray got;
  std::thread reader([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    got = far.Take(sent.size(), 500);
  });
  Send(comm, sent);
  comm.Close();
  reader.join();
  EXPECT_TRUE(got == sent) << got.size();
  EXPECT_FALSE(comm.PortOpen());
}

// What the system has taken is no longer in any queue that can be looked at.
TEST_F(MSCommTest, KnowsWhatTheLineCannotHaveCarriedYet) {
  EXPECT_EQ(comm.OutBufferCount(), 0);
  Send(comm, Pattern(100));
  EXPECT_GT(comm.OutBufferCount(), 90);
  EXPECT_LE(comm.OutBufferCount(), 100);
  EXPECT_GT(comm.TimeUntilLeft(24).count(), 76);
  EXPECT_LE(comm.TimeUntilLeft(24).count(), 88);
  QElapsedTimer clock;
  clock.start();
  comm.Close();
  EXPECT_GT(clock.elapsed(), 100);
  EXPECT_LT(clock.elapsed(), 400);
  EXPECT_EQ(comm.OutBufferCount(), 0);
}

TEST_F(MSCommTest, ClosingADeadLineEnds) {
  OpenFast();
  Send(comm, Pattern(30000));
  QElapsedTimer clock;
  clock.start();
  const double spent = ProcessorTimeOf([&] { comm.Close(); });
  EXPECT_LT(clock.elapsed(), 1500);
  EXPECT_GT(clock.elapsed(), 900);
  EXPECT_LT(spent, 200.0);
  QTest::qWait(20);
  EXPECT_TRUE(lost.isEmpty());
}

TEST_F(MSCommTest, PulledLineIsOneLossAndCostsNothing) {
  for (const bool while_sending : {false, true}) {
    lost.clear();
    far.Send("last");
    QTest::qWait(20);
    far.Unplug();
    if (while_sending) Send(comm, "abc");
    const double spent = ProcessorTimeOf([] { QTest::qWait(300); });
    EXPECT_EQ(lost.size(), 1);
    EXPECT_FALSE(lost.join("").isEmpty());
    EXPECT_FALSE(comm.PortOpen());
    EXPECT_LT(spent, 100.0);
    EXPECT_EQ(comm.Input(), "last");
    Send(comm, "nobody listens");

    const int session = comm.Session();
    far = FarEnd();
    device = far.Device();
    ASSERT_TRUE(comm.Open());
    EXPECT_EQ(comm.Session(), session + 1);
  }
}

TEST_F(MSCommTest, OpeningDiscardsWhatWaited) {
  comm.Close();
  far.Send("old");
  ASSERT_TRUE(comm.Open());
  QTest::qWait(20);
  far.Send("new");
  QTest::qWait(20);
  EXPECT_EQ(comm.Input(), "new");
}

TEST_F(MSCommTest, FailureToOpenNamesTheDeviceAndTheReason) {
  MSComm second(entries);
  second.SetSettings("9600,N,8,2");
  EXPECT_FALSE(second.Open());
  EXPECT_EQ(second.LastDevice(), far.Device());
  EXPECT_EQ(second.LastError(), "another program is using it");

  device = "/dev/pts/99999";
  EXPECT_FALSE(second.Open());
  EXPECT_EQ(second.LastError(), "there is no such device");

  second.SetCommPort(8);
  EXPECT_FALSE(second.Open());
  EXPECT_EQ(second.LastDevice(), "");
  EXPECT_EQ(second.LastError(), "there is no serial port for this entry");
}

TEST_F(MSCommTest, WaitingCostsNoProcessorTime) {
  QTimer::singleShot(250, &events, &Events::End);
  const double spent = ProcessorTimeOf([&] {
    while (!events.Ending()) events.DoEvents();
  });
  EXPECT_LT(spent, 60.0);
}

}  // namespace
}  // namespace platform
