// Which device stands behind the n-th entry of a port list.
#pragma once

#include <QString>
#include <QStringList>
#include <utility>

namespace platform {

class PortDirectory {
 public:
  virtual ~PortDirectory() = default;

  // The device that entry `number` (1..8) opens now, empty when there is none. Asked anew each
  // time, since adapters come and go.
  virtual QString DeviceFor(int number) const = 0;
};

// The machine's ports: the link /dev/comm<n> where it exists, otherwise the n-th of the machine's
// available serial ports in natural order (ttyUSB2 before ttyUSB10). Reads what the system says of
// them and opens none: opening a port just to list it would raise its control lines, and would
// leave out the ports that this user may not open.
class MachinePorts : public PortDirectory {
 public:
  // The folder in which the system lists its terminals, and the one with their devices.
  explicit MachinePorts(QString terminals = QStringLiteral("/sys/class/tty"),
                        QString devices = QStringLiteral("/dev"))
      : terminals_(std::move(terminals)), devices_(std::move(devices)) {}

  QString DeviceFor(int number) const override;

 private:
  QStringList Names() const;

  const QString terminals_;
  const QString devices_;
};

// Why a device could not be opened, in plain words: no such device, no serial port, no permission
// and the group that gives it, a lock and whose it is, or the system's own reason. `device` is its
// own name, not a link's. `system_reason` is used when nothing else fits; `busy` says that the
// system called it taken.
QString OpenFailureReason(const QString& device, bool busy, const QString& system_reason);

}  // namespace platform
