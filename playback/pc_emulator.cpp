#include "playback/pc_emulator.h"

#include <algorithm>

namespace pelmora {

PcEmulator::PcEmulator(EditedSequence& edited, StepList& step_list, platform::HiTimer& timer,
                       BoardControl& control)
    : edited_(edited), step_list_(step_list), timer_(timer), control_(control) {
  connect(&control, &BoardControl::Changed, this, &PcEmulator::StopUnlessPlaying);
  connect(&control, &BoardControl::PcPlaybackSwitched, this, &PcEmulator::Switched);
}

PcEmulator::~PcEmulator() {
  End();
}

// On: the selected step (line 0 if none is) is held for its duration, then playback goes on with
// the next one. Off: playback stops where it is.
void PcEmulator::Switched(bool on) {
  if (edited_.ListIndex() < 0 && edited_.ListCount() > 0) edited_.Select(0);
  if (edited_.ListIndex() >= 0) {
    Hold();
    timer_.SetEnabled(on);
  }
  if (on) emit StateChanged();
}

// Also when the line is lost, which is no press of the switch.
void PcEmulator::StopUnlessPlaying() {
  if (Playing()) return;
  timer_.SetEnabled(false);
  emit StateChanged();
}

void PcEmulator::HiTimer1_Timer() {
  if (edited_.ListCount() == 0) return control_.CWButtonEmuPC_ValueChanged(false);
  // All channels of a step take longer on the line than the shortest step lasts.
  if (const auto wait = control_.TimeUntilReady(); wait.count() > 0) {
    timer_.SetInterval(static_cast<int>(wait.count()));
    return;
  }
  step_list_.CommandUp_Click();
  Hold();
  if (SelectedStep()[kBreakColumn] > 0) {
    timer_.SetEnabled(false);
    emit StateChanged();
  }
}

void PcEmulator::CommandContinue_Click() {
  if (!Playing() || edited_.ListIndex() < 0) return;
  Hold();
  timer_.SetEnabled(true);
  emit StateChanged();
}

void PcEmulator::CommandRepeat_Click() {
  if (!Playing() || edited_.ListIndex() < 0) return;
  int line = edited_.ListIndex() - 1;
  while (line > 0 && edited_.Row(line)[kBreakColumn] == 0) --line;
  step_list_.SelectAndShow(std::max(line, 0));
  CommandContinue_Click();
}

// The selected step is held from now on.
void PcEmulator::Hold() {
  held_since_ = std::chrono::steady_clock::now();
  timer_.SetInterval(SelectedStep()[kDurationColumn]);
}

std::optional<HeldStep> PcEmulator::Held() const {
  if (!Playing() || edited_.ListIndex() < 0) return std::nullopt;
  return HeldStep{edited_.ListIndex(), held_since_};
}

}  // namespace pelmora
