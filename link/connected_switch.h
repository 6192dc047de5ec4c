// A two-state switch that works only while the port is open.
#pragma once

#include "link/serial_port.h"
#include "platform/controls/cw_button.h"

namespace pelmora {

class ConnectedSwitch {
 public:
  ConnectedSwitch(platform::CWButton& button, SerialPort& serial_port);

  // To be asked first by the switch's reaction. False when the reaction must not run: the port is
  // closed (the message has then been shown, once, and the switch stands Off), or the change is a
  // silent one.
  bool Accept();

  // Turns the switch Off without its reaction: the connection that it stood for is gone.
  void DropToOff();

  platform::CWButton& Button() { return button_; }
  SerialPort& Port() { return serial_port_; }

 private:
  platform::CWButton& button_;
  SerialPort& serial_port_;
  bool silent_ = false;
};

}  // namespace pelmora
