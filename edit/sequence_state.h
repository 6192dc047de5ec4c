// Everything that the edited sequence owns, as it is at one moment. States that follow each other
// share the parts in which they don't differ, so that many of them can be kept.
#pragma once

#include <QByteArray>
#include <QString>
#include <array>
#include <cstddef>
#include <memory>

#include "core/declaration.h"

namespace pelmora {

using EditRows = std::array<EditRow, kSteps>;

struct SequenceState {
  std::array<std::int16_t, kSequences> SeqSteps{};
  std::array<std::int32_t, kSequences> SeqOffset{};
  std::int32_t TotalBytes = 0;
  std::array<std::shared_ptr<const SequenceRecord>, kSequences> SeqTable;
  std::uint8_t CurSeq = 0;
  std::shared_ptr<const EditRows> EditBuffer;
  // The lines of the step list with their breakpoint marks, each ended by a line feed. UTF-8, which
  // takes half the memory of the list's own texts.
  QByteArray Lines;
  int Selected = -1;
  std::array<QString, 6> Labels;
};

// The part of a state that `data` holds; lines, selection and labels are left empty. What `former`
// (null when there is none) has alike is shared with it.
SequenceState StateOf(const Declaration& data, const SequenceState* former);

// Makes `data` what it was.
void PutBack(const SequenceState& state, Declaration& data);

// Whether both hold the same 16 sequences and show the same one, whose lines are what counts. The
// selection and the breakpoints don't count, nor does what lies beyond the last steps.
bool SameSequences(const SequenceState& one, const SequenceState& other);

}  // namespace pelmora
