// Input: a byte that chooses the decimal separator, then a line of the step list. A line that is
// read is rebuilt as one that reads the same; a refused one changes nothing.
#include "core/step_line.h"
#include "fuzz/require.h"

using namespace pelmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view point = PointOf(bytes[0]);
  const std::string line(bytes + 1, bytes + size);
  Require(!HasBreakMark(WithoutBreakMarks(line)));
  Require(WithoutBreakMarks(WithBreakMark(line)) == WithoutBreakMarks(line));

  EditRow untouched;
  untouched.fill(-1);
  EditRow row = untouched;
  if (!ReadStepLine(line, point, row)) {
    Require(row == untouched);
    return 0;
  }
  // As it is, as a line of the table and as one of the editor.
  for (const std::string& same :
       {WithBreakMark(line), TableLine(row, point), EditorLine(row, point)}) {
    EditRow again = untouched;
    Require(ReadStepLine(same, point, again) && again == row);
  }
  return 0;
}
