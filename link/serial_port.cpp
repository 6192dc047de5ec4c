#include "link/serial_port.h"

#include "core/declaration.h"

namespace pelmora {
namespace {

// The receive buffer: while no read is running, and for the whole reply of a full flash.
constexpr int kIdleBufferBytes = 20000;
constexpr int kReadBufferBytes = kHeaderBytes + kFlashCapacity;

// A code and a position for every channel.
constexpr int kPoseBytes = 2 * kChannels;

}  // namespace

SerialPort::SerialPort(platform::MSComm& comm, platform::DropDownList& combo_port,
                       platform::MessageBox& message_box)
    : comm_(comm), combo_port_(combo_port), message_box_(message_box) {}

void SerialPort::ComboPort_Click() {
  const int index = combo_port_.currentIndex();
  if (index < 0) return;
  if (comm_.PortOpen()) comm_.Close();
  comm_.SetCommPort(combo_port_.itemData(index).toInt());
  if (SetupPort()) {
    combo_port_.setEnabled(false);
    return;
  }
  const QString entry = combo_port_.itemText(index);
  combo_port_.setCurrentIndex(-1);
  const QString device =
      comm_.LastDevice().isEmpty() ? QString() : QStringLiteral(" (%1)").arg(comm_.LastDevice());
  message_box_.Show(
      QStringLiteral("%1%2 can't be opened: %3.").arg(entry, device, comm_.LastError()),
      kProgramTitle);
}

bool SerialPort::SetupPort() {
  comm_.SetInBufferSize(kIdleBufferBytes);
  comm_.SetSettings(QStringLiteral("9600,N,8,2"));
  if (!comm_.PortOpen() && !comm_.Open()) return false;
  SetIdleReceive();
  return true;
}

void SerialPort::SetIdleReceive() {
  SetReceive(kIdleBufferBytes, 1);
}

void SerialPort::SetReadReceive() {
  SetReceive(kReadBufferBytes, kHeaderBytes);
}

void SerialPort::SetReceive(int buffer_bytes, int event_bytes) {
  comm_.SetInputLen(0);
  comm_.Input();
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

void SerialPort::MSComm1_PortLost(bool reading) {
  const QString entry = combo_port_.currentText();
  combo_port_.setEnabled(true);
  combo_port_.setCurrentIndex(-1);
  message_box_.Show(
      QStringLiteral("The connection on %1 (%2) is lost: the adapter was pulled or the "
                     "line hung up.\n\n%3 Choose a port to connect again.")
          .arg(entry, comm_.LastDevice(),
               QLatin1String(reading ? "Your sequences were cleared when the read began; undo "
                                       "(Ctrl+Z) brings them back."
                                     : "Your sequences are untouched.")),
      kProgramTitle);
}

bool SerialPort::RequireConnection() {
  if (Connected()) return true;
  // A write that just failed: the loss has its own message.
  if (comm_.LossPending()) return false;
  message_box_.Show(QStringLiteral("No Connection Available!"), kProgramTitle);
  return false;
}

}  // namespace pelmora
