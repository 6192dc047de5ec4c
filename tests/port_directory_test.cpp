#include "platform/port_directory.h"

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
#include "rig/first_port.h"

namespace platform {
namespace {

TEST(PortDirectory, ListsTheMachinesPortsWithoutOpeningThem) {
  const QTemporaryDir folder;
  const QDir tty(folder.path());
  const auto add = [&](const QString& name, bool device, const QByteArray& type) {
    tty.mkpath(device ? name + "/device" : name);
    if (type.isEmpty()) return;
    QFile file(tty.filePath(name + "/type"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(type);
  };
  add("ttyUSB10", true, "");
  add("ttyUSB9", true, "");
  add("ttyS0", true, "4\n");
  add("ttyS1", true, "0\n");  // a name without a port behind it
  add("tty7", false, "");     // a console
  EXPECT_EQ(LinuxPorts(folder.path()),
            QStringList({"/dev/ttyS0", "/dev/ttyUSB9", "/dev/ttyUSB10"}));
}

// What an ordinary user is told about the device.
QString ReasonForOrdinaryUser(const QString& device) {
  int ends[2];
  if (pipe(ends) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(1);
    const QByteArray reason = OpenFailureReason(device, false, "something else").toUtf8();
    _exit(write(ends[1], reason.constData(), static_cast<std::size_t>(reason.size())) < 0 ? 1 : 0);
  }
  close(ends[1]);
  char text[256] = {};
  const ssize_t length = read(ends[0], text, sizeof text);
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return QString::fromUtf8(text, length);
}

TEST(PortDirectory, NamesTheReasonInPlainWords) {
  const QTemporaryDir folder;
  const QString file = folder.filePath("port");
  QFile(file).open(QIODevice::WriteOnly);
  const QString pipe = folder.filePath("pipe");
  ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_TRUE(grantpt(terminal) == 0 && unlockpt(terminal) == 0);
  const QString port = ptsname(terminal);
  const std::tuple<QString, bool, const char*> cases[] = {
      {file + "9", true, "there is no such device"},
      {file, false, "it is no serial port"},
      {pipe, false, "it is no serial port"},
      {folder.path(), false, "it is no serial port"},
      {"/dev/null", true, "it is no serial port"},
      {port, true, "another program is using it"},
      {port, false, "the system's words"}};
  for (const auto& [device, busy, reason] : cases) {
    EXPECT_EQ(OpenFailureReason(device, busy, "the system's words"), reason)
        << device.toStdString();
  }
  close(terminal);

  const QByteArray path = QFile::encodeName(file);
  chmod(QFile::encodeName(folder.path()).constData(), 0755);
  chmod(path.constData(), 0);
  EXPECT_EQ(ReasonForOrdinaryUser(file), "you have no permission for it");
  if (geteuid() != 0) GTEST_SKIP() << "only root can give the device to another group";
  ASSERT_EQ(chown(path.constData(), 0, 20), 0);
  chmod(path.constData(), 0660);
  EXPECT_EQ(ReasonForOrdinaryUser(file),
            "you have no permission for it; members of the group \"dialout\" have");
}

// A line of our own, and the lock file that another program may have made for it.
struct Locked : testing::Test {
  Locked() : terminal(posix_openpt(O_RDWR | O_NOCTTY)) {
    EXPECT_TRUE(grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    device = ptsname(terminal);
  }
  ~Locked() override {
    QFile::remove(LockOf(device).file);
    close(terminal);
  }
  void Lock(const QByteArray& content) {
    QFile file(LockOf(device).file);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
  }

  int terminal;
  QString device;
};

// The number of a process that has ended.
QByteArray Ended() {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  waitpid(child, nullptr, 0);
  return QByteArray::number(child);
}

TEST_F(Locked, StaleLocksAreToldFromLiveOnesAndRemoved) {
  using State = PortLock::State;
  EXPECT_EQ(LockOf(device).state, State::kFree);
  const QByteArray live = QByteArray::number(getpid());
  const std::tuple<QByteArray, State, const char*> cases[] = {
      {"     " + live + "\n", State::kHeld, "another program is using it"},
      {live + "\nanother_program\nhost\n", State::kStale, "left by a program that has ended"},
      {"   " + Ended() + "\n", State::kStale, "left by a program that has ended; root may remove"},
      {Ended() + "\nminicom\nhost\n", State::kStale, "left by a program that has ended"},
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
  first.SetSettings("9600,N,8,2");
  MSComm second(by_link);
  second.SetSettings("9600,N,8,2");
  Lock(Ended() + "\n");
  ASSERT_TRUE(first.Open()) << first.LastError().toStdString();
  EXPECT_FALSE(second.Open());
  EXPECT_EQ(second.LastError(), "another program is using it");
  first.Close();
  EXPECT_TRUE(second.Open()) << second.LastError().toStdString();
}

}  // namespace
}  // namespace platform
