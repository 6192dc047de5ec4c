#include "core/buffer_file.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "core/fields.h"
#include "core/number_text.h"
#include "core/sequence_store.h"

namespace pelmora {
namespace {

constexpr std::string_view kIndexLine = "Index";
constexpr std::string_view kSequenceLine = "Sequence ";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kDecimalPoint = ".";  // also where the program's user writes a comma

// Longer than any line of a buffer file, short enough that a file without line ends costs nothing.
constexpr std::size_t kLongestLine = 64 * 1024;

class LineReader {
 public:
  explicit LineReader(std::istream& file) : file_(file), buffer_(kLongestLine + 1) {}

  // The next line without its end and its leading blanks, valid until the next call. Nothing when
  // there is none, when it is too long, or when the stream fails.
  std::optional<std::string_view> Next() {
    file_.getline(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    if (file_.fail()) return std::nullopt;
    auto length = static_cast<std::size_t>(file_.gcount());
    if (!file_.eof()) --length;  // the line feed is counted, too
    std::string_view line(buffer_.data(), length);
    if (line.ends_with('\r')) line.remove_suffix(1);
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    return line;
  }

 private:
  std::istream& file_;
  std::vector<char> buffer_;
};

std::optional<std::int16_t> ToInt16(std::string_view text) {
  const std::optional<double> number = ParseNumber(text, kDecimalPoint);
  const std::optional<std::int32_t> value = number ? RoundHalfEven(*number) : std::nullopt;
  using Limits = std::numeric_limits<std::int16_t>;
  if (!value || *value < Limits::min() || *value > Limits::max()) return std::nullopt;
  return static_cast<std::int16_t>(*value);
}

std::optional<std::uint8_t> ToPosition(std::string_view text) {
  const std::optional<double> number = ParseNumber(text, kDecimalPoint);
  if (!number) return std::nullopt;
  const double value = std::floor(*number);
  if (!(value >= 0 && value <= 255)) return std::nullopt;
  return static_cast<std::uint8_t>(value);
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
  return std::string(kSequenceLine) + std::to_string(sequence);
}

}  // namespace

std::string FormatBufferFile(const SequenceTable& table) {
  std::string text(kIndexLine);
  text += kLineEnd;
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    text.append(" ")
        .append(std::to_string(StoredSteps(table, sequence)))
        .append(" ")
        .append(kLineEnd);
  }
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    text.append(SequenceLine(sequence)).append(kLineEnd);
    const SequenceRecord& record = table.SeqTable[sequence];
    const auto steps = static_cast<std::size_t>(StoredSteps(table, sequence));
    for (std::size_t step = 0; step < steps; ++step) {
      for (const std::uint8_t position : record.Position[step]) {
        text.append(std::to_string(position)).append("\t");
      }
      text.append(std::to_string(record.Duration[step])).append("\t").append(kLineEnd);
    }
  }
  return text;
}

std::unique_ptr<SequenceTable> ParseBufferFile(std::istream& file) {
  auto table = std::make_unique<SequenceTable>();
  LineReader reader(file);
  if (reader.Next() != kIndexLine) return nullptr;
  for (std::int16_t& steps : table->SeqSteps) {
    const std::optional<std::string_view> line = reader.Next();
    const std::optional<std::int16_t> value = line ? ToInt16(*line) : std::nullopt;
    if (!value || *value < 0) return nullptr;
    steps = *value;
  }
  for (std::size_t sequence = 0; sequence < kSequences; ++sequence) {
    if (reader.Next() != SequenceLine(sequence)) return nullptr;
    for (std::int16_t step = 0; step < table->SeqSteps[sequence]; ++step) {
      if (step >= kSteps) return nullptr;
      const std::optional<std::string_view> line = reader.Next();
      if (!line || !ParseStep(*line, table->SeqTable[sequence], static_cast<std::size_t>(step))) {
        return nullptr;
      }
    }
  }
  return table;
}

}  // namespace pelmora
