#include "edit/sequence_state.h"

#include <algorithm>

namespace pelmora {
namespace {

template <class Part>
std::shared_ptr<const Part> Shared(const Part& now, const std::shared_ptr<const Part>& former) {
  return former && *former == now ? former : std::make_shared<const Part>(now);
}

bool IsCurrent(const SequenceState& state, std::size_t sequence) {
  return state.CurSeq == sequence;
}

int StepsOf(const SequenceState& state, std::size_t sequence) {
  return IsCurrent(state, sequence) ? static_cast<int>(state.Lines.size())
                                    : state.SeqSteps[sequence];
}

// Positions and duration; no breakpoint.
EditRow StepOf(const SequenceState& state, std::size_t sequence, std::size_t step) {
  EditRow row{};
  if (IsCurrent(state, sequence)) {
    row = (*state.EditBuffer)[step];
    row[kBreakColumn] = 0;
  } else {
    const SequenceRecord& record = *state.SeqTable[sequence];
    std::ranges::copy(record.Position[step], row.begin());
    row[kDurationColumn] = record.Duration[step];
  }
  return row;
}

bool SameSequence(const SequenceState& one, const SequenceState& other, std::size_t sequence) {
  const int steps = StepsOf(one, sequence);
  if (steps != StepsOf(other, sequence)) return false;
  if (!IsCurrent(one, sequence) && !IsCurrent(other, sequence) &&
      one.SeqTable[sequence] == other.SeqTable[sequence]) {
    return true;
  }
  for (std::size_t step = 0; step < static_cast<std::size_t>(steps); ++step) {
    if (StepOf(one, sequence, step) != StepOf(other, sequence, step)) return false;
  }
  return true;
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
  for (std::size_t i = 0; i < kSequences; ++i) {
    if (!SameSequence(one, other, i)) return false;
  }
  return true;
}

}  // namespace pelmora
