// The moves between the layers of sequence data, without the controls that show them: the sequence
// table, the edit buffer, and the flash figures derived from the step counts.
#pragma once

#include "core/declaration.h"

namespace pelmora {

// Empties all 16 sequences and the flash figures.
void ClearTable(SequenceTable& table);

// Makes `table` what was loaded.
void LoadTable(const SequenceTable& loaded, SequenceTable& table);

// Copies the steps of `CurSeq` from the table into the edit buffer's first rows. The breakpoint
// column and the rows beyond stay. Returns the number of steps copied (never more than 256).
int LoadEditBuffer(Declaration& data);

// Stores all 256 edit buffer rows as sequence `CurSeq` with `line_count` (0..256) steps. False,
// and nothing stored, when a position is outside 0..255 or a duration outside -32768..32767 in any
// row, or `line_count` outside its range.
[[nodiscard]] bool StoreEditBuffer(Declaration& data, int line_count);

// Whether the table holds `CurSeq` as the edit buffer has it: `line_count` steps with the positions
// and durations of its rows.
bool TableHolds(const Declaration& data, int line_count);

// Recomputes `TotalBytes` and every `SeqOffset` from the step counts.
void ComputeFlashFigures(SequenceTable& table);

}  // namespace pelmora
