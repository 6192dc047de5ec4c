// Buffer files, byte by byte, and everything else that an operator may pick in the dialog.
#include "core/buffer_file.h"

#include <gtest/gtest.h>

#include <clocale>
#include <memory>
#include <sstream>

#include "rig/bytes.h"
#include "rig/sequences.h"

namespace pelmora {
namespace {

using rig::ExampleFile;
using rig::Repeat;

std::string With(std::string text, const std::string& old, const std::string& replacement) {
  return text.replace(text.find(old), old.size(), replacement);
}

// A file with so many steps in sequence 0.
std::string FileWith(const std::string& step_line, int steps = 1) {
  const std::string counted = With(rig::FileOf({}, "\n"), " 0 ", std::to_string(steps));
  return With(counted, "Sequence 0\n", "Sequence 0\n" + Repeat(step_line + "\n", steps));
}

// What a text holds; null when it is refused.
std::unique_ptr<SequenceTable> Parsed(const std::string& text) {
  std::istringstream file(text);
  return ParseBufferFile(file);
}

TEST(BufferFile, FullTablesComeBackInEveryLocale) {
  const std::string full = rig::FileOf(rig::FilledSequences(7, 4096, 1638));
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // where the machine has it
  const auto data = Parsed(full);
  ASSERT_TRUE(data);
  EXPECT_EQ(FormatBufferFile(*data), full);
  EXPECT_TRUE(Parsed(FileWith(Repeat("1.5\t", 12) + "20")));
  std::setlocale(LC_ALL, "C");
}

TEST(BufferFile, FieldsOfAStep) {
  const std::string eleven = Repeat("\t7", 11);
  const std::tuple<std::string, std::string, int, int> good[] = {
      {"12", "\t100\t", 12, 100},    {"12", "\t100", 12, 100},     {"12", "\t100\tx\t,", 12, 100},
      {"  12 ", "\t 100 ", 12, 100}, {"12.7", "\t100.5", 12, 100}, {"255.9", "\t101.5", 255, 102},
      {"0", "\t-32768", 0, -32768},  {"0", "\t32767.4", 0, 32767}};
  for (const auto& [first, rest, position, duration] : good) {
    const auto data = Parsed(FileWith(first + eleven + rest));
    ASSERT_TRUE(data) << first << rest;
    EXPECT_EQ(data->SeqTable[0].Position[0][0], position) << first;
    EXPECT_EQ(data->SeqTable[0].Position[0][11], 7) << first;
    EXPECT_EQ(data->SeqTable[0].Duration[0], duration) << rest;
  }
  for (const std::string field :
       {"256", "-0.5", "x", "", "12,7", "\"12\"", "inf", "0x1", "1e99", "12 7", "\t12"}) {
    EXPECT_FALSE(Parsed(FileWith(field + eleven + "\t100"))) << field;
  }
  for (const std::string rest :
       {"\t40000", "\t32767.5", "\t-32769", "\t\t100", "\t", "", "\tnan", "\t100\r\r"}) {
    EXPECT_FALSE(Parsed(FileWith("12" + eleven + rest))) << rest;
  }
}

TEST(BufferFile, LinesOfAFile) {
  const std::string example = ExampleFile();
  for (const std::string& text : {ExampleFile("\n"), ExampleFile("\n    "), example + "more\r\n",
                                  With(example, " 2 ", "1.6")}) {
    EXPECT_TRUE(Parsed(text)) << text;
  }
  // clang-format off
  const std::pair<std::string, std::string> spoilt[] = {
      {"Index", "index"},           {"Index", "Index "},            {"Index", "\"Index\""},
      {"Index", ""},                {"Sequence 2", "Sequence 3"},   {"Sequence 2", "Sequence  2"},
      {"Sequence 2\r\n", ""},       {"Sequence 2", "\r\nSequence 2"},  {"5120", "\n5120"},
      {" 2 ", " 1 "},               {" 2 ", " 3 "},                 {" 2 ", "40000"},
      {" 2 ", ""},                  {" 0 ", "-1 "},                 {example, std::string(99, '\0')}};
  // clang-format on
  for (const auto& [old, replacement] : spoilt) {
    EXPECT_FALSE(Parsed(With(example, old, replacement))) << old << " -> " << replacement;
  }
  for (std::size_t cut = 0; cut <= example.size(); ++cut) {  // the last line may lack its end
    EXPECT_EQ(Parsed(example.substr(0, cut)) != nullptr, cut >= example.size() - 2) << cut;
  }
  for (const int steps : {256, 257}) {
    EXPECT_EQ(Parsed(FileWith(Repeat("0\t", 12) + "20", steps)) != nullptr, steps == 256) << steps;
  }
}

}  // namespace
}  // namespace pelmora
