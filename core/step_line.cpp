#include "core/step_line.h"

#include "core/number_text.h"

namespace pelmora {
namespace {

constexpr std::string_view kMilliseconds = " ms";
constexpr std::string_view kBreakMark = "\tBREAK!";

std::string WithoutAll(std::string_view text, std::string_view part) {
  std::string rest;
  rest.reserve(text.size());
  for (const char letter : text) {
    rest.push_back(letter);
    // Looking at what is kept also finds an occurrence that a removal has put together.
    if (rest.ends_with(part)) rest.resize(rest.size() - part.size());
  }
  return rest;
}

std::string AngleFields(const EditRow& row, std::string_view decimal_point) {
  std::string fields;
  for (std::size_t c = 0; c < kChannels; ++c) fields += AngleField(row[c], decimal_point) + '\t';
  return fields;
}

}  // namespace

std::string AngleField(int position, std::string_view decimal_point) {
  return AngleText(position, decimal_point).append(kDegrees);
}

std::string TableLine(const EditRow& row, std::string_view decimal_point) {
  return AngleFields(row, decimal_point) + std::to_string(row[kDurationColumn]) + "  ms\t";
}

std::string EditorLine(const EditRow& row, std::string_view decimal_point) {
  return AngleFields(row, decimal_point) + std::to_string(row[kDurationColumn]) + " ms";
}

std::optional<EditRow> ReadStepLine(std::string_view line, std::string_view decimal_point) {
  EditRow row{};
  row[kBreakColumn] = HasBreakMark(line) ? 1 : 0;
  for (std::size_t column = 0; column <= kDurationColumn; ++column) {
    const bool angle = column < kChannels;
    const std::optional<double> number =
        ParseNumber(WithoutAll(TakeField(line), angle ? kDegrees : kMilliseconds), decimal_point);
    if (!number) return std::nullopt;
    const std::optional<std::int32_t> value =
        angle ? PositionOfAngle(*number) : RoundHalfEven(*number);
    if (!value) return std::nullopt;
    row[column] = *value;
  }
  return row;
}

std::string WithValue(std::string_view line, int column, int value,
                      std::string_view decimal_point) {
  std::size_t begin = 0;
  for (int tabs = 0; tabs < column; ++tabs) begin = line.find('\t', begin) + 1;
  const std::size_t number = line.find(' ', begin) - begin;  // a blank begins the unit
  return std::string(line).replace(
      begin, number,
      column == kDurationColumn ? std::to_string(value) : AngleText(value, decimal_point));
}

std::string WithBreakMark(std::string_view line) {
  return std::string(line).append(kBreakMark);
}

std::string WithoutBreakMarks(std::string_view line) {
  return WithoutAll(line, kBreakMark);
}

bool HasBreakMark(std::string_view line) {
  return line.find(kBreakMark) != std::string_view::npos;
}

}  // namespace pelmora
