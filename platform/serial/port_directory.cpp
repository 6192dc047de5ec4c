#include "platform/serial/port_directory.h"

#include <fcntl.h>
#include <unistd.h>

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>

#include "platform/serial/port_lock.h"

namespace platform {
namespace {

bool IsTerminal(const QString& device) {
  const int descriptor =
      open(QFile::encodeName(device).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  // A port that another program holds for itself can't be opened, and is one.
  if (descriptor < 0) return errno != ENXIO && errno != ENODEV && errno != EISDIR;
  const bool terminal = isatty(descriptor) == 1;
  close(descriptor);
  return terminal;
}

QString LockReason(const QString& device) {
  const PortLock lock = LockOf(device);
  if (lock.file.isEmpty()) return "there is no folder in which its lock file can be written";
  const bool stale = lock.state == PortLock::State::kStale;
  if (!stale && lock.state != PortLock::State::kUnclear) return "another program is using it";
  const QString why = stale ? "was left by a program that has ended; "
                            : "doesn't say which program made it; when none is using the port, ";
  const QString who = lock.owner == "root" ? "root" : '"' + lock.owner + "\" or root";
  return "its lock file " + lock.file + ' ' + why + who + " may remove it";
}

}  // namespace

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
  const QFileInfo node(device);
  if (!node.exists()) return "there is no such device";
  if (!node.isReadable() || !node.isWritable()) {
    const bool shared = node.permission(QFile::ReadGroup | QFile::WriteGroup);
    const QString group = shared ? node.group() : QString();
    const QString refused = "you have no permission for it";
    return group.isEmpty() ? refused : refused + "; members of the group \"" + group + "\" have";
  }
  if (!IsTerminal(device)) return "it is no serial port";
  return busy ? LockReason(device) : system_reason;
}

}  // namespace platform
