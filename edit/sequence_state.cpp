#include "edit/sequence_state.h"

#include "core/step_line.h"

namespace pelmora {

bool SameSequences(const SequenceState& one, const SequenceState& other) {
  return SameTable(one.Table, other.Table) &&
         (one.Lines == other.Lines || WithoutBreakMarks(one.Lines.toStdString()) ==
                                          WithoutBreakMarks(other.Lines.toStdString()));
}

}  // namespace pelmora
