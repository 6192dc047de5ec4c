// "Save Buffer" and "Load Buffer": all sequences to and from a text file.
#pragma once

#include <QString>
#include <cstdint>

#include "edit/edited_sequence.h"
#include "platform/dialogs/file_dialog.h"
#include "platform/system/message_box.h"

namespace pelmora {

class BufferCommands {
 public:
  BufferCommands(EditedSequence& edited, platform::FileDialog& common_dialog,
                 platform::MessageBox& message_box)
      : edited_(edited), common_dialog_(common_dialog), message_box_(message_box) {}

  // Stores the current sequence, asks for a file and writes the whole table into it. A failure
  // after the dialog is reported with its reason.
  void SaveBuffer_Click();

  // Clears all sequences (before the dialog is shown, so also when it is cancelled), asks for a
  // file and makes its content the table. A bad file leaves the table empty.
  void LoadBuffer_Click();

 private:
  EditedSequence& edited_;
  platform::FileDialog& common_dialog_;
  platform::MessageBox& message_box_;
  // Saves of this run; the next one proposes its number in the file's name.
  std::int16_t SaveCounter = 0;
};

}  // namespace pelmora
