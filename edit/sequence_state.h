// Everything that the edited sequence owns, as it is at one moment.
#pragma once

#include <QByteArray>
#include <QString>
#include <array>

#include "core/table_snapshot.h"

namespace pelmora {

struct SequenceState {
  TableSnapshot Table;
  // The lines of the step list with their breakpoint marks, each ended by a line feed. UTF-8, which
  // takes half the memory of the list's own texts.
  QByteArray Lines;
  int Selected = -1;
  std::array<QString, 6> Labels;
};

// Whether both hold the same table and the same lines. The selection and the breakpoints don't
// count.
bool SameSequences(const SequenceState& one, const SequenceState& other);

}  // namespace pelmora
