#include "platform/serial/ms_comm.h"

#include <QFileInfo>
#include <QSerialPort>
#include <algorithm>
#include <optional>

#include "platform/serial/port_lock.h"
#include "platform/serial/serial_line.h"

namespace platform {

MSComm::MSComm(const PortDirectory& ports, QObject* parent) : QObject(parent), ports_(ports) {}

MSComm::~MSComm() {
  Close();
}

void MSComm::SetCommPort(int number, const QString& device) {
  comm_port_ = number;
  shown_device_ = device;
}

bool MSComm::Open() {
  lost_.reset();
  error_.clear();
  device_ = ports_.DeviceFor(comm_port_);
  if (device_.isEmpty()) {
    error_ = "there is no serial port for this entry";
    return false;
  }
  if (!shown_device_.isEmpty() && device_ != shown_device_) {
    error_ = "it stood for " + shown_device_ + " when you opened the list";
    return false;
  }
  // A link and its target are one port, with one lock.
  const QString own_name = QFileInfo(device_).canonicalFilePath();
  const QString device = own_name.isEmpty() ? device_ : own_name;
  auto port = std::make_unique<QSerialPort>();
  port->setPortName(device);
  const std::optional<LineBacklog::Clock::duration> byte_time = ApplyLineSettings(*port, settings_);
  if (!byte_time) {
    error_ = "the line settings \"" + settings_ + "\" are not understood";
    return false;
  }
  RemoveStaleLock(device);
  if (!port->open(QIODevice::ReadWrite)) {
    error_ = OpenFailureReason(device, port->error() == QSerialPort::PermissionError,
                               port->errorString());
    return false;
  }
  port->clear(QSerialPort::Input);
  received_.clear();
  overrun_ = false;
  ++session_;
  backlog_ = LineBacklog(*byte_time);
  port_ = std::move(port);
  connect(port_.get(), &QSerialPort::readyRead, this, &MSComm::Receive);
  connect(port_.get(), &QSerialPort::errorOccurred, this, &MSComm::Fail);
  return true;
}

void MSComm::Close() {
  if (!port_) return;
  const std::unique_ptr<QSerialPort> port = std::move(port_);
  port->disconnect(this);
  DrainAndClose(*port, backlog_);
}

int MSComm::OutBufferCount() const {
  if (!port_) return 0;
  return std::max(backlog_.Bytes(LineBacklog::Clock::now()), UnsentBytes(*port_));
}

std::chrono::milliseconds MSComm::TimeUntilLeft(int bytes) const {
  return std::chrono::ceil<std::chrono::milliseconds>(std::max(0, OutBufferCount() - bytes) *
                                                      backlog_.ByteTime());
}

void MSComm::SetRThreshold(int bytes) {
  const bool changed = bytes != r_threshold_;
  r_threshold_ = bytes;
  // A handler that takes nothing and sets the same threshold again has to wait for the next byte.
  if (changed || delivering_ == 0) ScheduleDelivery();
}

QByteArray MSComm::Input() {
  QByteArray bytes = input_len_ > 0 ? received_.left(input_len_) : received_;
  received_.remove(0, bytes.size());
  taken_ += static_cast<quint64>(bytes.size());
  return bytes;
}

void MSComm::Fetch() {
  while (port_ && port_->waitForReadyRead(0)) continue;
}

void MSComm::ClearInBuffer() {
  Fetch();
  taken_ += static_cast<quint64>(received_.size());
  received_.clear();
}

void MSComm::Output(std::span<const std::uint8_t> bytes) {
  if (!port_ || bytes.empty()) return;
  backlog_.Write(static_cast<int>(bytes.size()), LineBacklog::Clock::now());
  port_->write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
  // A flush into a full queue counts as an error of the port; the rest leaves by itself instead.
  if (port_ && AcceptsBytes(*port_)) port_->flush();
}

void MSComm::Receive() {
  const QByteArray bytes = port_->readAll();
  const qsizetype free = std::max<qsizetype>(0, in_buffer_size_ - received_.size());
  received_.append(bytes.first(std::min(free, bytes.size())));
  if (bytes.size() > free) overrun_ = true;
  ScheduleDelivery();
}

bool MSComm::DeliveryDue() const {
  return overrun_ || (r_threshold_ > 0 && received_.size() >= r_threshold_);
}

// The handler of `OnComm` may wait for further bytes, and the port signals none as long as its own
// signal is being handled; so the handler runs from the event queue.
void MSComm::ScheduleDelivery() {
  if (delivery_scheduled_ || !port_ || !DeliveryDue()) return;
  delivery_scheduled_ = true;
  QMetaObject::invokeMethod(this, &MSComm::Deliver, Qt::QueuedConnection);
}

void MSComm::Deliver() {
  delivery_scheduled_ = false;
  ++delivering_;
  while ((port_ || lost_) && DeliveryDue()) {
    const bool overrun = std::exchange(overrun_, false);
    const quint64 taken_before = taken_;
    comm_event_ = overrun ? kCommEventRxOver : kCommEvReceive;
    emit OnComm();
    if (!overrun && taken_ == taken_before) break;
  }
  --delivering_;
}

// A line that is gone reports errors without end, and the port cannot be closed inside its own
// signal: it is put aside here and closed from the event queue.
void MSComm::Fail() {
  const auto error = port_->error();
  if (error == QSerialPort::NoError || error == QSerialPort::TimeoutError) return;
  port_->disconnect(this);
  lost_ = std::move(port_);
  const auto drop = [this] {
    lost_.reset();
    emit PortLost();
  };
  QMetaObject::invokeMethod(this, drop, Qt::QueuedConnection);
}

}  // namespace platform
