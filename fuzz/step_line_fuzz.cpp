// Input: a byte that chooses the decimal separator, then a line of the step list. A line that is
// read is rebuilt as one that reads the same.
#include "core/step_line.h"
#include "fuzz/require.h"

using namespace pelmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view point = PointOf(bytes[0]);
  const std::string line(bytes + 1, bytes + size);
  Require(!HasBreakMark(WithoutBreakMarks(line)));
  Require(WithoutBreakMarks(WithBreakMark(line)) == WithoutBreakMarks(line));

  std::optional<EditRow> row = ReadStepLine(line, point);
  if (!row) return 0;
  Require((*row)[kBreakColumn] == (HasBreakMark(line) ? 1 : 0));
  // As it is, as a line of the table and as one of the editor.
  (*row)[kBreakColumn] = 1;
  for (const std::string& same : {line, TableLine(*row, point), EditorLine(*row, point)}) {
    Require(ReadStepLine(WithBreakMark(same), point) == row);
  }
  return 0;
}
