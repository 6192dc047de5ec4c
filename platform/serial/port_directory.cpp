#include "platform/serial/port_directory.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/serial/port_lock.h"

namespace platform {
namespace {

// The group whose members may read and write the device, "" when there is none.
QString GroupWithAccess(const QString& device) {
  struct stat node {};
  if (stat(QFile::encodeName(device).constData(), &node) != 0) return QString();
  constexpr mode_t kReadWrite = S_IRGRP | S_IWGRP;
  if ((node.st_mode & kReadWrite) != kReadWrite) return QString();
  const struct group* entry = getgrgid(node.st_gid);
  return entry == nullptr ? QString() : QString::fromLocal8Bit(entry->gr_name);
}

bool IsTerminal(const QString& device) {
  const QByteArray path = QFile::encodeName(device);
  struct stat node {};
  if (stat(path.constData(), &node) != 0 || !S_ISCHR(node.st_mode)) return false;
  const int descriptor = open(path.constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  // A port that another program holds for itself can't be opened, and is one.
  if (descriptor < 0) return errno != ENXIO && errno != ENODEV;
  const bool terminal = isatty(descriptor) == 1;
  close(descriptor);
  return terminal;
}

QString LockReason(const QString& device) {
  const PortLock lock = LockOf(device);
  if (lock.file.isEmpty()) return "there is no folder in which its lock file can be written";
  QString why;
  if (lock.state == PortLock::State::kStale) {
    why = "was left by a program that has ended; ";
  } else if (lock.state == PortLock::State::kUnclear) {
    why = "doesn't say which program made it; when none is using the port, ";
  } else {
    return "another program is using it";
  }
  const QString who = lock.owner == "root" ? "root" : '"' + lock.owner + "\" or root";
  return "its lock file " + lock.file + ' ' + why + who + " may remove it";
}

}  // namespace

MachinePorts::MachinePorts(QString terminals, QString devices)
    : terminals_(std::move(terminals)), devices_(std::move(devices)) {}

QString MachinePorts::DeviceFor(int number) const {
  const QDir devices(devices_);
  const QFileInfo link(devices.filePath("comm" + QString::number(number)));
  if (link.isSymLink() || link.exists()) return link.filePath();
  const QString name = Names().value(number - 1);
  return name.isEmpty() ? QString() : devices.filePath(name);
}

// The names of the serial ports in natural order.
QStringList MachinePorts::Names() const {
  QStringList ports;
  const QDir folder(terminals_);
  for (const QString& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    if (!QFileInfo::exists(folder.filePath(name + "/device"))) continue;
    // Names are set aside for built-in ports that this machine does not have; their type is 0.
    QFile type(folder.filePath(name + "/type"));
    if (type.open(QIODevice::ReadOnly) && type.readAll().trimmed() == "0") continue;
    ports += name;
  }
  QCollator natural_order{QLocale(QLocale::English)};  // the C locale does not know numbers
  natural_order.setNumericMode(true);
  std::ranges::sort(ports, natural_order);
  return ports;
}

QString OpenFailureReason(const QString& device, bool busy, const QString& system_reason) {
  const QByteArray path = QFile::encodeName(device);
  if (access(path.constData(), F_OK) != 0) return "there is no such device";
  if (access(path.constData(), R_OK | W_OK) != 0) {
    const QString group = GroupWithAccess(device);
    const QString refused = "you have no permission for it";
    return group.isEmpty() ? refused : refused + "; members of the group \"" + group + "\" have";
  }
  if (!IsTerminal(device)) return "it is no serial port";
  return busy ? LockReason(device) : system_reason;
}

}  // namespace platform
