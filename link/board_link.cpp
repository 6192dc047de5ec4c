#include "link/board_link.h"

#include "link/reply_operation.h"

namespace pelmora {

BoardLink::BoardLink(platform::MSComm& comm, SerialPort& serial_port, DebugPanel& debug_panel,
                     platform::MainLoop& main_loop, platform::MessageBox& message_box)
    : comm_(comm),
      serial_port_(serial_port),
      debug_panel_(debug_panel),
      main_loop_(main_loop),
      message_box_(message_box) {}

void BoardLink::MSComm1_OnComm() {
  if (comm_.CommEvent() != platform::kCommEvReceive) return;
  const QByteArray input = comm_.Input();
  if (input.isEmpty()) return;
  if (TakesAcknowledgements()) {
    ++answers_;
    if (IsAcknowledgement(Bytes(input))) {
      ack_received_ = true;
    } else {
      debug_panel_.SetEcho(kErrorWord);
    }
  } else if (reply_operation_ != nullptr) {
    if (reply_operation_->TakeReply(Bytes(input))) ack_received_ = true;
  } else {
    debug_panel_.SetEcho(QString::number(Bytes(input)[0]));
  }
}

void BoardLink::Command1_Click() {
  abort_request_ = true;
  emit AbortOffered(false);
}

std::span<const std::uint8_t> BoardLink::Bytes(const QByteArray& bytes) {
  return {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
          static_cast<std::size_t>(bytes.size())};
}

void BoardLink::Set(Mode mode, bool on) {
  modes_[static_cast<std::size_t>(mode)] = on;
  emit ModeChanged();
}

}  // namespace pelmora
