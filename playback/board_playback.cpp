#include "playback/board_playback.h"

#include "core/board_codec.h"

namespace pelmora {

BoardPlayback::BoardPlayback(const EditedSequence& edited, SerialPort& serial_port,
                             ConnectedSwitch& real_emu, platform::CWButton& button_emu_pc)
    : edited_(edited),
      serial_port_(serial_port),
      real_emu_(real_emu),
      button_emu_pc_(button_emu_pc) {}

void BoardPlayback::CWButtonRealEmu_ValueChanged(bool on) {
  if (!real_emu_.Accept()) return;
  button_emu_pc_.setEnabled(!on);
  if (on) {
    serial_port_.Send(PlayCommand(edited_.Data().CurSeq));
  } else {
    real_emu_.Button().setEnabled(true);
    serial_port_.Send(StopCommand());
  }
}

void BoardPlayback::MSComm1_PortLost() {
  real_emu_.DropToOff();
  button_emu_pc_.setEnabled(true);
}

}  // namespace pelmora
