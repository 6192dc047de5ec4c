// Who drives the board: nobody, the PC that plays a sequence, or the board that plays one from its
// flash. It owns the states of the three switches, the loss of the line and the menu "Reset", and
// it moves the servos live.
#pragma once

#include <QObject>
#include <chrono>

#include "core/declaration.h"
#include "link/board_link.h"
#include "link/serial_port.h"

namespace pelmora {

class BoardControl : public QObject {
  Q_OBJECT
 public:
  // `data` tells the sequence that the board shall play.
  BoardControl(SerialPort& serial_port, const BoardLink& link, const Declaration& data)
      : serial_port_(serial_port), link_(link), data_(data) {}

  // "PC Control Enable" is On.
  bool PcControl() const { return pc_control_; }
  // "PC Emu" is On. "Real Emu" is locked meanwhile.
  bool PcPlays() const { return player_ == Player::kPc; }
  // "Real Emu" is On. "PC Emu" is locked meanwhile.
  bool BoardPlays() const { return player_ == Player::kBoard; }

  // The three reactions to a switch that has got another value, by the operator or by the program.
  // Without a port a message says so and the switch goes Off; nothing is sent. A value that the
  // switch has already changes nothing.
  //
  // Tells the board to enter PC control, or to leave it.
  void CWButtonMainOnOff_ValueChanged(bool on);
  // On: tells the board to play sequence `CurSeq`. Off: tells it to stop.
  void CWButtonRealEmu_ValueChanged(bool on);
  // Sends nothing; `PcPlaybackSwitched` says what has been accepted.
  void CWButtonEmuPC_ValueChanged(bool on);

  // Tells the board to enter PC control, if the port is open.
  void CommandStart_Click();
  // Tells the board to leave PC control, if the port is open, whatever the switch says. Shutdown
  // calls it too.
  void CommandStop_Click();

  // Menu "Reset": resets the board, then turns all three switches Off; those that were On send
  // their own commands.
  void Resetting_Click();

  // The line is lost: all three switches are Off, and nothing is locked, when the message says so.
  void MSComm1_PortLost();

  // Sends a channel's (0..11) position byte (0..255) if the port is open. The first thing that a
  // slider's reaction does.
  void SendPosition(int channel, int position);
  // How long the line needs until it is ready for the next pose; see `SerialPort`.
  std::chrono::milliseconds TimeUntilReady() const { return serial_port_.TimeUntilReady(); }
  // Whether a dragged slider may send its position now. A pointer reports more positions than the
  // line can carry.
  bool ReadyForPosition() const { return TimeUntilReady().count() == 0; }

 signals:
  // Switches may have been turned or locked.
  void Changed();
  // "PC Emu" has been turned with the port open. Comes after `Changed`.
  void PcPlaybackSwitched(bool on);

 private:
  enum class Player { kNobody, kPc, kBoard };

  void SetPlayer(Player player);

  SerialPort& serial_port_;
  const BoardLink& link_;
  const Declaration& data_;
  bool pc_control_ = false;
  Player player_ = Player::kNobody;
};

}  // namespace pelmora
