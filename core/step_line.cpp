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

std::optional<std::int32_t> PositionOfField(std::string_view field,
                                            std::string_view decimal_point) {
  const std::optional<double> angle = ParseNumber(WithoutAll(field, kDegrees), decimal_point);
  return angle ? PositionOfAngle(*angle) : std::nullopt;
}

std::optional<std::int32_t> DurationOfField(std::string_view field,
                                            std::string_view decimal_point) {
  const std::optional<double> duration =
      ParseNumber(WithoutAll(field, kMilliseconds), decimal_point);
  return duration ? RoundHalfEven(*duration) : std::nullopt;
}

}  // namespace

std::string AngleField(int position, std::string_view decimal_point) {
  return AngleText(position, decimal_point).append(kDegrees);
}

std::string TableLine(const EditRow& row, std::string_view decimal_point) {
  std::string line;
  for (std::size_t c = 0; c < kChannels; ++c) line += AngleField(row[c], decimal_point) + '\t';
  return line + std::to_string(row[kDurationColumn]) + "  ms\t";
}

std::string EditorLine(const std::array<std::string, kChannels>& angle_fields, int duration_ms) {
  std::string line;
  for (const std::string& field : angle_fields) line += field + '\t';
  return line + std::to_string(duration_ms) + " ms";
}

std::string EditorLine(const EditRow& row, std::string_view decimal_point) {
  std::array<std::string, kChannels> angles;
  for (std::size_t c = 0; c < kChannels; ++c) angles[c] = AngleField(row[c], decimal_point);
  return EditorLine(angles, row[kDurationColumn]);
}

std::optional<EditRow> ReadStepLine(std::string_view line, std::string_view decimal_point) {
  EditRow row{};
  row[kBreakColumn] = HasBreakMark(line) ? 1 : 0;
  for (std::size_t column = 0; column <= kDurationColumn; ++column) {
    const std::string_view field = TakeField(line);
    const std::optional<std::int32_t> value = column == kDurationColumn
                                                  ? DurationOfField(field, decimal_point)
                                                  : PositionOfField(field, decimal_point);
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
