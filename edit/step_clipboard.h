// Steps to and from the clipboard, as text that a spreadsheet takes and gives.
#pragma once

#include "edit/edited_sequence.h"
#include "platform/system/message_box.h"

namespace pelmora {

class StepClipboard {
 public:
  StepClipboard(EditedSequence& edited, platform::MessageBox& message_box)
      : edited_(edited), message_box_(message_box) {}

  // The selected step, or all of the current sequence. The clipboard stays as it is when there is
  // none.
  void Copy_Click();
  void CopySequence_Click();

  // Copies the selected step, then removes it as "Remove" does.
  void Cut_Click();

  // Inserts the clipboard's steps below the selected line (at the top when none is selected) as
  // "Add" does, and selects the last of them: pasted again they go below. A text that holds
  // anything else, or more than there is room for, is refused as a whole with a message. Without a
  // text nothing happens.
  void Paste_Click();

 private:
  void Put(int first_line, int lines);

  EditedSequence& edited_;
  platform::MessageBox& message_box_;
};

}  // namespace pelmora
