// Numbers, step lines, steps as text, the moves between sequence table and edit buffer, and
// interpolated steps.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <span>
#include <tuple>

#include "core/interpolation.h"
#include "core/number_text.h"
#include "core/sequence_store.h"
#include "core/step_line.h"
#include "core/step_text.h"
#include "core/table_snapshot.h"
#include "rig/bytes.h"
#include "rig/sequences.h"

namespace pelmora {
namespace {

using namespace rig;

const std::string kMomayyez = "\u066B";  // the Arabic decimal separator: two bytes

TEST(NumberText, Parsing) {
  const std::tuple<const char*, std::string, double> good[] = {
      {"12", ".", 12}, {"-63.5", ".", -63.5}, {"  7 ", ".", 7},           {"+5", ".", 5},
      {".5", ".", .5}, {"1e2", ".", 100},     {"-5.", ".", -5},           {"007", ".", 7},
      {"12", ",", 12}, {"-63,5", ",", -63.5}, {"0\u066B5", kMomayyez, .5}};
  for (const auto& [text, point, value] : good) EXPECT_EQ(ParseNumber(text, point), value) << text;

  const std::string bad[] = {"",     "   ",   "-",   "+-5",   "--5",  "- 5",
                             ".",    "5x",    "x5",  "1 2",   "0x10", "inf",
                             "-nan", "1e999", "5\t", "1.2.3", "63,5", std::string("1\0", 2)};
  for (const std::string& text : bad) EXPECT_FALSE(ParseNumber(text, ".")) << text;
  for (const std::string text : {"63.5", "1,2,3", "1,2.3", "0\u066B5"}) {
    EXPECT_FALSE(ParseNumber(text, ",")) << text;
  }
}

TEST(NumberText, HalvesGoToTheEvenNeighbour) {
  const std::tuple<int, int, int> divisions[] = {{5, 2, 2},   {7, 2, 4}, {-5, 2, -2}, {-7, 2, -4},
                                                 {-1, 2, 0},  {5, 3, 2}, {4, 3, 1},   {-4, 3, -1},
                                                 {-5, 3, -2}, {6, 3, 2}, {0, 7, 0}};
  for (const auto& [over, under, whole] : divisions) {
    EXPECT_EQ(DivideHalfEven(over, under), whole) << over << '/' << under;
  }
  const std::pair<double, int> values[] = {{0.5, 0}, {1.5, 2}, {-0.5, 0}, {-2.5, -2}, {2.4999, 2}};
  for (const auto& [value, whole] : values) EXPECT_EQ(RoundHalfEven(value), whole) << value;
  EXPECT_EQ(RoundHalfEven(2147483647.4), 2147483647);
  EXPECT_EQ(RoundHalfEven(-2147483648.5), -2147483648);
  for (const double value : {2147483647.5, -2147483649.0, 1e300})
    EXPECT_FALSE(RoundHalfEven(value));
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
  return angle + '\t' + Repeat("0 °\t", 11) + rest;
}

TEST(StepLine, IsBuiltInTwoFormsInWhichOneValueCanChange) {
  const EditRow step = Row(127, kCentre, 0, 100);
  const std::string rest = '\t' + Repeat("0 °\t", 10) + "-64 °\t";
  EXPECT_EQ(TableLine(step, ","), "-0,5 °" + rest + "100  ms\t");
  EXPECT_EQ(EditorLine(step, ","), "-0,5 °" + rest + "100 ms");
  const std::string line = TableLine(step, ",") + "\tBREAK!";
  EXPECT_EQ(WithValue(line, 0, 255, ","), "63,5 °" + rest + "100  ms\t\tBREAK!");
  EXPECT_EQ(WithValue(line, 11, 0, ","), line);
  EXPECT_EQ(WithValue(EditorLine(step, ","), 12, 32767, ","), "-0,5 °" + rest + "32767 ms");
}

TEST(StepLine, MarksComeOneAtATimeAndGoTogether) {
  const std::pair<std::string, std::string> cases[] = {
      {"a ms", "a ms"},         {"a ms\tBREAK!", "a ms"},     {"a  ms\t\tBREAK!", "a  ms\t"},
      {"a BREAK!", "a BREAK!"}, {"a\tBREAK!b\tBREAK!", "ab"}, {"a\tBREAK!\tBREAK!", "a"},
      {"a\tBREAK", "a\tBREAK"}, {"a\tBreak!", "a\tBreak!"}};
  for (const auto& [line, without] : cases) {
    EXPECT_EQ(WithoutBreakMarks(line), without);
    EXPECT_EQ(HasBreakMark(line), line != without) << line;
    EXPECT_EQ(WithBreakMark(line), line + "\tBREAK!");
  }
}

TEST(StepLine, EveryPositionReadsBack) {
  for (const std::string& point : {std::string("."), std::string(","), kMomayyez}) {
    for (int position = 0; position <= 255; ++position) {
      const EditRow row = Row(position, 255 - position, position / 2, 100 * position - 300);
      EXPECT_EQ(ReadStepLine(TableLine(row, point), point), row) << position;
    }
  }
}

TEST(StepLine, ReadsOtherTexts) {
  const std::tuple<std::string, std::string, int, int> good[] = {
      {"0.25 °", "100 ms", 128, 100},      {"-0.25 °", "100 ms", 127, 100},
      {"63.5 °", "100  ms\t", 255, 100},   {" -64", " 100 ", 0, 100},
      {"1 °", "100.5 ms\t\t\t", 130, 100}, {"1 ° °", "101.5 ms\tjunk\tBREAK!", 130, 102},
      {"300 °", "70000 ms", 728, 70000}};
  for (const auto& [angle, rest, position, duration] : good) {
    EditRow expected = Row(position, 128, 128, duration);
    expected[kBreakColumn] = rest.ends_with("BREAK!") ? 1 : 0;
    EXPECT_EQ(ReadStepLine(Line(angle, rest), "."), expected) << angle << ", " << rest;
  }
  const std::pair<std::string, std::string> bad[] = {
      {"", "100 ms"}, {"0,5 °", "100 ms"}, {"1e12", "100 ms"}, {"\t0 °", "100 ms"},
      {"0 °", ""},    {"0 °", "BREAK!"},   {"0 °", "1e12 ms"}};
  for (const auto& [angle, rest] : bad) {
    EXPECT_FALSE(ReadStepLine(Line(angle, rest), ".")) << angle << ", " << rest;
  }
}

// Steps as text for other programs.
const std::string kTenCentres = "0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t";

std::string TextLine(const std::string& first, const std::string& last,
                     const std::string& duration) {
  return first + '\t' + kTenCentres + last + '\t' + duration;
}

TEST(StepText, IsWrittenPlainlyAndReadAsASpreadsheetOrTheListGivesIt) {
  const EditRow step = Row(129, kCentre, 0, 100);
  const std::string line = TextLine("0,5", "-64", "100\n");
  EXPECT_EQ(FormatStepText(std::vector{step, step}, ","), line + line);
  const std::pair<std::string, std::vector<EditRow>> cases[] = {
      {"", {}},
      {TextLine("0.5", "-64", "100"), {step}},
      {TextLine("0,5", "-64", "100"), {step}},
      {TextLine("0,5 °", "-64°", "100 ms"), {step}},
      {TextLine(" +0.50  ", "-64.0 ° ", "100.0  ms") + "\t", {step}},
      {WithBreakMark(TableLine(step, ",")) + "\n", {step}},
      {WithBreakMark(EditorLine(step, ",")), {step}},
      {TextLine("0.5", "-64", "100") + "\r" + TextLine("63,5", "0.25", "20\t\t") + "\r\n" +
           TextLine("-0.25", "-64", "32767") + "\n",
       {step, Row(255, kCentre, 128, 20), Row(127, kCentre, 0, 32767)}},
      {"\n" + TextLine("0", "0", "40") + "\n\n \t \t\r\n" + TextLine("0", "0", "60") + "\r\r\n ",
       {Row(128, kCentre, 128, 40), Row(128, kCentre, 128, 60)}},
      {TextLine("0", "0", "20.5") + "\n" + TextLine("0", "0", "21.5"),
       {Row(128, kCentre, 128, 20), Row(128, kCentre, 128, 22)}},
  };
  for (const auto& [text, steps] : cases) {
    const auto read = ReadStepText(text, ",");
    ASSERT_TRUE(std::holds_alternative<std::vector<EditRow>>(read))
        << text << ": " << std::get<StepTextFault>(read).reason;
    EXPECT_EQ(std::get<std::vector<EditRow>>(read), steps) << text;
  }
}

TEST(StepText, RefusesTheWholeTextForOneLineThatIsNoStep) {
  const std::string good = TextLine("0", "0", "100");
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"it has fewer than 13 fields", {"hello", kTenCentres + "0\t0"}},
      {"the angle of Ch0 is no number",
       {TextLine("", "0", "100"), TextLine("°", "0", "100"), TextLine("1.5.5", "0", "100"),
        TextLine("1.000,5", "0", "100"), TextLine("0 ms", "0", "100"),
        TextLine("nan", "0", "100")}},
      {"the angle of Ch11 is no number", {TextLine("0", "zero", "100")}},
      {"the angle of Ch0 is outside -64 to 63,5 °", {TextLine("-64.01", "0", "100")}},
      {"the angle of Ch11 is outside -64 to 63,5 °", {TextLine("0", "63,51", "100")}},
      {"the duration is no number",
       {TextLine("0", "0", ""), TextLine("0", "0", "100 °"), TextLine("0", "0", "1e999")}},
      {"the duration is outside 20 to 32767 ms",
       {TextLine("0", "0", "19.9"), TextLine("0", "0", "32767.1"), TextLine("0", "0", "-100")}},
  };
  for (const auto& [reason, lines] : cases) {
    for (const std::string& line : lines) {
      const auto read = ReadStepText(good + "\n\n" + good + "\r\n" + line + "\r", ",");
      ASSERT_TRUE(std::holds_alternative<StepTextFault>(read)) << line;
      EXPECT_EQ(std::get<StepTextFault>(read).line, 4) << line;
      EXPECT_EQ(std::get<StepTextFault>(read).reason, reason) << line;
    }
  }
}

