#include "link/serial_port.h"

#include "core/declaration.h"

namespace pelmora {
namespace {

// The receive buffer: while no reply is awaited, and for the longest one, that of a full flash.
constexpr int kIdleBufferBytes = 20000;
constexpr int kReplyBufferBytes = kHeaderBytes + kFlashCapacity;

// A code and a position for every channel.
constexpr int kPoseBytes = 2 * kChannels;

}  // namespace

QString SerialPort::EntryName(int number) {
  return QStringLiteral("Comm%1").arg(number);
}

void SerialPort::ComboPort_Click(int number, const QString& device) {
  if (comm_.PortOpen()) comm_.Close();
  comm_.SetCommPort(number, device);
  number_ = number;
  const bool opened = SetupPort();
  emit Changed();
  if (opened) return;
  const QString tried =
      comm_.LastDevice().isEmpty() ? QString() : QStringLiteral(" (%1)").arg(comm_.LastDevice());
  message_box_.Show(
      QStringLiteral("%1%2 can't be opened: %3.").arg(EntryName(number), tried, comm_.LastError()),
      kProgramTitle);
}

bool SerialPort::SetupPort() {
  comm_.SetInBufferSize(kIdleBufferBytes);
  comm_.SetSettings(QStringLiteral("9600,N,8,2"));
  if (!comm_.Open()) return false;
  comm_.ClearInBuffer();
  SetIdleReceive();
  return true;
}

void SerialPort::SetIdleReceive() {
  SetReceive(kIdleBufferBytes, 1);
}

void SerialPort::SetReplyReceive(int bytes) {
  SetReceive(kReplyBufferBytes, bytes);
}

void SerialPort::SetReceive(int buffer_bytes, int event_bytes) {
  comm_.SetInBufferSize(buffer_bytes);
  comm_.SetInputLen(event_bytes);
  comm_.SetRThreshold(event_bytes);
}

void SerialPort::PollReceive() {
  comm_.SetRThreshold(0);
  comm_.SetInputLen(0);
}

void SerialPort::Send(std::span<const std::uint8_t> bytes) {
  for (const std::uint8_t byte : bytes) {
    if (!comm_.PortOpen()) return;
    TxBuffer[0] = byte;
    comm_.Output(TxBuffer);
    ++bytes_sent_;
  }
}

std::chrono::milliseconds SerialPort::TimeUntilReady() const {
  return comm_.TimeUntilLeft(kPoseBytes);
}

void SerialPort::MSComm1_PortLost(bool emptied) {
  emit Changed();
  message_box_.Show(
      QStringLiteral("The connection on %1 (%2) is lost: the adapter was pulled or the "
                     "line hung up.\n\n%3 Choose a port to connect again.")
          .arg(EntryName(number_), comm_.LastDevice(),
               QLatin1String(emptied ? "Your sequences were cleared when the read began; undo "
                                       "(Ctrl+Z) brings them back."
                                     : "Your sequences are untouched.")),
      kProgramTitle, {.by_itself = true});
}

bool SerialPort::RequireConnection() const {
  if (Connected()) return true;
  // A write that just failed: the loss has its own message.
  if (comm_.LossPending()) return false;
  message_box_.Show(QStringLiteral("No Connection Available!"), kProgramTitle);
  return false;
}

}  // namespace pelmora
