// "Real Emu": the board plays the current sequence from its own flash.
#pragma once

#include "edit/edited_sequence.h"
#include "link/connected_switch.h"
#include "link/serial_port.h"
#include "platform/controls/cw_button.h"

namespace pelmora {

class BoardPlayback {
 public:
  BoardPlayback(const EditedSequence& edited, SerialPort& serial_port, ConnectedSwitch& real_emu,
                platform::CWButton& button_emu_pc);

  // On: tells the board to play sequence `CurSeq`; "PC Emu" is locked meanwhile. Off: tells it to
  // stop.
  void CWButtonRealEmu_ValueChanged(bool on);

  void MSComm1_PortLost();

 private:
  const EditedSequence& edited_;
  SerialPort& serial_port_;
  ConnectedSwitch& real_emu_;
  platform::CWButton& button_emu_pc_;
};

}  // namespace pelmora