TEST(SequenceStore, StoresAllRowsOfTheCurrentSequenceAndLoadsItsSteps) {
  auto data = std::make_unique<Declaration>();
  for (int i = 0; i < kSteps; ++i) {
    EditRow& row = data->EditBuffer[static_cast<std::size_t>(i)];
    row = Row(i, 7, 255 - i, 100 * i);
    row[kBreakColumn] = 1;
  }
  data->CurSeq = 15;
  ASSERT_TRUE(StoreEditBuffer(*data, 2));
  EXPECT_EQ(data->SeqSteps[15], 2);
  EXPECT_EQ(data->SeqTable[15].Duration[255], 25500) << "leftovers, too";
  EXPECT_EQ(data->SeqTable[14], SequenceRecord{});
  EXPECT_EQ(data->TotalBytes, 0) << "until the figures are computed";

  for (EditRow& row : data->EditBuffer) row = Row(1, 1, 1, 1);
  data->EditBuffer[1][kBreakColumn] = 1;
  EXPECT_EQ(LoadEditBuffer(*data), 2);
  EXPECT_EQ(data->EditBuffer[0], Row(0, 7, 255, 0));
  EditRow second = Row(1, 7, 254, 100);
  second[kBreakColumn] = 1;
  EXPECT_EQ(data->EditBuffer[1], second);
  EXPECT_EQ(data->EditBuffer[2], Row(1, 1, 1, 1));

  ComputeFlashFigures(*data);
  ClearTable(*data);
  EXPECT_EQ(data->SeqTable[15], SequenceRecord{});
  EXPECT_EQ(data->SeqSteps[15] + data->SeqOffset[15] + data->TotalBytes, 0);
  EXPECT_EQ(data->CurSeq, 15);
}

