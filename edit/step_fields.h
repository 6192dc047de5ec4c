// The channel editor: twelve sliders, each with a position field to type in and an angle display,
// and the step duration. The step being composed is what these controls show.
#pragma once

#include <array>

#include "core/declaration.h"
#include "edit/edited_sequence.h"
#include "link/board_control.h"

namespace platform {
class CWNumEdit;
class CWSlide;
class TextField;
}  // namespace platform

namespace pelmora {

// The channel editor's controls. Text1: 0..11 position fields, 12..23 angle displays.
struct EditorControls {
  std::array<platform::CWSlide*, kChannels> CWSlide1;
  std::array<platform::TextField*, 2 * kChannels> Text1;
  platform::CWNumEdit* CWNumEditTimeStep;
};

class StepFields {
 public:
  StepFields(EditedSequence& edited, BoardControl& board_control, const EditorControls& controls)
      : edited_(edited), board_control_(board_control), controls_(controls) {}

  // The slider reaction, whoever changed the value: sends the position, then shows it as offset and
  // angle.
  void CWSlide1_ValueChanged(int channel, int position);

  // A key typed into `Text1` `index` (0..23): filters it (a discarded key becomes 0), commits the
  // field on Enter (13), and puts the committed offset back on Escape (27).
  void Text1_KeyPress(int index, int& key);
  // Leaving a position field commits it.
  void Text1_LostFocus(int index);
  // Commits the position fields that hold an uncommitted entry. Called when another control is
  // used: it can be without having got the focus, in a window that is not active or by assistive
  // technology.
  void CommitPending();

  // "Reset": all channels to the centre.
  void CommandUpdate_Click();

  // Shows the selected line's step in the editor, which moves the servos. Nothing happens when no
  // line is selected.
  void ShowSelectedStep();

  // The step being composed: what the angle displays and the duration field show once what is being
  // typed has been committed.
  EditRow NewStep();

 private:
  void Commit(int channel);
  void ShowPosition(int channel, int position);

  EditedSequence& edited_;
  BoardControl& board_control_;
  const EditorControls controls_;
};

}  // namespace pelmora
