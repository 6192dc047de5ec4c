// The serial port that the operator chooses: opening it with the board's line settings, losing it,
// and the test for a connection that every board operation begins with.
#pragma once

#include "platform/drop_down_list.h"
#include "platform/message_box.h"
#include "platform/ms_comm.h"

namespace pelmora {

// Title of the messages about editing, the link and the flash.
inline constexpr char kProgramTitle[] = "Program";

// The receive buffer while no read is running, in bytes.
inline constexpr int kIdleBufferBytes = 20000;

class SerialPort {
 public:
  SerialPort(platform::MSComm& comm, platform::DropDownList& combo_port,
             platform::MessageBox& message_box);

  // The operator has chosen an entry: opens that port and locks the list. When it can't be opened,
  // a message says why and the list stays open for another choice.
  void ComboPort_Click();

  // The open port has failed: unlocks the list and says so.
  void MSComm1_PortLost();

  // "Connected" means that the port is open; the board itself is not asked.
  bool Connected() const { return comm_.PortOpen(); }

  // `Connected`; otherwise shows "No Connection Available!" first, but for a loss whose own message
  // is about to come.
  bool RequireConnection();

  // What waits is discarded; then one receive event and one byte for each received byte.
  void SetIdleReceive();

 private:
  bool SetupPort();

  platform::MSComm& comm_;
  platform::DropDownList& combo_port_;
  platform::MessageBox& message_box_;
};

}  // namespace pelmora
