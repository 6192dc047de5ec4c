#include "playback/pc_emulator.h"

namespace pelmora {

PcEmulator::PcEmulator(EditedSequence& edited, StepList& step_list, platform::HiTimer& timer,
                       ConnectedSwitch& emu_pc, platform::CWButton& button_real_emu)
    : edited_(edited),
      step_list_(step_list),
      timer_(timer),
      emu_pc_(emu_pc),
      button_real_emu_(button_real_emu) {}

void PcEmulator::CWButtonEmuPC_ValueChanged(bool on) {
  if (!emu_pc_.Accept()) return;
  button_real_emu_.setEnabled(!on);
  if (!on) {
    emu_pc_.Button().setEnabled(true);
    timer_.SetEnabled(false);
  }
  if (edited_.ListIndex() < 0 && edited_.ListCount() > 0) edited_.Select(0);
  if (edited_.ListIndex() >= 0) {
    Hold();
    timer_.SetEnabled(on);
  }
  emit StateChanged();
}

void PcEmulator::HiTimer1_Timer() {
  if (!Playing() || edited_.ListCount() == 0) {
    timer_.SetEnabled(false);
    emu_pc_.Button().setChecked(false);
    return;
  }
  // All channels of a step take longer on the line than the shortest step lasts.
  if (const auto wait = emu_pc_.Port().TimeUntilReady(); wait.count() > 0) {
    timer_.SetInterval(static_cast<int>(wait.count()));
    return;
  }
  step_list_.CommandUp_Click();
  Hold();
  if (edited_.Row(edited_.ListIndex())[kBreakColumn] > 0) {
    timer_.SetEnabled(false);
    emit StateChanged();
  }
}

void PcEmulator::HoldSelectedStep() {
  if (!Playing() || edited_.ListIndex() < 0) return;
  Hold();
  timer_.SetEnabled(true);
  emit StateChanged();
}

void PcEmulator::MSComm1_PortLost() {
  timer_.SetEnabled(false);
  emu_pc_.DropToOff();
  button_real_emu_.setEnabled(true);
  emit StateChanged();
}

int PcEmulator::SelectedDuration() const {
  return edited_.Row(edited_.ListIndex())[kDurationColumn];
}

// The selected step is held from now on.
void PcEmulator::Hold() {
  held_since_ = std::chrono::steady_clock::now();
  timer_.SetInterval(SelectedDuration());
}

std::optional<HeldStep> PcEmulator::Held() const {
  if (!Playing() || edited_.ListIndex() < 0) return std::nullopt;
  return HeldStep{edited_.ListIndex(), held_since_, SelectedDuration()};
}

}  // namespace pelmora
