// Numbers as the operator reads and types them, and the fields of a line that hold them. The
// decimal separator is always an argument (UTF-8, one byte or more): nothing here looks at the C
// library's locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pelmora {

// The angle of a position in degrees, (position - 128) / 2, as its shortest decimal text: "-64",
// "-0.5", "0", "63.5".
std::string AngleText(int position, std::string_view decimal_point);

// The position of an angle in degrees, floor(angle x 2 + 128), also where no servo has it. Nothing
// when it does not fit 32 bits.
std::optional<std::int32_t> PositionOfAngle(double angle);

// A decimal number with `decimal_point` as its separator and blanks around it allowed. Nothing
// when the text is not wholly a finite number.
std::optional<double> ParseNumber(std::string_view text, std::string_view decimal_point);

// Takes the next field of a line, and the tab that ends it, off `rest`. Past the last field there
// are empty ones, which read as no number.
std::string_view TakeField(std::string_view& rest);

// `numerator` / `denominator` to the nearest integer, halves to the even one. `denominator` > 0.
std::int64_t DivideHalfEven(std::int64_t numerator, std::int64_t denominator);

// `value` to the nearest integer, halves to the even one. Nothing when that does not fit 32 bits.
std::optional<std::int32_t> RoundHalfEven(double value);

}  // namespace pelmora
