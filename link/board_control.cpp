#include "link/board_control.h"

#include "core/board_codec.h"

namespace pelmora {

void BoardControl::CWButtonMainOnOff_ValueChanged(bool on) {
  if (on == pc_control_) return;
  const bool connected = serial_port_.RequireConnection();
  pc_control_ = on && connected;
  emit Changed();
  if (connected) on ? CommandStart_Click() : CommandStop_Click();
}

void BoardControl::CWButtonRealEmu_ValueChanged(bool on) {
  if (on == BoardPlays()) return;
  const bool connected = serial_port_.RequireConnection();
  SetPlayer(on && connected ? Player::kBoard : Player::kNobody);
  if (!connected) return;
  if (on) {
    serial_port_.Send(PlayCommand(data_.CurSeq));
  } else {
    serial_port_.Send(kStopCommand);
  }
}

void BoardControl::CWButtonEmuPC_ValueChanged(bool on) {
  if (on == PcPlays()) return;
  const bool connected = serial_port_.RequireConnection();
  SetPlayer(on && connected ? Player::kPc : Player::kNobody);
  if (connected) emit PcPlaybackSwitched(on);
}

void BoardControl::CommandStart_Click() {
  serial_port_.Send(kPcControlOnCommand);
}

void BoardControl::CommandStop_Click() {
  serial_port_.Send(kPcControlOffCommand);
}

void BoardControl::Resetting_Click() {
  serial_port_.Send(kResetCommand);
  CWButtonMainOnOff_ValueChanged(false);
  CWButtonRealEmu_ValueChanged(false);
  CWButtonEmuPC_ValueChanged(false);
}

void BoardControl::MSComm1_PortLost() {
  pc_control_ = false;
  SetPlayer(Player::kNobody);
  serial_port_.MSComm1_PortLost(link_.SequencesEmptied());
}

void BoardControl::SendPosition(int channel, int position) {
  serial_port_.Send(PositionCommand(channel, position));
}

void BoardControl::SetPlayer(Player player) {
  player_ = player;
  emit Changed();
}

}  // namespace pelmora
