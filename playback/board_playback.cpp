#include "playback/board_playback.h"

namespace pelmora {

BoardPlayback::BoardPlayback(const Declaration& data, BoardProtocol& board,
                             ConnectedSwitch& real_emu, platform::CWButton& button_emu_pc)
    : data_(data), board_(board), real_emu_(real_emu), button_emu_pc_(button_emu_pc) {}

void BoardPlayback::CWButtonRealEmu_ValueChanged(bool on) {
  if (!real_emu_.Accept()) return;
  button_emu_pc_.setEnabled(!on);
  if (on) {
    board_.Send(Command::kPlay);
    board_.Send(data_.CurSeq);
  } else {
    real_emu_.Button().setEnabled(true);
    board_.Send(Command::kStop);
  }
}

void BoardPlayback::MSComm1_PortLost() {
  real_emu_.DropToOff();
  button_emu_pc_.setEnabled(true);
}

}  // namespace pelmora
