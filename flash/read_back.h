// "Read Seq.": fetches the 16 sequences from the board's flash and makes them the program's.
#pragma once

#include <QLabel>
#include <QString>

#include "edit/sequence_data.h"
#include "edit/step_list.h"
#include "flash/flash_parts.h"
#include "platform/list_box.h"

namespace pelmora {

class ReadBack {
 public:
  ReadBack(const FlashParts& parts, SequenceData& sequence_data, StepList& step_list,
           platform::ListBox& list_sequence, QLabel& label_seq);

  // Clears all sequences (before the port is looked at), asks the board for its flash and waits
  // while the receive handler takes the reply; then rebuilds the table and shows sequence 0.
  // Returns when the read has ended; the window is live meanwhile. A read that fails leaves the
  // steps decoded before the failure.
  void CommandRead_Click();

 private:
  bool Receive();
  void ShowFirstSequence();
  void End(const QString& text);
  void Fail(const QString& text);

  const FlashParts parts_;
  SequenceData& sequence_data_;
  StepList& step_list_;
  platform::ListBox& list_sequence_;
  QLabel& label_seq_;
};

}  // namespace pelmora
