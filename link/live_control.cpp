#include "link/live_control.h"

namespace pelmora {
namespace {

// Channels 8..11 are not numbered on from the first eight.
constexpr int kLowChannels = 8;

}  // namespace

LiveControl::LiveControl(BoardProtocol& board, ConnectedSwitch& main_on_off,
                         platform::CWButton& button_real_emu, platform::CWButton& button_emu_pc)
    : board_(board),
      main_on_off_(main_on_off),
      button_real_emu_(button_real_emu),
      button_emu_pc_(button_emu_pc) {}

void LiveControl::SendPosition(int channel, int position) {
  const Command base = channel < kLowChannels ? Command::kPosition : Command::kPositionHigh;
  board_.Send(static_cast<std::uint8_t>(static_cast<int>(base) + channel));
  board_.Send(static_cast<std::uint8_t>(position));
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
  board_.Send(Command::kPcControlOn);
}

void LiveControl::CommandStop_Click() {
  board_.Send(Command::kPcControlOff);
}

void LiveControl::Resetting_Click() {
  board_.Send(Command::kReset);
  main_on_off_.Button().SetValue(false);
  button_real_emu_.SetValue(false);
  button_emu_pc_.SetValue(false);
}

void LiveControl::MSComm1_PortLost() {
  main_on_off_.DropToOff();
}

}  // namespace pelmora
