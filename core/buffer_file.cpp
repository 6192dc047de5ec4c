#include "core/buffer_file.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "core/number_text.h"

namespace pelmora {
namespace {

constexpr char kIndexLine[] = "Index";
constexpr char kSequenceLine[] = "Sequence ";
constexpr char kLineEnd[] = "\r\n";
constexpr char kDecimalPoint[] = ".";  // also where the program's user writes a comma

// Longer than any line of a buffer file, short enough that a file without line ends costs nothing.
constexpr std::size_t kLongestLine = 64 * 1024;

// The next line, in `buffer`, without its end and its leading blanks. Nothing when there is none,
// when it is too long, or when the stream fails.
std::optional<std::string_view> NextLine(std::istream& file, std::span<char> buffer) {
  file.getline(buffer.data(), static_cast<std::streamsize>(buffer.size()));
  if (file.fail()) return std::nullopt;
  auto length = static_cast<std::size_t>(file.gcount());
  if (!file.eof()) --length;  // the line feed is counted, too
  std::string_view line(buffer.data(), length);
  if (line.ends_with('\r')) line.remove_suffix(1);
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  return line;
}

std::optional<std::int16_t> ToInt16(std::string_view text) {
  const std::optional<double> number = ParseNumber(text, kDecimalPoint);
  const std::optional<std::int32_t> value = number ? RoundHalfEven(*number) : std::nullopt;
  if (!value || !std::in_range<std::int16_t>(*value)) return std::nullopt;
  return static_cast<std::int16_t>(*value);
}

std::optional<std::uint8_t> ToPosition(std::string_view text) {
  const std::optional<double> number = ParseNumber(text, kDecimalPoint);
  if (!number || *number < 0 || *number >= kHighestPosition + 1) return std::nullopt;
  return static_cast<std::uint8_t>(*number);
}

bool ParseStep(std::string_view line, SequenceRecord& record, std::size_t step) {
  for (std::uint8_t& position : record.Position[step]) {
    const std::optional<std::uint8_t> value = ToPosition(TakeField(line));
    if (!value) return false;
    position = *value;
  }
  const std::optional<std::int16_t> duration = ToInt16(TakeField(line));
  if (!duration) return false;
  record.Duration[step] = *duration;
  return true;
}

std::string SequenceLine(std::size_t sequence) {
  return kSequenceLine + std::to_string(sequence);
}

}  // namespace

std::string FormatBufferFile(const SequenceTable& table) {
  std::string text = std::string(kIndexLine) + kLineEnd;
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    text += ' ' + std::to_string(table.SeqSteps[sequence]) + ' ' + kLineEnd;
  }
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    text += SequenceLine(sequence) + kLineEnd;
    const SequenceRecord& record = table.SeqTable[sequence];
    const auto steps = static_cast<std::size_t>(table.SeqSteps[sequence]);
    for (std::size_t step = 0; step < steps; ++step) {
      for (const int position : record.Position[step]) text += std::to_string(position) + '\t';
      text += std::to_string(record.Duration[step]) + '\t' + kLineEnd;
    }
  }
  return text;
}

std::unique_ptr<SequenceTable> ParseBufferFile(std::istream& file) {
  auto table = std::make_unique<SequenceTable>();
  std::vector<char> buffer(kLongestLine + 1);
  const auto next = [&] { return NextLine(file, buffer); };
  if (next() != kIndexLine) return nullptr;
  for (std::int16_t& steps : table->SeqSteps) {
    const std::optional<std::string_view> line = next();
    const std::optional<std::int16_t> value = line ? ToInt16(*line) : std::nullopt;
    if (!value || *value < 0) return nullptr;
    steps = *value;
  }
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    if (next() != SequenceLine(sequence)) return nullptr;
    for (std::int16_t step = 0; step < table->SeqSteps[sequence]; ++step) {
      if (step >= kSteps) return nullptr;
      const std::optional<std::string_view> line = next();
      if (!line || !ParseStep(*line, table->SeqTable[sequence], static_cast<std::size_t>(step))) {
        return nullptr;
      }
    }
  }
  return table;
}

}  // namespace pelmora
