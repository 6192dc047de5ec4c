// The serial control on a pseudo terminal, the machine's ports, and the locks of other programs.
#include "platform/serial/ms_comm.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <future>
#include <span>

#include "board/simulated_board.h"
#include "platform/serial/port_lock.h"
#include "rig/bytes.h"
#include "rig/files.h"
#include "rig/first_port.h"
#include "rig/processor_time.h"

namespace platform {
namespace {

using rig::Bytes;

struct MSCommTest : testing::Test {
  MSCommTest() {
    Open(QString::fromStdString(board.DevicePath()), "9600,N,8,2");
    QObject::connect(&comm, &MSComm::PortLost, [this] { ++lost; });
  }
  void Open(const QString& chosen, const QString& settings) {
    comm.Close();
    device = chosen;
    comm.SetSettings(settings);
    EXPECT_TRUE(comm.Open()) << comm.LastError().toStdString();
  }
  simboard::SimulatedBoard board{simboard::Pace::kUnpaced};
  QString device;
  rig::FirstPort entries{[this] { return device; }};
  MSComm comm{entries};
  int lost = 0;
};

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
    Open(line.Device(), "4000000,N,8,1");
    auto reader = std::async(std::launch::async, [&] { return line.TakeAll(); });
    QElapsedTimer clock;
    clock.start();
    comm.Output(std::span(sent).first(20000));
    comm.Output(std::span(sent).subspan(20000));
    if (closes) comm.Close();
    while (reader.wait_for(std::chrono::seconds(0)) != std::future_status::ready) QTest::qWait(10);
    EXPECT_LT(clock.elapsed(), 3000);
    EXPECT_TRUE(reader.get() == sent) << closes;
    EXPECT_EQ(lost, 0);
  }
}

TEST_F(MSCommTest, ClosingADeadLineEnds) {
  const StuckLine line;
  Open(line.Device(), "4000000,N,8,1");
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
    lost = 0;
    comm.Output(Bytes(600, 1));  // more than the line carries in the time below
    board.Unplug();
    if (while_sending) comm.Output(Bytes{1, 2, 3});
    const double before = rig::ProcessorMilliseconds();
    QTest::qWait(300);
    EXPECT_LT(rig::ProcessorMilliseconds() - before, 100.0);
    EXPECT_EQ(lost, 1);
    board.Replug();
    Open(QString::fromStdString(board.DevicePath()), "9600,N,8,2");
    EXPECT_EQ(comm.OutBufferCount(), 0) << "those of the line before";
  }
}

TEST(PortDirectory, CountsTheMachinesPortsAndPrefersLinks) {
  const QTemporaryDir folder;
  const QTemporaryDir devices;
  const QDir tty(folder.path());
  for (const char* made : {"ttyUSB10/device", "ttyUSB9/device", "ttyS0/device", "ttyS1/device"}) {
    tty.mkpath(made);
  }
  tty.mkpath("tty7");  // a console
  // A name without a port behind it has type 0.
  for (const auto& [name, type] : {std::pair{"ttyS0/type", "4\n"}, {"ttyS1/type", "0\n"}}) {
    rig::WriteFile(tty.filePath(name), type);
  }
  // An adapter that is pulled leaves its entry to it.
  QFile::link("nowhere", devices.filePath("comm2"));
  const MachinePorts ports(folder.path(), devices.path());
  const char* wanted[] = {"ttyS0", "comm2", "ttyUSB10", nullptr};
  for (int number = 1; const char* name : wanted) {
    EXPECT_EQ(ports.DeviceFor(number++), name ? devices.filePath(name) : QString());
  }
}

bool OrdinaryUserIsTold(const QString& reason, const QString& device) {
  const pid_t child = fork();
  if (child == 0) {
    const bool ordinary = geteuid() != 0 || (setgid(65534) == 0 && setuid(65534) == 0);
    _exit(ordinary && OpenFailureReason(device, false, "something else") == reason ? 0 : 1);
  }
  int status = -1;
  waitpid(child, &status, 0);
  return status == 0;
}

