// "+" and "-": the choice of the sequence being edited.
#pragma once

#include "edit/edited_sequence.h"

namespace pelmora {

class SequenceNavigation {
 public:
  explicit SequenceNavigation(EditedSequence& edited) : edited_(edited) {}

  // "+": the next sequence, up to 15.
  void CommandMoreSeq_Click() { edited_.ShowSequence(edited_.Data().CurSeq + 1); }
  // "-": the previous sequence, down to 0.
  void CommandLessSeq_Click() { edited_.ShowSequence(edited_.Data().CurSeq - 1); }

 private:
  EditedSequence& edited_;
};

}  // namespace pelmora
