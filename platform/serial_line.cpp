#include "platform/serial_line.h"

#include <linux/serial.h>
#include <poll.h>
#include <sys/ioctl.h>

#include <QDeadlineTimer>
#include <QSerialPort>
#include <QStringList>
#include <QThread>
#include <algorithm>

namespace platform {
namespace {

constexpr int kDrainMilliseconds = 1000;
constexpr int kTurnMilliseconds = 2;

// True while the operating system or the transmitter still holds bytes of the port.
bool Sending(QSerialPort& port) {
  int queued = 0;
  if (ioctl(port.handle(), TIOCOUTQ, &queued) != 0) return false;
  if (queued > 0) return true;
  unsigned int transmitter = 0;
  if (ioctl(port.handle(), TIOCSERGETLSR, &transmitter) == 0) {
    return (transmitter & TIOCSER_TEMT) == 0;
  }
  return false;
}

}  // namespace

bool ApplyLineSettings(QSerialPort& port, const QString& settings) {
  const QStringList fields = settings.split(',');
  if (fields.size() != 4) return false;
  const int baud = fields[0].trimmed().toInt();
  const QString parity = fields[1].trimmed().toUpper();
  const int data_bits = fields[2].trimmed().toInt();
  const int stop_bits = fields[3].trimmed().toInt();
  if (baud <= 0 || data_bits < 5 || data_bits > 8 || (stop_bits != 1 && stop_bits != 2)) {
    return false;
  }
  if (parity != "N" && parity != "E" && parity != "O") return false;
  port.setBaudRate(baud);
  port.setParity(parity == "N"   ? QSerialPort::NoParity
                 : parity == "E" ? QSerialPort::EvenParity
                                 : QSerialPort::OddParity);
  port.setDataBits(static_cast<QSerialPort::DataBits>(data_bits));
  port.setStopBits(static_cast<QSerialPort::StopBits>(stop_bits));
  port.setFlowControl(QSerialPort::NoFlowControl);
  return true;
}

bool AcceptsBytes(QSerialPort& port) {
  pollfd line{port.handle(), POLLOUT, 0};
  return poll(&line, 1, 0) == 1 && (line.revents & POLLOUT) != 0;
}

// `close()` drops unwritten bytes and restores the old line settings at once, garbling bytes still
// being sent. Drain first.
void DrainAndClose(QSerialPort& port) {
  const QDeadlineTimer deadline(kDrainMilliseconds);
  while (port.bytesToWrite() > 0 && !deadline.hasExpired()) {
    const int turn = static_cast<int>(std::clamp<qint64>(deadline.remainingTime(), 1, 50));
    if (!port.waitForBytesWritten(turn) && port.error() != QSerialPort::TimeoutError) break;
  }
  bool sending = Sending(port);
  while (sending && !deadline.hasExpired()) {
    QThread::msleep(kTurnMilliseconds);
    sending = Sending(port);
  }
  // The system itself would wait for a stuck line when the port is closed.
  if (sending) port.clear(QSerialPort::Output);
  port.close();
}

}  // namespace platform
