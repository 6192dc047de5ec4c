// The bytes spoken with the board: sending them, and the receive handler. docs/protocol.md
// describes the protocol for people who write firmware.
#pragma once

#include <cstdint>

#include "core/declaration.h"
#include "platform/events.h"
#include "platform/message_box.h"
#include "platform/ms_comm.h"
#include "platform/progress_bar.h"
#include "platform/text_field.h"

namespace pelmora {

// Command codes, PC to board. Parameters follow as further bytes.
enum class Command : std::uint8_t {
  kPcControlOff = 0,
  kPcControlOn = 1,
  kProgram = 2,  // then the 66-byte header and, acknowledged, the step data
  kPlay = 3,     // then the sequence number
  kStop = 4,
  kRead = 6,  // answered by the header and the step data
  kErase = 7,
  kPosition = 8,  // + channel for 0..7; then the position byte
  kReset = 17,
  kPositionHigh = 32,  // + channel for 8..11; then the position byte
};

// Status words that the receive handler shows in `Echo`; a read looks for the second.
inline constexpr char kErrorWord[] = "Error!";
inline constexpr char kOverflowWord[] = "Overflow!";

// What the board sends when it has done a part of its work.
inline constexpr std::uint8_t kAcknowledgement = 255;

class BoardProtocol {
 public:
  BoardProtocol(Declaration& data, platform::MSComm& comm, platform::Events& events,
                platform::MessageBox& message_box, platform::TextField& echo,
                platform::ProgressBar& progress_bar_flash);

  // Writes one byte, as its own write, if the port is open; otherwise nothing happens.
  void Send(std::uint8_t byte);
  void Send(Command command) { Send(static_cast<std::uint8_t>(command)); }

  // The serial control's event. Decides by the mode flags what the received bytes are: an
  // acknowledgement (erase, program), a read reply, or a byte to show in `Echo`. While a read
  // reply's step data arrives it waits inside, processing events.
  void MSComm1_OnComm();

 private:
  void TakeAcknowledgement();
  void TakeReadReply();
  bool CollectStepData();

  Declaration& data_;
  platform::MSComm& comm_;
  platform::Events& events_;
  platform::MessageBox& message_box_;
  platform::TextField& echo_;
  platform::ProgressBar& progress_bar_flash_;
};

}  // namespace pelmora
