#include "playback/pc_emulator.h"

namespace pelmora {

PcEmulator::PcEmulator(const Declaration& data, StepList& step_list,
                       platform::ListBox& list_sequence, platform::HiTimer& timer,
                       ConnectedSwitch& emu_pc, platform::CWButton& button_real_emu)
    : data_(data),
      step_list_(step_list),
      list_sequence_(list_sequence),
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
  if (list_sequence_.ListIndex() < 0 && list_sequence_.ListCount() > 0) {
    list_sequence_.SetListIndex(0);
  }
  if (list_sequence_.ListIndex() < 0) return;
  timer_.SetInterval(SelectedDuration());
  timer_.SetEnabled(on);
}

void PcEmulator::HiTimer1_Timer() {
  if (!Playing() || list_sequence_.ListCount() == 0) {
    timer_.SetEnabled(false);
    emu_pc_.Button().SetValue(false);
    return;
  }
  step_list_.CommandUp_Click();
  timer_.SetInterval(SelectedDuration());
  const auto row = static_cast<std::size_t>(list_sequence_.ListIndex());
  if (data_.EditBuffer[row][kBreakColumn] > 0) timer_.SetEnabled(false);
}

void PcEmulator::HoldSelectedStep() {
  if (!Playing() || list_sequence_.ListIndex() < 0) return;
  timer_.SetInterval(SelectedDuration());
  timer_.SetEnabled(true);
}

void PcEmulator::MSComm1_PortLost() {
  timer_.SetEnabled(false);
  emu_pc_.DropToOff();
  button_real_emu_.setEnabled(true);
}

int PcEmulator::SelectedDuration() const {
  const auto row = static_cast<std::size_t>(list_sequence_.ListIndex());
  return data_.EditBuffer[row][kDurationColumn];
}

}  // namespace pelmora
