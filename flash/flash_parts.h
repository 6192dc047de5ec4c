// What the three flash operations work on.
#pragma once

#include "core/declaration.h"
#include "link/board_protocol.h"
#include "link/board_wait.h"
#include "link/serial_port.h"
#include "platform/events.h"
#include "platform/message_box.h"
#include "platform/ms_comm.h"
#include "platform/progress_bar.h"
#include "platform/push_button.h"
#include "platform/text_field.h"

namespace pelmora {

inline constexpr char kAbortedText[] = "Operation Aborted!";

struct FlashParts {
  Declaration& data;
  platform::MSComm& comm;
  platform::Events& events;
  platform::MessageBox& message_box;
  SerialPort& serial_port;
  BoardProtocol& board;
  platform::TextField& Echo;
  platform::ProgressBar& ProgressBarFlash;  // visible while a transfer runs
  platform::PushButton& Command1;           // "Abort": enabled while a transfer runs

  // The waits of an operation that begins now.
  BoardWait BeginWait() const { return {data, comm, events}; }
  void Say(const QString& text) const { message_box.Show(text, kProgramTitle); }
};

}  // namespace pelmora
