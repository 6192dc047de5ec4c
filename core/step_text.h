// Steps as text for other programs, such as a spreadsheet: a line for each step, with twelve angles
// in degrees and the duration in ms between tabs. UTF-8.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/declaration.h"

namespace pelmora {

// Numbers without units, angles with `decimal_point`; each line ends in a line feed.
std::string FormatStepText(std::span<const EditRow> steps, std::string_view decimal_point);

// Why a text is refused.
struct StepTextFault {
  int line;            // the first line that is no step, counted from 1 with those that are skipped
  std::string reason;  // "the angle of Ch3 is no number"

  bool operator==(const StepTextFault&) const = default;
};

// The steps of such a text, without breakpoints. Its lines end in LF, CRLF or CR; the last one need
// not, and lines of blanks and tabs only are skipped. Numbers have `decimal_point` or a point;
// blanks and the units of a step line ("°", "ms") may stand around them, and fields after the
// thirteenth are ignored, so that lines of the step list are taken as they are. Angles become
// positions as in a step line, durations whole ms. A text is refused when a line is no step: it has
// fewer than thirteen fields, or a number is none or out of its range (-64 to 63.5 degrees, 20 to
// 32767 ms).
[[nodiscard]] std::variant<std::vector<EditRow>, StepTextFault> ReadStepText(
    std::string_view text, std::string_view decimal_point);

}  // namespace pelmora
