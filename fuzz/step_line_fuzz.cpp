// Input: a byte that chooses the decimal separator, then a line of the step list. A line that is
// read is rebuilt as one that reads the same; a refused one changes nothing.
#include "core/step_line.h"
#include "fuzz/require.h"

using namespace pelmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size == 0) return 0;
  constexpr std::array<std::string_view, 3> kPoints = {".", ",", "\u066B"};
  const std::string_view point = kPoints[bytes[0] % kPoints.size()];
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
  EditRow marked = untouched;
  Require(ReadStepLine(WithBreakMark(line), point, marked) && marked == row);

  EditRow rebuilt = untouched;
  Require(ReadStepLine(TableLine(row, point), point, rebuilt) && rebuilt == row);
  rebuilt = untouched;
  Require(ReadStepLine(EditorLine(row, point), point, rebuilt));
  Require(rebuilt == row);
  return 0;
}