TEST(PortDirectory, NamesTheReasonInPlainWords) {
  const QTemporaryDir folder;
  const QString file = folder.filePath("port");
  rig::WriteFile(file, "");
  EXPECT_EQ(OpenFailureReason(file + "9", true, ""), "there is no such device");
  for (const QString& device : {file, folder.path(), QString("/dev/null")}) {
    EXPECT_EQ(OpenFailureReason(device, true, ""), "it is no serial port") << device.toStdString();
  }

  const QByteArray path = QFile::encodeName(file);
  chmod(QFile::encodeName(folder.path()).constData(), 0755);
  chmod(path.constData(), 0);
  EXPECT_TRUE(OrdinaryUserIsTold("you have no permission for it", file));
  if (geteuid() != 0) GTEST_SKIP() << "only root can give the device to another group";
  ASSERT_EQ(chown(path.constData(), 0, 20), 0);
  chmod(path.constData(), 0660);
  EXPECT_TRUE(OrdinaryUserIsTold(
      "you have no permission for it; members of the group \"dialout\" have", file));
}

// A line of our own, and the lock file that another program may have made for it.
struct Locked : testing::Test {
  ~Locked() override { QFile::remove(LockOf(device).file); }
  void Lock(const QByteArray& content) { rig::WriteFile(LockOf(device).file, content); }

  const StuckLine line;
  const QString device = line.Device();
};

// No process can have this number.
const QByteArray kEnded = "4194305";

TEST_F(Locked, StaleLocksAreToldFromLiveOnesAndRemoved) {
  using State = PortLock::State;
  EXPECT_EQ(LockOf(device).state, State::kFree);
  EXPECT_EQ(OpenFailureReason(device, true, ""), "another program is using it");
  EXPECT_EQ(OpenFailureReason(device, false, "the system's words"), "the system's words");
  const QByteArray live = QByteArray::number(getpid());
  const std::tuple<QByteArray, State, const char*> cases[] = {
      {"     " + live + "\n", State::kHeld, "another program is using it"},
      {live + "\n" + program_invocation_short_name + " and more\n", State::kHeld, "is using it"},
      {live + "\nanother_program\nhost\n", State::kStale, "left by a program that has ended"},
      {"   " + kEnded + "\n", State::kStale, "left by a program that has ended; root may remove"},
      {kEnded + "\nterminal\nhost\n", State::kStale, "left by a program that has ended"},
      {"", State::kUnclear, "doesn't say which program made it"},
      {"no number", State::kUnclear, "doesn't say which program made it"}};
  for (const auto& [content, state, reason] : cases) {
    SCOPED_TRACE(content.toStdString());
    Lock(content);
    EXPECT_EQ(LockOf(device).state, state);
    const QString told = OpenFailureReason(device, true, "");
    EXPECT_TRUE(told.contains(reason)) << told.toStdString();
    EXPECT_EQ(told.contains(LockOf(device).file), state != State::kHeld);
    RemoveStaleLock(device);
    EXPECT_EQ(QFile::exists(LockOf(device).file), state != State::kStale);
    QFile::remove(LockOf(device).file);
  }
}

TEST_F(Locked, ALinkAndItsTargetAreOnePort) {
  const QTemporaryDir folder;
  const QString link = folder.filePath("comm7");
  ASSERT_TRUE(QFile::link(device, link));
  const rig::FirstPort by_name([this] { return device; });
  const rig::FirstPort by_link([&] { return link; });
  MSComm first(by_name);
  MSComm second(by_link);
  for (MSComm* comm : {&first, &second}) comm->SetSettings("9600,N,8,2");
  Lock(kEnded + "\nanother_program\nhost\n");
  ASSERT_TRUE(first.Open()) << first.LastError().toStdString();
  EXPECT_FALSE(second.Open());
  EXPECT_EQ(second.LastError(), "another program is using it");
  first.Close();
  EXPECT_TRUE(second.Open()) << second.LastError().toStdString();
}

}  // namespace
}  // namespace platform
