#include "playback/breakpoints.h"

namespace pelmora {

void Breakpoints::CommandRepeat_Click() {
  if (!pc_emulator_.Playing() || edited_.ListIndex() < 0) return;
  int line = edited_.ListIndex();
  while (line >= 1) {
    --line;
    if (edited_.Row(line)[kBreakColumn] == 1) break;
  }
  edited_.Select(line);
  step_fields_.ShowSelectedStep();
  pc_emulator_.HoldSelectedStep();
}

}  // namespace pelmora
