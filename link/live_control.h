// Moving the servos live, the "PC Control Enable" switch and the menu "Reset".
#pragma once

#include "link/connected_switch.h"
#include "link/serial_port.h"
#include "platform/controls/cw_button.h"

namespace pelmora {

class LiveControl {
 public:
  LiveControl(SerialPort& serial_port, ConnectedSwitch& main_on_off,
              platform::CWButton& button_real_emu, platform::CWButton& button_emu_pc);

  // Sends a channel's (0..11) position byte (0..255) if the port is open. The first thing that a
  // slider's reaction does.
  void SendPosition(int channel, int position);

  void CWButtonMainOnOff_ValueChanged(bool on);

  // Tells the board to enter PC control, if the port is open.
  void CommandStart_Click();
  // Tells the board to leave PC control, if the port is open, whatever the switch says. Shutdown
  // calls it too.
  void CommandStop_Click();

  // Menu "Reset": resets the board, then turns all three switches Off; those that were On send
  // their own commands.
  void Resetting_Click();

  void MSComm1_PortLost();

 private:
  SerialPort& serial_port_;
  ConnectedSwitch& main_on_off_;
  platform::CWButton& button_real_emu_;
  platform::CWButton& button_emu_pc_;
};

}  // namespace pelmora
