// Breakpoints: a flag on a step of the current sequence and the mark "BREAK!" on its line. PC
// playback halts on them; "Continue" and "Repeat" go on.
#pragma once

#include "edit/edited_sequence.h"
#include "edit/step_fields.h"
#include "playback/pc_emulator.h"

namespace pelmora {

class Breakpoints {
 public:
  Breakpoints(EditedSequence& edited, StepFields& step_fields, PcEmulator& pc_emulator)
      : edited_(edited), step_fields_(step_fields), pc_emulator_(pc_emulator) {}

  // "Set/Reset Break" on the selected line.
  void CommandBrk_Click() { edited_.ToggleBreak(); }
  // "Reset  All Break".
  void CommandResBrk_Click() { edited_.ResetBreakPoints(); }

  // "Continue": the step halted on stays for one more full duration, then playback goes on. Pressed
  // while playback runs it starts the wait anew.
  void CommandContinue_Click() { pc_emulator_.HoldSelectedStep(); }

  // "Repeat": goes back to the nearest earlier breakpoint (or the first line), shows it, and plays
  // from there.
  void CommandRepeat_Click();

 private:
  EditedSequence& edited_;
  StepFields& step_fields_;
  PcEmulator& pc_emulator_;
};

}  // namespace pelmora
