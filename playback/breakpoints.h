// Breakpoints: a flag on a step of the current sequence and the mark "BREAK!" on its line. PC
// playback halts on them; "Continue" and "Repeat" go on.
#pragma once

#include "core/declaration.h"
#include "edit/sequence_data.h"
#include "edit/step_fields.h"
#include "platform/list_box.h"
#include "playback/pc_emulator.h"

namespace pelmora {

class Breakpoints {
 public:
  Breakpoints(Declaration& data, SequenceData& sequence_data, StepFields& step_fields,
              platform::ListBox& list_sequence, PcEmulator& pc_emulator);

  // "Set/Reset Break" on the selected line.
  void CommandBrk_Click();
  // "Reset  All Break".
  void CommandResBrk_Click();

  // "Continue": the step halted on stays for one more full duration, then playback goes on. Pressed
  // while playback runs it starts the wait anew.
  void CommandContinue_Click();

  // "Repeat": goes back to the nearest earlier breakpoint (or the first line), shows it, and plays
  // from there.
  void CommandRepeat_Click();

 private:
  Declaration& data_;
  SequenceData& sequence_data_;
  StepFields& step_fields_;
  platform::ListBox& list_sequence_;
  PcEmulator& pc_emulator_;
};

}  // namespace pelmora
