// The table and the sequence being edited as they are at one moment. Snapshots that follow each
// other share the parts in which they don't differ, so that many of them can be kept.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "core/declaration.h"

namespace pelmora {

struct TableSnapshot : FlashFigures {
  std::array<std::shared_ptr<const SequenceRecord>, kSequences> SeqTable;
  std::uint8_t CurSeq = 0;
  std::shared_ptr<const EditRows> EditBuffer;
};

// What `former` (null when there is none) has alike is shared with it.
TableSnapshot TakeSnapshot(const Declaration& data, const TableSnapshot* former);

// Makes `data` what it was.
void RestoreSnapshot(const TableSnapshot& snapshot, Declaration& data);

// Whether both hold the same steps and figures, with the same sequence being edited. The edit
// buffers don't count, nor does what lies beyond the last steps.
bool SameTable(const TableSnapshot& one, const TableSnapshot& other);

}  // namespace pelmora
