// The PC sequence emulator: a timer walks down the step list; each step that it shows moves the
// sliders, and those move the servos. The selected line is the playback position. The switch
// "PC Emu" belongs to `BoardControl`. Playback halts on a breakpoint, a flag on a step and the mark
// "BREAK!" on its line; "Continue" and "Repeat" go on.
#pragma once

#include <QObject>
#include <chrono>
#include <optional>

#include "edit/edited_sequence.h"
#include "edit/step_list.h"
#include "link/board_control.h"
#include "platform/system/hi_timer.h"

namespace pelmora {

// A step that playback holds.
struct HeldStep {
  int line;  // in the step list
  std::chrono::steady_clock::time_point since;
};

class PcEmulator : public QObject {
  Q_OBJECT
 public:
  PcEmulator(EditedSequence& edited, StepList& step_list, platform::HiTimer& timer,
             BoardControl& control);
  ~PcEmulator() override;

  // Start-up: the timer's first interval; it is not running.
  void Form_Load() { timer_.SetInterval(kStartInterval); }
  // The program ends: no tick comes any more.
  void End() { timer_.SetEnabled(false); }

  // The tick: shows the next step and holds it for its duration, or halts on it when it has a
  // breakpoint. While the serial line has not carried the steps before it waits for that instead:
  // every step is shown, and playback goes as fast as the line.
  void HiTimer1_Timer();

  // "Continue": the step halted on stays for one more full duration, then playback goes on. Pressed
  // while playback runs it starts the wait anew. Nothing happens when no line is selected or the
  // switch is Off, here and in "Repeat".
  void CommandContinue_Click();

  // "Repeat": goes back to the nearest earlier breakpoint (or the first line), shows it, and plays
  // from there.
  void CommandRepeat_Click();

  // Whether the switch is On: playback runs or is halted at a breakpoint.
  bool Playing() const { return control_.PcPlays(); }

  // Playback is in progress, but waits for the operator: halted at a breakpoint.
  bool Halted() const { return Playing() && !timer_.Enabled(); }

  // The step that playback holds: the selected one, since it was shown or "Continue" or "Repeat"
  // began its wait. Nothing when the switch is Off or no line is selected.
  std::optional<HeldStep> Held() const;

 signals:
  // Playback may have begun, ended, halted or gone on.
  void StateChanged();

 private:
  static constexpr int kStartInterval = 20;  // ms

  void Switched(bool on);
  void StopUnlessPlaying();
  // A line is selected.
  const EditRow& SelectedStep() const { return edited_.Row(edited_.ListIndex()); }
  void Hold();

  EditedSequence& edited_;
  StepList& step_list_;
  platform::HiTimer& timer_;
  BoardControl& control_;
  std::chrono::steady_clock::time_point held_since_;
};

}  // namespace pelmora
