#include "edit/step_list.h"

#include "core/step_line.h"
#include "link/serial_port.h"

namespace pelmora {

void StepList::CommandAdd_Click() {
  if (HasRoom()) edited_.Insert({NewLine()});
}

void StepList::CommandReplace_Click() {
  if (edited_.ListIndex() >= 0 && HasRoom()) edited_.ReplaceSelected(NewLine());
}

// Whether the list can take another line; otherwise a message says so.
bool StepList::HasRoom() {
  if (edited_.ListCount() < kSteps) return true;
  message_box_.Show(TooManyLinesText(), kProgramTitle);
  return false;
}

// The line of the step that the editor shows, what is being typed included.
std::string StepList::NewLine() {
  step_fields_.CommitPending();
  return EditorLine(step_fields_.AngleFields(), step_fields_.Duration());
}

void StepList::CommandUp_Click() {
  const int lines = edited_.ListCount();
  if (lines == 0) return;
  const int line = edited_.ListIndex();
  SelectAndShow(line == lines - 1 ? 0 : line + 1);
}

void StepList::CommandDwn_Click() {
  const int line = edited_.ListIndex();
  if (line < 0) return;
  SelectAndShow(line == 0 ? edited_.ListCount() - 1 : line - 1);
}

void StepList::SelectAndShow(int line) {
  edited_.Select(line);
  step_fields_.ShowSelectedStep();
}

void StepList::ListSequence_MoveLine(int from, int to) {
  const int lines = edited_.ListCount();
  // The list may have become shorter while the button was held.
  if (to == from || to < 0 || from < 0 || to >= lines || from >= lines) return;
  edited_.Move(from, to);
}

}  // namespace pelmora
