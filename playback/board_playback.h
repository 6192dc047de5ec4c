// "Real Emu": the board plays the current sequence from its own flash.
#pragma once

#include "core/declaration.h"
#include "link/board_protocol.h"
#include "link/connected_switch.h"
#include "platform/cw_button.h"

namespace pelmora {

class BoardPlayback {
 public:
  BoardPlayback(const Declaration& data, BoardProtocol& board, ConnectedSwitch& real_emu,
                platform::CWButton& button_emu_pc);

  // On: tells the board to play sequence `CurSeq`; "PC Emu" is locked meanwhile. Off: tells it to
  // stop.
  void CWButtonRealEmu_ValueChanged(bool on);

  void MSComm1_PortLost();

 private:
  const Declaration& data_;
  BoardProtocol& board_;
  ConnectedSwitch& real_emu_;
  platform::CWButton& button_emu_pc_;
};

}  // namespace pelmora
