// The serial port that the operator chooses: opening it with the board's line settings, losing it,
// the test for a connection that every board operation begins with, and the bytes sent over it.
#pragma once

#include <QObject>
#include <array>
#include <chrono>
#include <cstdint>
#include <span>

#include "platform/serial/ms_comm.h"
#include "platform/system/message_box.h"

namespace pelmora {

// Title of the messages about editing, the link and the flash.
inline constexpr char kProgramTitle[] = "Program";

class SerialPort : public QObject {
  Q_OBJECT
 public:
  SerialPort(platform::MSComm& comm, platform::MessageBox& message_box)
      : comm_(comm), message_box_(message_box) {}

  // The caption of an entry (1..8) of the list of ports.
  static QString EntryName(int number);

  // The operator has chosen an entry (1..8) that was shown to stand for `device`: opens that port,
  // but no other device than that one, unless it is empty. When it can't be opened, a message says
  // why.
  void ComboPort_Click(int number, const QString& device = {});

  // The open port has failed: says so. `emptied`: a read had begun, which has emptied the
  // sequences.
  void MSComm1_PortLost(bool emptied);

  // "Connected" means that the port is open; the board itself is not asked.
  bool Connected() const { return comm_.PortOpen(); }

  // True when a port is open. Otherwise false, with "No Connection Available!", unless a loss is
  // about to be reported.
  [[nodiscard]] bool RequireConnection() const;

  // The program ends: closes the port once the bytes sent have left. Nothing is announced.
  void Close() { comm_.Close(); }

  // Writes the bytes of a command, each as its own write, if the port is open; otherwise nothing
  // happens.
  void Send(std::span<const std::uint8_t> bytes);

  // How many bytes have been sent in this run. An operation tells by it whether others have sent
  // bytes meanwhile.
  std::uint64_t BytesSent() const { return bytes_sent_; }

  // How long the line needs until no more than one pose (a position of every channel) has not left
  // yet; 0 when it is ready for the next one. Playback and dragged sliders wait for that, so that
  // the board never goes on for long after the operator has stopped.
  std::chrono::milliseconds TimeUntilReady() const;

 signals:
  // `Connected` is true now, or a choice has failed, or the port has been lost. Comes before the
  // message.
  void Changed();

 private:
  friend class ReplyOperation;
  friend class ReadOperation;

  bool SetupPort();

  // The receive settings, which an operation changes for as long as it runs.
  // While no operation waits for a reply: one receive event and one byte for each received byte.
  void SetIdleReceive();
  // For a reply: an event takes so many bytes, and there is room for all that follows them.
  void SetReplyReceive(int bytes);
  // From now on no receive event comes and the next `Input` takes everything that has arrived.
  void PollReceive();
  void SetReceive(int buffer_bytes, int event_bytes);

  platform::MSComm& comm_;
  platform::MessageBox& message_box_;
  std::array<std::uint8_t, 1> TxBuffer{};  // the one byte being written
  std::uint64_t bytes_sent_ = 0;
  int number_ = 0;  // of the entry chosen last
};

}  // namespace pelmora
