#include "platform/port_directory.h"

#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "platform/ms_comm.h"
#include "platform/port_lock.h"
#include "rig/files.h"
#include "rig/first_port.h"

namespace platform {
namespace {

TEST(PortDirectory, ListsTheMachinesPortsWithoutOpeningThem) {
  const QTemporaryDir folder;
  const QDir tty(folder.path());
  for (const char* made : {"ttyUSB10/device", "ttyUSB9/device", "ttyS0/device", "ttyS1/device"}) {
    tty.mkpath(made);
  }
  tty.mkpath("tty7");  // a console
  // A name without a port behind it has type 0.
  for (const auto& [name, type] : {std::pair{"ttyS0/type", "4\n"}, {"ttyS1/type", "0\n"}}) {
    rig::WriteFile(tty.filePath(name), type);
  }
  EXPECT_EQ(LinuxPorts(folder.path()),
            QStringList({"/dev/ttyS0", "/dev/ttyUSB9", "/dev/ttyUSB10"}));
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
  Locked() {
    EXPECT_TRUE(grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    device = ptsname(terminal);
  }
  ~Locked() override {
    QFile::remove(LockOf(device).file);
    close(terminal);
  }
  void Lock(const QByteArray& content) { rig::WriteFile(LockOf(device).file, content); }

  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  QString device;
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
      {kEnded + "\nminicom\nhost\n", State::kStale, "left by a program that has ended"},
      {"", State::kUnclear, "doesn't say which program made it"},
      {"no number", State::kUnclear, "doesn't say which program made it"}};
  for (const auto& [content, state, reason] : cases) {
    SCOPED_TRACE(content.toStdString());
    Lock(content);
    EXPECT_EQ(LockOf(device).state, state);
    const QString told = OpenFailureReason(device, true, "");
    EXPECT_TRUE(told.contains(reason)) << told.toStdString();
    EXPECT_EQ(told.contains(LockOf(device).file), state != State::kHeld);
    EXPECT_TRUE(RemoveStaleLock(device));
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
