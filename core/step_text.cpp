#include "core/step_text.h"

#include <algorithm>
#include <optional>

#include "core/number_text.h"

namespace pelmora {
namespace {

constexpr std::string_view kAngleUnit = "\u00B0";
constexpr std::string_view kDurationUnit = "ms";
constexpr int kFields = kChannels + 1;
constexpr double kLowestAngle = -kCentre / 2.0;
constexpr double kHighestAngle = (kHighestPosition - kCentre) / 2.0;

// The next line of `text`, which loses it.
std::string_view TakeLine(std::string_view& text) {
  const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
  text.remove_prefix(line.size());
  text.remove_prefix(text.starts_with("\r\n") ? 2 : std::min<std::size_t>(text.size(), 1));
  return line;
}

std::optional<double> Number(std::string_view field, std::string_view unit,
                             std::string_view decimal_point) {
  field = field.substr(0, field.find_last_not_of(' ') + 1);
  if (field.ends_with(unit)) field.remove_suffix(unit.size());
  const std::optional<double> value = ParseNumber(field, decimal_point);
  return value ? value : ParseNumber(field, ".");
}

std::string AngleFault(std::size_t channel, std::string_view fault) {
  return "the angle of Ch" + std::to_string(channel) + " is " + std::string(fault);
}

// The step of a line, or what is wrong with it.
std::variant<EditRow, std::string> ReadLine(std::string_view line, std::string_view decimal_point) {
  if (std::ranges::count(line, '\t') + 1 < kFields) {
    return "it has fewer than " + std::to_string(kFields) + " fields";
  }
  EditRow row{};
  for (std::size_t ch = 0; ch < kChannels; ++ch) {
    const std::optional<double> angle = Number(TakeField(line), kAngleUnit, decimal_point);
    if (!angle) return AngleFault(ch, "no number");
    if (*angle < kLowestAngle || *angle > kHighestAngle) {
      return AngleFault(ch, "outside " + AngleText(0, decimal_point) + " to " +
                                AngleText(kHighestPosition, decimal_point) + " \u00B0");
    }
    row[ch] = PositionOfAngle(*angle).value_or(kCentre);
  }
  const std::optional<double> duration = Number(TakeField(line), kDurationUnit, decimal_point);
  if (!duration) return "the duration is no number";
  if (*duration < kShortestDuration || *duration > kLongestDuration) {
    return "the duration is outside " + std::to_string(kShortestDuration) + " to " +
           std::to_string(kLongestDuration) + " ms";
  }
  row[kDurationColumn] = RoundHalfEven(*duration).value_or(kShortestDuration);
  return row;
}

}  // namespace

std::string FormatStepText(std::span<const EditRow> steps, std::string_view decimal_point) {
  std::string text;
  for (const EditRow& step : steps) {
    for (std::size_t ch = 0; ch < kChannels; ++ch) {
      text += AngleText(step[ch], decimal_point) + '\t';
    }
    text += std::to_string(step[kDurationColumn]) + '\n';
  }
  return text;
}

std::variant<std::vector<EditRow>, StepTextFault> ReadStepText(std::string_view text,
                                                               std::string_view decimal_point) {
  std::vector<EditRow> steps;
  for (int number = 1; !text.empty(); ++number) {
    const std::string_view line = TakeLine(text);
    if (line.find_first_not_of(" \t") == std::string_view::npos) continue;
    const std::variant<EditRow, std::string> step = ReadLine(line, decimal_point);
    if (const auto* reason = std::get_if<std::string>(&step)) {
      return StepTextFault{number, *reason};
    }
    steps.push_back(std::get<EditRow>(step));
  }
  return steps;
}

}  // namespace pelmora
