// Which device stands behind the n-th entry of a port list.
#pragma once

#include <QString>
#include <QStringList>

namespace platform {

class PortDirectory {
 public:
  virtual ~PortDirectory() = default;

  // The device that entry `number` (1..8) opens now, empty when there is none. Asked anew each
  // time, since adapters come and go.
  virtual QString DeviceFor(int number) const = 0;
};

// The machine's ports: the link /dev/comm<n> where it exists, otherwise the n-th of the machine's
// available serial ports in natural order (ttyUSB2 before ttyUSB10).
class MachinePorts : public PortDirectory {
 public:
  QString DeviceFor(int number) const override;
};

// The serial ports among the entries of /sys/class/tty, as device paths in
// natural order (runs of digits compare as numbers). Reads what the system says of them and opens
// none: opening a port just to list it would raise its control lines, and would leave out the ports
// that this user may not open.
QStringList LinuxPorts(const QString& sys_class_tty);

// Why a device could not be opened, in plain words: no such device, no serial port, no permission
// and the group that gives it, a lock and whose it is, or the system's own reason. `device` is its
// own name, not a link's. `system_reason` is used when nothing else fits; `busy` says that the
// system called it taken.
QString OpenFailureReason(const QString& device, bool busy, const QString& system_reason);

}  // namespace platform