TEST(SequenceStore, RefusesValuesThatDoNotFit) {
  const std::tuple<std::size_t, int, int, bool> cases[] = {
      {0, -1, 3, false},     {11, 255, 3, true},    {11, 256, 3, false},    {12, 32767, 3, true},
      {12, 32768, 3, false}, {12, -32768, 3, true}, {12, -32769, 3, false}, {0, 128, 256, true},
      {0, 128, 257, false},  {0, 128, -1, false}};
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

TEST(TableSnapshot, ComparesWhatIsStoredAndShown) {
  Declaration data;
  data.SeqSteps[3] = 1;
  const TableSnapshot before = TakeSnapshot(data, nullptr);
  const std::pair<bool, std::function<void()>> cases[] = {
      {false, [&data] { data.SeqTable[3].Position[0][11] = 1; }},
      {false, [&data] { data.SeqTable[3].Duration[0] = 1; }},
      {true, [&data] { data.SeqTable[3].Duration[1] = 1; }},
      {true, [&data] { data.EditBuffer[0][0] = 1; }},
      {false, [&data] { data.SeqSteps[4] = 1; }},
      {false, [&data] { data.CurSeq = 1; }},
  };
  for (const auto& [same, change] : cases) {
    change();
    EXPECT_EQ(SameTable(before, TakeSnapshot(data, &before)), same);
    RestoreSnapshot(before, data);
  }
}

TEST(Interpolation, WorkedCases) {
  using Values = std::vector<int>;
  const std::tuple<int, int, int, Values, Values> cases[] = {
      {128, 148, 100, {128, 133, 138, 143}, {20, 40, 20, 20}},
      {128, 128, 100, {128, 128, 128}, {40, 20, 40}},
      {128, 128, 150, {128, 128}, {80, 80}},
      {128, 130, 60, {128, 129, 129}, {20, 20, 20}},
      {128, 129, 40, {128, 128}, {20, 20}},  // half a count goes to the even neighbour
      {129, 130, 40, {129, 130}, {20, 20}},
      {255, 0, 80, {255, 191, 128, 64}, {20, 20, 20, 20}},
      {7, 9, 130, {7}, {120}},  // 6.5 ticks
  };
  for (const auto& [from, to, duration, positions, durations] : cases) {
    const auto count = static_cast<int>(positions.size());
    std::vector<EditRow> steps;
    for (std::size_t i = 0; i < positions.size(); ++i) {
      steps.push_back(Row(positions[i], positions[i], positions[i], durations[i]));
    }
    EditRow first = Row(from, from, from, duration);
    first[kBreakColumn] = 1;
    EXPECT_EQ(Interpolate(first, Row(to, to, to, 9999), count), steps) << from << ' ' << to;
  }
}

}  // namespace
}  // namespace pelmora
