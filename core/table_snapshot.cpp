#include "core/table_snapshot.h"

#include <algorithm>

namespace pelmora {
namespace {

template <class Part>
std::shared_ptr<const Part> Shared(const Part& now, const std::shared_ptr<const Part>& former) {
  return former && *former == now ? former : std::make_shared<const Part>(now);
}

bool SameSteps(const SequenceRecord& one, const SequenceRecord& other, int steps) {
  return std::equal(one.Position.begin(), one.Position.begin() + steps, other.Position.begin()) &&
         std::equal(one.Duration.begin(), one.Duration.begin() + steps, other.Duration.begin());
}

}  // namespace

TableSnapshot TakeSnapshot(const Declaration& data, const TableSnapshot* former) {
  static const TableSnapshot kNone;
  if (!former) former = &kNone;
  TableSnapshot snapshot;
  static_cast<FlashFigures&>(snapshot) = data;
  for (std::size_t i = 0; i < kSequences; ++i) {
    snapshot.SeqTable[i] = Shared(data.SeqTable[i], former->SeqTable[i]);
  }
  snapshot.CurSeq = data.CurSeq;
  snapshot.EditBuffer = Shared(data.EditBuffer, former->EditBuffer);
  return snapshot;
}

void RestoreSnapshot(const TableSnapshot& snapshot, Declaration& data) {
  static_cast<FlashFigures&>(data) = snapshot;
  for (std::size_t i = 0; i < kSequences; ++i) data.SeqTable[i] = *snapshot.SeqTable[i];
  data.CurSeq = snapshot.CurSeq;
  data.EditBuffer = *snapshot.EditBuffer;
}

bool SameTable(const TableSnapshot& one, const TableSnapshot& other) {
  if (one.CurSeq != other.CurSeq || one != static_cast<const FlashFigures&>(other)) return false;
  for (std::size_t i = 0; i < kSequences; ++i) {
    if (!SameSteps(*one.SeqTable[i], *other.SeqTable[i], one.SeqSteps[i])) return false;
  }
  return true;
}

}  // namespace pelmora
