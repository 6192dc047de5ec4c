#include "platform/serial/port_lock.h"

#include <signal.h>

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <cerrno>

namespace platform {
namespace {

// The folders in which the toolkit's port looks for a place, in its order.
QString LockFileOf(const QString& device) {
  const QString name = "/LCK.." + QString(device).remove(QStringLiteral("/dev/")).replace('/', '_');
  for (const char* folder :
       {"/var/lock", "/etc/locks", "/var/spool/locks", "/var/spool/uucp", "/tmp", "/var/tmp"}) {
    const QFileInfo info{QString::fromLatin1(folder)};
    QString file = info.filePath() + name;
    if (info.isReadable() && (QFile::exists(file) || info.isWritable())) return file;
  }
  return QString();
}

QString ProgramOf(qint64 process) {
  QFile name(QStringLiteral("/proc/%1/comm").arg(process));
  return name.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(name.readAll().trimmed())
                                        : QString();
}

// The first line is the process, the second, if any, the name of its program.
PortLock::State StateOf(const QStringList& lines) {
  bool number = false;
  const qint64 process = lines.value(0).trimmed().toLongLong(&number);
  if (!number || process <= 0) return PortLock::State::kUnclear;
  if (kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH) return PortLock::State::kStale;
  // The number may have been given to another program since. The system cuts long names.
  const QString maker = lines.value(1).trimmed();
  const QString runs = ProgramOf(process);
  const bool other = !maker.isEmpty() && !runs.isEmpty() && !maker.startsWith(runs);
  return other ? PortLock::State::kStale : PortLock::State::kHeld;
}

}  // namespace

PortLock LockOf(const QString& device) {
  PortLock lock;
  lock.file = LockFileOf(device);
  QFile file(lock.file);
  if (lock.file.isEmpty() || !file.exists()) return lock;
  lock.owner = QFileInfo(file).owner();
  lock.state = PortLock::State::kUnclear;
  if (file.open(QIODevice::ReadOnly)) {
    lock.state = StateOf(QString::fromLocal8Bit(file.read(1000)).split('\n'));
  }
  return lock;
}

void RemoveStaleLock(const QString& device) {
  const PortLock lock = LockOf(device);
  if (lock.state == PortLock::State::kStale) QFile::remove(lock.file);
}

}  // namespace platform
