#include "edit/sequence_state.h"

#include <algorithm>

#include "core/step_line.h"

namespace pelmora {
namespace {

template <class Part>
std::shared_ptr<const Part> Shared(const Part& now, const std::shared_ptr<const Part>& former) {
  return former && *former == now ? former : std::make_shared<const Part>(now);
}

bool SameStoredSequence(const SequenceState& one, const SequenceState& other, std::size_t i) {
  if (one.SeqSteps[i] != other.SeqSteps[i]) return false;
  const SequenceRecord& a = *one.SeqTable[i];
  const SequenceRecord& b = *other.SeqTable[i];
  const int steps = one.SeqSteps[i];
  return std::equal(a.Position.begin(), a.Position.begin() + steps, b.Position.begin()) &&
         std::equal(a.Duration.begin(), a.Duration.begin() + steps, b.Duration.begin());
}

bool SameButForMarks(const QByteArray& one, const QByteArray& other) {
  return one == other ||
         WithoutBreakMarks(one.toStdString()) == WithoutBreakMarks(other.toStdString());
}

}  // namespace

SequenceState StateOf(const Declaration& data, const SequenceState* former) {
  static const SequenceState kNone;
  if (!former) former = &kNone;
  SequenceState state;
  state.SeqSteps = data.SeqSteps;
  state.SeqOffset = data.SeqOffset;
  state.TotalBytes = data.TotalBytes;
  for (std::size_t i = 0; i < kSequences; ++i) {
    state.SeqTable[i] = Shared(data.SeqTable[i], former->SeqTable[i]);
  }
  state.CurSeq = data.CurSeq;
  state.EditBuffer = Shared(data.EditBuffer, former->EditBuffer);
  return state;
}

void PutBack(const SequenceState& state, Declaration& data) {
  data.SeqSteps = state.SeqSteps;
  data.SeqOffset = state.SeqOffset;
  data.TotalBytes = state.TotalBytes;
  for (std::size_t i = 0; i < kSequences; ++i) data.SeqTable[i] = *state.SeqTable[i];
  data.CurSeq = state.CurSeq;
  data.EditBuffer = *state.EditBuffer;
}

bool SameSequences(const SequenceState& one, const SequenceState& other) {
  if (one.CurSeq != other.CurSeq || one.SeqOffset != other.SeqOffset ||
      one.TotalBytes != other.TotalBytes) {
    return false;
  }
  for (std::size_t i = 0; i < kSequences; ++i) {
    if (!SameStoredSequence(one, other, i)) return false;
  }
  return SameButForMarks(one.Lines, other.Lines);
}

}  // namespace pelmora
