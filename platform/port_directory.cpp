#include "platform/port_directory.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace platform {
namespace {

QStringList NaturalOrder(QStringList names) {
  QCollator collator{QLocale(QLocale::English)};  // the C locale does not know numbers
  collator.setNumericMode(true);
  std::ranges::sort(names,
                    [&](const QString& a, const QString& b) { return collator.compare(a, b) < 0; });
  return names;
}

// The group whose members may read and write the device, "" when there is none.
QString GroupWithAccess(const QString& device) {
  struct stat node {};
  if (stat(QFile::encodeName(device).constData(), &node) != 0) return QString();
  constexpr mode_t kReadWrite = S_IRGRP | S_IWGRP;
  if ((node.st_mode & kReadWrite) != kReadWrite) return QString();
  const struct group* entry = getgrgid(node.st_gid);
  return entry == nullptr ? QString() : QString::fromLocal8Bit(entry->gr_name);
}

}  // namespace

QString MachinePorts::DeviceFor(int number) const {
  const QFileInfo link("/dev/comm" + QString::number(number));
  if (link.isSymLink() || link.exists()) return link.filePath();
  return LinuxPorts("/sys/class/tty").value(number - 1);
}

QStringList LinuxPorts(const QString& sys_class_tty) {
  QStringList devices;
  const QDir folder(sys_class_tty);
  for (const QString& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    if (!QFileInfo::exists(folder.filePath(name + "/device"))) continue;
    // Names are set aside for built-in ports that this machine does not have; their type is 0.
    QFile type(folder.filePath(name + "/type"));
    if (type.open(QIODevice::ReadOnly) && type.readAll().trimmed() == "0") continue;
    devices += "/dev/" + name;
  }
  return NaturalOrder(devices);
}

QString OpenFailureReason(const QString& device, bool busy, const QString& system_reason) {
  const QByteArray path = QFile::encodeName(device);
  if (access(path.constData(), F_OK) != 0) return "there is no such device";
  if (access(path.constData(), R_OK | W_OK) != 0) {
    const QString group = GroupWithAccess(device);
    const QString refused = "you have no permission for it";
    return group.isEmpty() ? refused : refused + "; members of the group \"" + group + "\" have";
  }
  if (busy) return "another program is using it";
  return system_reason;
}

}  // namespace platform
