// Buffer files, byte by byte, and everything else that an operator may pick in the dialog.
#include "core/buffer_file.h"

#include <gtest/gtest.h>

#include <clocale>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>

#include "rig/sequences.h"

namespace pelmora {
namespace {

using rig::ExampleFile;

std::string Repeat(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

std::string Titles(int first, int last, const std::string& end) {
  std::string lines;
  for (int s = first; s <= last; ++s) lines += "Sequence " + std::to_string(s) + end;
  return lines;
}

// A file of one step, which stands on line 19.
std::string OneStep(const std::string& step_line) {
  return "Index\n1\n" + Repeat("0\n", 15) + "Sequence 0\n" + step_line + "\n" + Titles(1, 15, "\n");
}

std::string With(std::string text, const std::string& old, const std::string& replacement) {
  return text.replace(text.find(old), old.size(), replacement);
}

bool Parses(const std::string& text, Declaration& data) {
  std::istringstream file(text);
  return ParseBufferFile(file, data);
}

bool Parses(const std::string& text) {
  auto data = std::make_unique<Declaration>();
  return Parses(text, *data);
}

TEST(BufferFile, WorkedExampleBothWays) {
  auto data = std::make_unique<Declaration>();
  data->SeqTable[1].Duration[0] = 55;  // beyond its sequence's steps
  ASSERT_TRUE(Parses(ExampleFile(), *data));
  EXPECT_EQ(data->SeqSteps[0], 2);
  EXPECT_EQ(data->SeqTable[0].Position[1][0], 255);
  EXPECT_EQ(data->SeqTable[0].Duration[1], 1000);
  EXPECT_EQ(data->SeqTable[3].Position[0][11], 0);
  EXPECT_EQ(data->SeqTable[3].Duration[0], 5120);
  EXPECT_EQ(FormatBufferFile(*data), ExampleFile());
  EXPECT_EQ(FormatBufferFile(Declaration{}),
            "Index\r\n" + Repeat(" 0 \r\n", 16) + Titles(0, 15, "\r\n"));
}

TEST(BufferFile, FullTablesComeBackInEveryLocale) {
  std::mt19937 random(7);
  auto data = std::make_unique<Declaration>();
  data->SeqSteps.fill(256);
  for (SequenceRecord& record : data->SeqTable) {
    for (auto& step : record.Position) {
      for (auto& position : step) position = static_cast<std::uint8_t>(random());
    }
    for (auto& duration : record.Duration) duration = static_cast<std::int16_t>(random());
  }
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // where the machine has it
  const std::string text = FormatBufferFile(*data);
  auto back = std::make_unique<Declaration>();
  ASSERT_TRUE(Parses(text, *back));
  EXPECT_TRUE(Parses(OneStep(Repeat("1.5\t", 12) + "20")));
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(back->SeqSteps, data->SeqSteps);
  for (std::size_t s = 0; s < kSequences; ++s) {
    EXPECT_EQ(back->SeqTable[s].Position, data->SeqTable[s].Position) << s;
    EXPECT_EQ(back->SeqTable[s].Duration, data->SeqTable[s].Duration) << s;
  }
}

TEST(BufferFile, FieldsOfAStep) {
  const std::string eleven = Repeat("\t7", 11);
  const std::tuple<std::string, int, int> good[] = {
      {"12" + eleven + "\t100\t", 12, 100},     {"12" + eleven + "\t100", 12, 100},
      {"12" + eleven + "\t100\tx\t,", 12, 100}, {"  12 " + eleven + "\t 100 ", 12, 100},
      {"12.7" + eleven + "\t100.5", 12, 100},   {"255.9" + eleven + "\t101.5", 255, 102},
      {"0" + eleven + "\t-32768", 0, -32768},   {"0" + eleven + "\t32767.4", 0, 32767},
  };
  for (const auto& [line, position, duration] : good) {
    auto data = std::make_unique<Declaration>();
    ASSERT_TRUE(Parses(OneStep(line), *data)) << line;
    EXPECT_EQ(data->SeqTable[0].Position[0][0], position) << line;
    EXPECT_EQ(data->SeqTable[0].Position[0][11], 7) << line;
    EXPECT_EQ(data->SeqTable[0].Duration[0], duration) << line;
  }
  for (const std::string field :
       {"256", "-0.5", "x", "", "12,7", "\"12\"", "inf", "0x1", "1e99", "12 7", "\t12"}) {
    EXPECT_FALSE(Parses(OneStep(field + eleven + "\t100"))) << field;
  }
  for (const std::string rest :
       {"\t40000", "\t32767.5", "\t-32769", "\t\t100", "\t", "", "\tnan", "\t100\r\r"}) {
    EXPECT_FALSE(Parses(OneStep("12" + eleven + rest))) << rest;
  }
}

TEST(BufferFile, LinesOfAFile) {
  const std::string example = ExampleFile();
  for (const std::string& text : {ExampleFile("\n"), ExampleFile("\n    "), example + "more\r\n",
                                  With(example, " 2 ", "1.6")}) {
    EXPECT_TRUE(Parses(text)) << text;
  }
  const std::pair<std::string, std::string> spoilt[] = {{"Index", "index"},
                                                        {"Index", "Index "},
                                                        {"Index", "\"Index\""},
                                                        {"Index", ""},
                                                        {" 2 ", " 1 "},
                                                        {" 2 ", " 3 "},
                                                        {" 0 ", "-1 "},
                                                        {" 2 ", ""},
                                                        {" 2 ", "40000"},
                                                        {"Sequence 2", "Sequence 3"},
                                                        {"Sequence 2", "Sequence  2"},
                                                        {"Sequence 2\r\n", ""},
                                                        {"Sequence 2", "\r\nSequence 2"},
                                                        {"5120", "\n5120"},
                                                        {example, std::string(1000, '\0')}};
  for (const auto& [old, replacement] : spoilt) {
    EXPECT_FALSE(Parses(With(example, old, replacement))) << old << " -> " << replacement;
  }
  for (std::size_t cut = 0; cut <= example.size(); ++cut) {  // the last line may lack its end
    EXPECT_EQ(Parses(example.substr(0, cut)), cut >= example.size() - 2) << cut;
  }
  for (const int steps : {256, 257, 300}) {
    const std::string full = "Index\n" + std::to_string(steps) + "\n" + Repeat("0\n", 15) +
                             "Sequence 0\n" + Repeat(Repeat("0\t", 12) + "20\n", steps) +
                             Titles(1, 15, "\n");
    EXPECT_EQ(Parses(full), steps == 256) << steps;
  }
}

TEST(BufferFile, OneEndlessLineIsNotReadToItsEnd) {
  const std::string blanks(65536, ' ');
  EXPECT_FALSE(Parses(blanks + ExampleFile()));
  EXPECT_TRUE(Parses(blanks.substr(100) + ExampleFile()));
  auto data = std::make_unique<Declaration>();
  for (const char* path : {"/dev/zero", "/", "/no/such/file", "/dev/null"}) {
    std::ifstream file(path);
    EXPECT_FALSE(ParseBufferFile(file, *data)) << path;
  }
}

// A stream that breaks off with an error, like a medium that is pulled.
class BreakingBuffer : public std::stringbuf {
 public:
  using std::stringbuf::stringbuf;
  int_type underflow() override { throw std::ios_base::failure("read error"); }
};

}  // namespace
}  // namespace pelmora
