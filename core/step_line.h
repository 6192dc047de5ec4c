// The text of one step in the step list: twelve angle fields and a duration field, separated by
// tabs, optionally followed by the breakpoint mark. UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/declaration.h"

namespace pelmora {

// What follows the number in an angle field: a blank and the degree sign.
inline constexpr std::string_view kDegrees = " \u00B0";

// The angle field of a position, "63.5 °": what the angle displays show and the lines carry.
std::string AngleField(int position, std::string_view decimal_point);

// The line of a step taken from the sequence table: the duration ends in "  ms" and a tab closes
// the line.
std::string TableLine(const EditRow& row, std::string_view decimal_point);

// The line of a step composed in the editor, by interpolation or elsewhere: the duration ends in
// " ms", and no tab closes the line.
std::string EditorLine(const EditRow& row, std::string_view decimal_point);

// The step of a line: positions (floor(angle x 2 + 128)), duration, and whether there is a
// breakpoint mark. Other fields after the duration don't count. Nothing when the line is not a step
// line.
[[nodiscard]] std::optional<EditRow> ReadStepLine(std::string_view line,
                                                  std::string_view decimal_point);

// A step line with another value of a column: the position of 0..11, or the duration. The rest of
// the line stays.
std::string WithValue(std::string_view line, int column, int value, std::string_view decimal_point);

// The line with a breakpoint mark (a tab and "BREAK!") at its end.
std::string WithBreakMark(std::string_view line);

// The line without any breakpoint mark; all occurrences go.
std::string WithoutBreakMarks(std::string_view line);

bool HasBreakMark(std::string_view line);

}  // namespace pelmora
