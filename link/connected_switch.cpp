#include "link/connected_switch.h"

namespace pelmora {

ConnectedSwitch::ConnectedSwitch(platform::CWButton& button, SerialPort& serial_port)
    : button_(button), serial_port_(serial_port) {}

bool ConnectedSwitch::Accept() {
  if (silent_) return false;
  if (serial_port_.RequireConnection()) return true;
  DropToOff();
  return false;
}

void ConnectedSwitch::DropToOff() {
  silent_ = true;
  button_.setChecked(false);
  silent_ = false;
}

}  // namespace pelmora
