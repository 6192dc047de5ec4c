#include "platform/serial/serial_line.h"

#include <linux/serial.h>
#include <poll.h>
#include <sys/ioctl.h>

#include <QRegularExpression>
#include <QSerialPort>
#include <QStringList>
#include <QThread>
#include <chrono>

namespace platform {
namespace {

constexpr std::chrono::milliseconds kPatience{1000};  // without a byte leaving
constexpr int kTurnMilliseconds = 2;

}  // namespace

int UnsentBytes(const QSerialPort& port) {
  int queued = 0;
  if (ioctl(port.handle(), TIOCOUTQ, &queued) != 0) queued = 0;
  unsigned int transmitter = TIOCSER_TEMT;
  ioctl(port.handle(), TIOCSERGETLSR, &transmitter);
  if (queued == 0 && (transmitter & TIOCSER_TEMT) == 0) queued = 1;
  return static_cast<int>(port.bytesToWrite()) + queued;
}

std::optional<LineBacklog::Clock::duration> ApplyLineSettings(QSerialPort& port,
                                                              const QString& settings) {
  static const QRegularExpression form("^([1-9][0-9]{0,7}),([NEO]),([5-8]),([12])$");
  const QStringList fields = form.match(settings).capturedTexts();
  if (fields.isEmpty()) return std::nullopt;
  const int baud = fields[1].toInt();
  const QString& parity = fields[2];
  const int data_bits = fields[3].toInt();
  const int stop_bits = fields[4].toInt();
  port.setBaudRate(baud);
  port.setParity(parity == "N"   ? QSerialPort::NoParity
                 : parity == "E" ? QSerialPort::EvenParity
                                 : QSerialPort::OddParity);
  port.setDataBits(static_cast<QSerialPort::DataBits>(data_bits));
  port.setStopBits(static_cast<QSerialPort::StopBits>(stop_bits));
  port.setFlowControl(QSerialPort::NoFlowControl);
  const int bits = 1 + data_bits + (parity == "N" ? 0 : 1) + stop_bits;
  return std::chrono::nanoseconds(std::chrono::seconds(bits)) / baud;
}

bool AcceptsBytes(QSerialPort& port) {
  pollfd line{port.handle(), POLLOUT, 0};
  return poll(&line, 1, 0) == 1 && (line.revents & POLLOUT) != 0;
}

// `close()` drops unwritten bytes and restores the old line settings at once, garbling bytes still
// being sent. Drain first.
void DrainAndClose(QSerialPort& port, const LineBacklog& backlog) {
  using Clock = LineBacklog::Clock;
  int unsent = UnsentBytes(port);
  Clock::time_point last_left = Clock::now();
  while (true) {
    const Clock::time_point now = Clock::now();
    const int left = UnsentBytes(port);
    const int on_the_line = backlog.Bytes(now);
    if (left == 0 && on_the_line == 0) break;
    if (left < unsent || on_the_line > 0) last_left = now;
    if (now - last_left > kPatience) break;
    unsent = left;
    if (port.bytesToWrite() == 0) {
      QThread::msleep(kTurnMilliseconds);
    } else if (!port.waitForBytesWritten(kTurnMilliseconds) &&
               port.error() != QSerialPort::TimeoutError) {
      break;
    }
  }
  // The system itself would wait for a stuck line when the port is closed.
  if (UnsentBytes(port) > 0) port.clear(QSerialPort::Output);
  port.close();
}

}  // namespace platform
