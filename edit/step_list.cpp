#include "edit/step_list.h"

#include <algorithm>

#include "link/serial_port.h"

namespace pelmora {

void StepList::CommandAdd_Click() {
  if (HasRoom()) edited_.Insert({step_fields_.NewStep()});
}

void StepList::CommandReplace_Click() {
  if (edited_.ListIndex() >= 0 && HasRoom()) edited_.ReplaceSelected(step_fields_.NewStep());
}

// Whether the list can take another line; otherwise a message says so.
bool StepList::HasRoom() {
  if (edited_.ListCount() < kSteps) return true;
  message_box_.Show(TooManyLinesText(), kProgramTitle);
  return false;
}

void StepList::CommandUp_Click() {
  const int lines = edited_.ListCount();
  if (lines > 0) SelectAndShow((edited_.ListIndex() + 1) % lines);
}

void StepList::CommandDwn_Click() {
  const int line = edited_.ListIndex();
  if (line >= 0) SelectAndShow(line == 0 ? edited_.ListCount() - 1 : line - 1);
}

void StepList::SelectAndShow(int line) {
  edited_.Select(line);
  step_fields_.ShowSelectedStep();
}

void StepList::ListSequence_MoveLine(int from, int to) {
  const int lines = edited_.ListCount();
  // The list may have become shorter while the button was held.
  if (to != from && std::min(from, to) >= 0 && std::max(from, to) < lines) edited_.Move(from, to);
}

}  // namespace pelmora
