#include "link/live_control.h"

#include "core/board_codec.h"

namespace pelmora {

LiveControl::LiveControl(SerialPort& serial_port, ConnectedSwitch& main_on_off,
                         platform::CWButton& button_real_emu, platform::CWButton& button_emu_pc)
    : serial_port_(serial_port),
      main_on_off_(main_on_off),
      button_real_emu_(button_real_emu),
      button_emu_pc_(button_emu_pc) {}

void LiveControl::SendPosition(int channel, int position) {
  serial_port_.Send(PositionCommand(channel, position));
}

void LiveControl::CWButtonMainOnOff_ValueChanged(bool on) {
  if (!main_on_off_.Accept()) return;
  if (on) {
    CommandStart_Click();
  } else {
    CommandStop_Click();
  }
}

void LiveControl::CommandStart_Click() {
  serial_port_.Send(PcControlOnCommand());
}

void LiveControl::CommandStop_Click() {
  serial_port_.Send(PcControlOffCommand());
}

void LiveControl::Resetting_Click() {
  serial_port_.Send(ResetCommand());
  main_on_off_.Button().setChecked(false);
  button_real_emu_.setChecked(false);
  button_emu_pc_.setChecked(false);
}

void LiveControl::MSComm1_PortLost() {
  main_on_off_.DropToOff();
}

}  // namespace pelmora
