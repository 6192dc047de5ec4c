#include "core/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "core/declaration.h"

namespace pelmora {

std::string AngleText(int position, std::string_view decimal_point) {
  const std::int64_t half_degrees = std::int64_t{position} - kCentre;
  std::string text = half_degrees < 0 ? "-" : "";
  text += std::to_string(std::abs(half_degrees) / 2);
  if (half_degrees % 2 != 0) text.append(decimal_point).append("5");
  return text;
}

std::optional<std::int32_t> PositionOfAngle(double angle) {
  return RoundHalfEven(std::floor(angle * 2 + kCentre));
}

std::optional<double> ParseNumber(std::string_view text, std::string_view decimal_point) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return std::nullopt;
  text = text.substr(first, text.find_last_not_of(' ') - first + 1);

  std::string plain(text);
  if (decimal_point != ".") {
    if (text.find('.') != std::string_view::npos) return std::nullopt;
    const std::size_t point = text.find(decimal_point);
    if (point != std::string_view::npos) {
      plain.resize(point);
      plain.append(".").append(text.substr(point + decimal_point.size()));
    }
  }

  const char* begin = plain.data();
  const char* const end = begin + plain.size();
  const bool negative = *begin == '-';
  if (negative || *begin == '+') ++begin;
  // The conversion would also take a second sign, "inf" and "nan".
  if (begin == end || !(*begin == '.' || (*begin >= '0' && *begin <= '9'))) return std::nullopt;
  double value = 0;
  const auto [stop, error] = std::from_chars(begin, end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return negative ? -value : value;
}

std::string_view TakeField(std::string_view& rest) {
  const std::string_view field = rest.substr(0, rest.find('\t'));
  rest.remove_prefix(std::min(field.size() + 1, rest.size()));
  return field;
}

std::int64_t DivideHalfEven(std::int64_t numerator, std::int64_t denominator) {
  std::int64_t quotient = numerator / denominator;
  std::int64_t remainder = numerator % denominator;
  if (remainder < 0) {
    --quotient;
    remainder += denominator;
  }
  const std::int64_t missing = denominator - remainder;
  const bool up = remainder > missing || (remainder == missing && quotient % 2 != 0);
  return up ? quotient + 1 : quotient;
}

std::optional<std::int32_t> RoundHalfEven(double value) {
  // std::remainder takes the nearest multiple, halves to the even one, in every rounding mode.
  const double whole = value - std::remainder(value, 1.0);
  using Limits = std::numeric_limits<std::int32_t>;
  if (!(whole >= Limits::min() && whole <= Limits::max())) return std::nullopt;
  return static_cast<std::int32_t>(whole);
}

}  // namespace pelmora
