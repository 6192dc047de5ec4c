#include "playback/breakpoints.h"

#include <string>

#include "core/step_line.h"

namespace pelmora {

Breakpoints::Breakpoints(Declaration& data, SequenceData& sequence_data, StepFields& step_fields,
                         platform::ListBox& list_sequence, PcEmulator& pc_emulator)
    : data_(data),
      sequence_data_(sequence_data),
      step_fields_(step_fields),
      list_sequence_(list_sequence),
      pc_emulator_(pc_emulator) {}

void Breakpoints::CommandBrk_Click() {
  const int line = list_sequence_.ListIndex();
  if (line < 0) return;
  std::int32_t& flag = data_.EditBuffer[static_cast<std::size_t>(line)][kBreakColumn];
  const std::string text = list_sequence_.List(line).toStdString();
  list_sequence_.SetList(
      line, QString::fromStdString(flag == 0 ? WithBreakMark(text) : WithoutBreakMarks(text)));
  flag = flag == 0 ? 1 : 0;
}

void Breakpoints::CommandResBrk_Click() {
  sequence_data_.ResetBreakPoints();
}

void Breakpoints::CommandContinue_Click() {
  pc_emulator_.HoldSelectedStep();
}

void Breakpoints::CommandRepeat_Click() {
  if (!pc_emulator_.Playing() || list_sequence_.ListIndex() < 0) return;
  int line = list_sequence_.ListIndex();
  while (line >= 1) {
    --line;
    if (data_.EditBuffer[static_cast<std::size_t>(line)][kBreakColumn] == 1) break;
  }
  list_sequence_.SetListIndex(line);
  step_fields_.ShowSelectedStep(list_sequence_.ListIndex());
  pc_emulator_.HoldSelectedStep();
}

}  // namespace pelmora
