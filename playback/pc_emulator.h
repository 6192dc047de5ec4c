// The PC sequence emulator: a timer walks down the step list; each step that it shows moves the
// sliders, and those move the servos. The selected line is the playback position.
#pragma once

#include <functional>

#include "edit/edited_sequence.h"
#include "edit/step_list.h"
#include "link/connected_switch.h"
#include "platform/controls/cw_button.h"
#include "platform/system/hi_timer.h"

namespace pelmora {

class PcEmulator {
 public:
  PcEmulator(EditedSequence& edited, StepList& step_list, platform::HiTimer& timer,
             ConnectedSwitch& emu_pc, platform::CWButton& button_real_emu);

  // On: the selected step (line 0 if none is) is held for its duration, then playback goes on with
  // the next one. Off: playback stops where it is.
  void CWButtonEmuPC_ValueChanged(bool on);

  // The tick: shows the next step and holds it for its duration, or halts on it when it has a
  // breakpoint. While the line has not carried the steps before it waits for that instead: every
  // step is shown, and playback goes as fast as the line.
  void HiTimer1_Timer();

  // Waits out the selected step's duration, then plays on. Nothing happens when no line is selected
  // or the switch is Off.
  void HoldSelectedStep();

  // Whether the switch is On: playback runs or is halted at a breakpoint.
  bool Playing() const { return emu_pc_.Button().isChecked(); }

  // Playback is in progress, but waits for the operator: halted at a breakpoint.
  bool Halted() const { return Playing() && !timer_.Enabled(); }
  // Called when playback may have begun, ended, halted or gone on.
  std::function<void()> StateChanged;

  void MSComm1_PortLost();

 private:
  int SelectedDuration() const;
  void TellState() const;

  EditedSequence& edited_;
  StepList& step_list_;
  platform::HiTimer& timer_;
  ConnectedSwitch& emu_pc_;
  platform::CWButton& button_real_emu_;
};

}  // namespace pelmora
