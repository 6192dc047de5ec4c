#include "platform/port_directory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

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
  QTemporaryDir folder;
  const QString device = folder.filePath("port");
  QFile(device).open(QIODevice::WriteOnly);
  const QByteArray path = QFile::encodeName(device);
  chmod(QFile::encodeName(folder.path()).constData(), 0755);

  EXPECT_EQ(OpenFailureReason(device + "9", true, ""), "there is no such device");
  EXPECT_EQ(OpenFailureReason(device, true, "Locked"), "another program is using it");
  EXPECT_EQ(OpenFailureReason(device, false, "Input/output error"), "Input/output error");

  chmod(path.constData(), 0);
  EXPECT_EQ(ReasonForOrdinaryUser(device), "you have no permission for it");
  if (geteuid() != 0) GTEST_SKIP() << "only root can give the device to another group";
  ASSERT_EQ(chown(path.constData(), 0, 20), 0);
  chmod(path.constData(), 0660);
  EXPECT_EQ(ReasonForOrdinaryUser(device),
            "you have no permission for it; members of the group \"dialout\" have");
}

}  // namespace
}  // namespace platform
