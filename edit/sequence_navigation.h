// "+" and "-": the choice of the sequence being edited.
#pragma once

#include "core/declaration.h"
#include "edit/sequence_data.h"
#include "edit/step_list.h"
#include "platform/list_box.h"

namespace pelmora {

class SequenceNavigation {
 public:
  SequenceNavigation(Declaration& data, SequenceData& sequence_data,
                     platform::ListBox& list_sequence, const SequenceLabels& labels);

  // "+": the next sequence, up to 15.
  void CommandMoreSeq_Click() { Go(+1); }
  // "-": the previous sequence, down to 0.
  void CommandLessSeq_Click() { Go(-1); }

 private:
  void Go(int direction);

  Declaration& data_;
  SequenceData& sequence_data_;
  platform::ListBox& list_sequence_;
  const SequenceLabels labels_;
};

}  // namespace pelmora
