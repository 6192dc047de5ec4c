// Numbers, step lines, and the moves between table and edit buffer.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <map>
#include <memory>

#include "core/number_text.h"
#include "core/sequence_store.h"
#include "core/step_line.h"

namespace pelmora {
namespace {

const std::string kMomayyez = "\u066B";  // the Arabic decimal separator: two bytes

TEST(NumberText, Parsing) {
  const std::map<std::string, double> good = {{"12", 12}, {"-63.5", -63.5}, {"  7 ", 7},
                                              {"+5", 5},  {".5", .5},       {"-5.", -5},
                                              {"007", 7}, {"1e2", 100}};
  for (const auto& [text, value] : good) EXPECT_EQ(ParseNumber(text, "."), value) << text;
  EXPECT_EQ(ParseNumber("-63,5", ","), -63.5);
  EXPECT_EQ(ParseNumber("12", ","), 12);
  EXPECT_EQ(ParseNumber("0\u066B5", kMomayyez), .5);

  const std::string bad[] = {"",     "   ",   "-",   "+-5",   "--5",  "- 5",
                             ".",    "5x",    "x5",  "1 2",   "0x10", "inf",
                             "-nan", "1e999", "5\t", "1.2.3", "63,5", std::string("1\0", 2)};
  for (const std::string& text : bad) EXPECT_FALSE(ParseNumber(text, ".")) << text;
  for (const std::string text : {"63.5", "1,2,3", "1,2.3", "0\u066B5"}) {
    EXPECT_FALSE(ParseNumber(text, ",")) << text;
  }
}

TEST(NumberText, HalvesGoToTheEvenNeighbour) {
  const std::array<int, 3> quotients[] = {{5, 2, 2},  {7, 2, 4}, {-5, 2, -2}, {-7, 2, -4},
                                          {-1, 2, 0}, {8, 3, 3}, {-8, 3, -3}, {6, 3, 2}};
  for (const auto& [numerator, denominator, result] : quotients) {
    EXPECT_EQ(DivideHalfEven(numerator, denominator), result) << numerator << '/' << denominator;
  }
  const std::array<double, 2> values[] = {{100.5, 100},
                                          {101.5, 102},
                                          {-0.5, 0},
                                          {-1.5, -2},
                                          {2147483647.25, 2147483647},
                                          {-2147483648.5, -2147483648.0}};
  std::fesetround(FE_UPWARD);  // a library that changes the rounding mode changes no result
  for (const auto& [value, result] : values) EXPECT_EQ(RoundHalfEven(value), result) << value;
  std::fesetround(FE_TONEAREST);
  for (const double value : {2147483647.5, -2147483649.0, 1e300, std::nan("")}) {
    EXPECT_FALSE(RoundHalfEven(value)) << value;
  }
}

EditRow Row(int first, int others, int last, int duration_ms) {
  EditRow row;
  row.fill(others);
  row[0] = first;
  row[kChannels - 1] = last;
  row[kDurationColumn] = duration_ms;
  row[kBreakColumn] = 0;
  return row;
}

// A line of eleven channels at the centre, with the first angle and all that follows them as
// given.
std::string Line(const std::string& angle, const std::string& rest) {
  std::string line = angle + '\t';
  for (int c = 1; c < kChannels; ++c) line += "0 °\t";
  return line + rest;
}

TEST(StepLine, IsBuiltFromTheTableAndInTheEditor) {
  const std::tuple<int, std::string, std::string> cases[] = {
      {0, "-64 °", "."}, {126, "-1 °", "."},  {127, "-0.5 °", "."},
      {128, "0 °", "."}, {129, "0,5 °", ","}, {255, "63\u066B5 °", kMomayyez}};
  for (const auto& [position, field, point] : cases) {
    EXPECT_EQ(TableLine(Row(position, 128, 128, 100), point), Line(field, "100  ms\t"));
  }
  std::array<std::string, kChannels> fields;
  fields.fill("0 °");
  fields[0] = "as it stands";
  EXPECT_EQ(EditorLine(fields, -20), Line("as it stands", "-20 ms"));
}

TEST(StepLine, EveryPositionReadsBack) {
  for (const std::string& point : {std::string("."), std::string(","), kMomayyez}) {
    for (int position = 0; position <= 255; ++position) {
      const EditRow row = Row(position, 255 - position, position / 2, 100 * position - 300);
      EditRow read = Row(1, 1, 1, 1);
      ASSERT_TRUE(ReadStepLine(WithBreakMark(TableLine(row, point)), point, read)) << position;
      EXPECT_EQ(read, row);
    }
  }
}

TEST(StepLine, ReadsOtherTexts) {
  const std::tuple<std::string, std::string, int, int> good[] = {
      {"0.25 °", "100 ms", 128, 100},      {"-0.25 °", "100 ms", 127, 100},
      {"63.5 °", "100  ms\t", 255, 100},   {"-64", "100", 0, 100},
      {" 1 ° ", " 100 ", 130, 100},        {"1 ° °", "-5 ms ms", 130, -5},
      {"1 °", "100.5 ms\t\t\t", 130, 100}, {"1 °", "101.5 ms\tjunk\tBREAK!", 130, 102},
      {"300 °", "70000 ms", 728, 70000}};
  for (const auto& [angle, rest, position, duration] : good) {
    EditRow read = Row(0, 1, 1, 0);
    read[kBreakColumn] = 1;
    ASSERT_TRUE(ReadStepLine(Line(angle, rest), ".", read)) << angle << ", " << rest;
    EditRow expected = Row(position, 128, 128, duration);
    expected[kBreakColumn] = 1;
    EXPECT_EQ(read, expected) << angle << ", " << rest;
  }
  const std::pair<std::string, std::string> bad[] = {
      {"", "100 ms"},     {"0,5 °", "100 ms"}, {"°", "100 ms"},
      {"1e12", "100 ms"}, {"\t0 °", "100 ms"}, {"0 °", ""},
      {"0 °", "ms"},      {"0 °", "BREAK!"},   {"0 °", "1e12 ms"}};
  for (const auto& [angle, rest] : bad) {
    EditRow row = Row(1, 2, 3, 4);
    EXPECT_FALSE(ReadStepLine(Line(angle, rest), ".", row)) << angle << ", " << rest;
    EXPECT_EQ(row, Row(1, 2, 3, 4)) << angle << ", " << rest;
  }
}

TEST(StepLine, BreakMarks) {
  const std::string table_line = TableLine(Row(128, 128, 128, 100), ".");
  const std::string marked = WithBreakMark(table_line);
  EXPECT_TRUE(marked.ends_with("100  ms\t\tBREAK!"));
  EXPECT_TRUE(HasBreakMark(marked));
  EXPECT_EQ(WithoutBreakMarks(marked), table_line);
  EXPECT_EQ(WithoutBreakMarks(WithBreakMark(marked)), table_line);
  for (const std::string unmarked : {"a\tBreak!", "a BREAK!", "a\tBREAK"}) {
    EXPECT_FALSE(HasBreakMark(unmarked));
    EXPECT_EQ(WithoutBreakMarks(unmarked), unmarked);
  }
}

TEST(SequenceStore, StoresAllRowsAndLoadsTheSteps) {
  auto data = std::make_unique<Declaration>();
  for (int r = 0; r < kSteps; ++r) {
    data->EditBuffer[static_cast<std::size_t>(r)] = Row(r, 255 - r, 7, r * 128 - 32768);
  }
  data->EditBuffer[4][kBreakColumn] = 1;
  data->CurSeq = 15;
  ASSERT_TRUE(StoreEditBuffer(*data, 5));
  EXPECT_EQ(data->SeqSteps[15], 5);

  data->EditBuffer = {};
  EXPECT_EQ(LoadEditBuffer(*data), 5);
  EXPECT_EQ(data->EditBuffer[4], Row(4, 251, 7, 4 * 128 - 32768));  // and no breakpoint
  EXPECT_EQ(data->EditBuffer[5], EditRow{});
  data->SeqSteps[15] = 300;
  EXPECT_EQ(LoadEditBuffer(*data), 256);
  EXPECT_EQ(data->EditBuffer[255], Row(255, 0, 7, 255 * 128 - 32768));  // leftovers are stored, too

  data->EditBuffer[255][kBreakColumn] = 1;
  data->TotalBytes = data->SeqOffset[15] = 28;
  ClearBreakFlags(*data);
  ClearTable(*data);
  EXPECT_EQ(data->TotalBytes + data->SeqSteps[15] + data->SeqOffset[15], 0);
  EXPECT_EQ(data->SeqTable[15].Position[255][0] + data->SeqTable[15].Duration[255], 0);
  EXPECT_EQ(data->EditBuffer[255], Row(255, 0, 7, 255 * 128 - 32768));
  EXPECT_EQ(data->CurSeq, 15);
}

TEST(SequenceStore, RefusesValuesThatDoNotFit) {
  const std::tuple<std::size_t, int, int, bool> cases[] = {
      {0, -1, 3, false},    {0, 256, 3, false},    {11, 255, 3, true},    {11, 256, 3, false},
      {12, 32767, 3, true}, {12, 32768, 3, false}, {12, -32768, 3, true}, {12, -32769, 3, false},
      {0, 128, 256, true},  {0, 128, 257, false},  {0, 128, -1, false},   {0, 128, 0, true}};
  for (const auto& [column, value, lines, fits] : cases) {
    auto data = std::make_unique<Declaration>();
    data->SeqSteps[0] = 9;
    data->EditBuffer[0][5] = 77;
    data->EditBuffer[255][column] = value;  // a leftover row counts like any other
    EXPECT_EQ(StoreEditBuffer(*data, lines), fits) << column << ": " << value;
    EXPECT_EQ(data->SeqSteps[0], fits ? lines : 9);
    EXPECT_EQ(data->SeqTable[0].Position[0][5], fits ? 77 : 0);
  }
}

}  // namespace
}  // namespace pelmora
