// "Save Buffer" and "Load Buffer": all sequences to and from a text file.
#pragma once

#include <QLabel>
#include <QString>

#include "core/declaration.h"
#include "edit/sequence_data.h"
#include "edit/step_list.h"
#include "platform/file_dialog.h"
#include "platform/list_box.h"
#include "platform/message_box.h"

namespace pelmora {

class BufferCommands {
 public:
  BufferCommands(Declaration& data, SequenceData& sequence_data, StepList& step_list,
                 platform::ListBox& list_sequence, QLabel& label_seq,
                 platform::FileDialog& common_dialog, platform::MessageBox& message_box);

  // Stores the current sequence, asks for a file and writes the whole table into it. A failure
  // after the dialog is reported with its reason.
  void SaveBuffer_Click();

  // Clears all sequences (before the dialog is shown, so also when it is cancelled), asks for a
  // file and makes its content the table. A bad file leaves the table empty.
  void LoadBuffer_Click();

 private:
  bool Load(const QString& path);

  Declaration& data_;
  SequenceData& sequence_data_;
  StepList& step_list_;
  platform::ListBox& list_sequence_;
  QLabel& label_seq_;
  platform::FileDialog& common_dialog_;
  platform::MessageBox& message_box_;
};

}  // namespace pelmora
