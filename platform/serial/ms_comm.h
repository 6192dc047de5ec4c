// The serial port control: numbered port, line settings, a receive buffer with a threshold event,
// and output that leaves at once. Everything runs on the user-interface thread.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <chrono>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/serial/line_backlog.h"
#include "platform/serial/port_directory.h"

class QSerialPort;

namespace platform {

// Values of `CommEvent`.
inline constexpr int kCommEvReceive = 2;       // bytes have been received
inline constexpr int kCommEventRxOver = 1008;  // the receive buffer was full; bytes were dropped

class MSComm : public QObject {
  Q_OBJECT
 public:
  explicit MSComm(const PortDirectory& ports, QObject* parent = nullptr);
  ~MSComm() override;

  // The port that `Open` opens, and the device that it has been shown to stand for: another one is
  // not opened. Empty: any.
  void SetCommPort(int number, const QString& device = {});

  // Baud rate, parity (N, E, O), data bits, stop bits: "9600,N,8,2". Takes effect when the port is
  // opened. Flow control is always off.
  void SetSettings(const QString& settings) { settings_ = settings; }

  bool PortOpen() const { return port_ != nullptr; }

  // The port has failed and is closed, but its `PortLost` is still to come.
  bool LossPending() const { return lost_ != nullptr; }

  // Opens the port set by `SetCommPort`, while none is open, and discards what was waiting in it.
  // False when that fails; `LastError` then has the reason and `LastDevice` the device ("" when
  // there is none).
  [[nodiscard]] bool Open();
  // Waits until what was written has left, then closes; gives up when no byte has left for a
  // second. No `PortLost`.
  void Close();

  QString LastDevice() const { return device_; }
  QString LastError() const { return error_; }

  // Counts the openings of this run, so that a wait can tell that its connection is gone even if
  // another one has been opened since.
  int Session() const { return session_; }

  // Bytes that the receive buffer holds at the most; what arrives beyond is dropped and reported
  // by `kCommEventRxOver`.
  void SetInBufferSize(int bytes) { in_buffer_size_ = bytes; }

  // How many bytes `Input` takes at the most; 0 = all.
  void SetInputLen(int bytes) { input_len_ = bytes; }

  // `OnComm` comes while at least this many bytes wait; 0 = never. With 1 and a handler that takes
  // one byte at a time, a burst of bytes gives one event for each byte.
  void SetRThreshold(int bytes);

  // Takes bytes out of the receive buffer, at most `InputLen`, or all when that is 0.
  [[nodiscard]] QByteArray Input();

  // Takes over what has arrived at the system already. Otherwise that comes with the next events,
  // and what is thrown away before them survives.
  void Fetch();

  // Bytes waiting in the receive buffer. They stay readable after the port has been closed or
  // lost, until it is opened again.
  int InBufferCount() const { return static_cast<int>(received_.size()); }
  // Throws the waiting bytes away, those that the system holds included.
  void ClearInBuffer();

  // Hands the bytes to the operating system before it returns, behind those written earlier; what
  // the system does not take at once follows by itself. Nothing happens when the port is closed.
  void Output(std::span<const std::uint8_t> bytes);

  // Bytes written that have not left yet: those queued here, those that the system holds, and those
  // that the line can't have carried yet by its speed. 0 when the port is closed.
  int OutBufferCount() const;
  // How long it takes until at most `bytes` have not left yet.
  std::chrono::milliseconds TimeUntilLeft(int bytes) const;

  // The reason of the `OnComm` being handled.
  int CommEvent() const { return comm_event_; }

 signals:
  void OnComm();
  // The open port failed (an adapter was pulled). The port is closed already; comes once for each
  // loss.
  void PortLost();

 private:
  void Receive();
  bool DeliveryDue() const;
  void ScheduleDelivery();
  void Deliver();
  void Fail();

  const PortDirectory& ports_;
  std::unique_ptr<QSerialPort> port_;  // null unless open
  std::unique_ptr<QSerialPort> lost_;  // failed, waiting to be closed
  LineBacklog backlog_;
  QByteArray received_;
  QString settings_;
  QString device_;
  QString error_;
  int comm_port_ = 1;
  QString shown_device_;
  int in_buffer_size_ = 1024;
  int input_len_ = 0;
  int r_threshold_ = 0;
  int comm_event_ = 0;
  int session_ = 0;
  quint64 taken_ = 0;     // bytes taken out of the receive buffer so far
  int delivering_ = 0;    // deliveries under way, one inside the other
  bool overrun_ = false;  // bytes were dropped and this has not been reported yet
  bool delivery_scheduled_ = false;
};

}  // namespace platform
