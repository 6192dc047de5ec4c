// Steps as text: what is written, what is read, what is refused and why.
#include <gtest/gtest.h>

#include "core/step_line.h"
#include "core/step_text.h"

namespace pelmora {
namespace {

constexpr char kComma[] = ",";

// A step with its first and last channel and its duration, the others in the centre.
EditRow Step(int first, int last, int duration) {
  EditRow step;
  step.fill(kCentre);
  step[0] = first;
  step[kChannels - 1] = last;
  step[kDurationColumn] = duration;
  step[kBreakColumn] = 0;
  return step;
}

const std::string kTenCentres = "0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t";

std::string Line(const std::string& first, const std::string& last, const std::string& duration) {
  return first + '\t' + kTenCentres + last + '\t' + duration;
}

TEST(StepText, IsANumberInEachFieldAndALineForEachStep) {
  const std::vector<EditRow> steps = {Step(0, 255, 20), Step(129, 127, 32767)};
  EXPECT_EQ(FormatStepText(steps, "."),
            Line("-64", "63.5", "20") + '\n' + Line("0.5", "-0.5", "32767") + '\n');
  EXPECT_EQ(FormatStepText(steps, kComma),
            Line("-64", "63,5", "20") + '\n' + Line("0,5", "-0,5", "32767") + '\n');
}

TEST(StepText, ReadsWhatASpreadsheetOrTheListGives) {
  const EditRow step = Step(129, 0, 100);
  const std::pair<std::string, std::vector<EditRow>> cases[] = {
      {"", {}},
      {Line("0.5", "-64", "100"), {step}},
      {Line("0,5", "-64", "100"), {step}},
      {Line("0,5 °", "-64°", "100 ms"), {step}},
      {Line(" +0.50  ", "-64.0 ° ", "100.0  ms") + "\t", {step}},
      {WithBreakMark(TableLine(step, kComma)) + "\n", {step}},
      {WithBreakMark(EditorLine(step, kComma)), {step}},
      {Line("0.5", "-64", "100") + "\r" + Line("63,5", "0.25", "20\t\t") + "\r\n" +
           Line("-0.25", "-64", "32767") + "\n",
       {step, Step(255, 128, 20), Step(127, 0, 32767)}},
      {Line("0", "0", "20.5") + "\n" + Line("0", "0", "21.5"),
       {Step(128, 128, 20), Step(128, 128, 22)}},
  };
  for (const auto& [text, steps] : cases) {
    std::vector<EditRow> read = {Step(1, 2, 3)};
    const auto fault = ReadStepText(text, kComma, read);
    EXPECT_FALSE(fault) << text << ": " << fault->reason;
    EXPECT_EQ(read, steps) << text;
  }
}

TEST(StepText, RefusesTheWholeTextForOneLineThatIsNoStep) {
  const std::string good = Line("0", "0", "100");
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"it has fewer than 13 fields", {"", "hello", kTenCentres + "0\t0"}},
      {"the angle of Ch0 is no number",
       {Line("", "0", "100"), Line("°", "0", "100"), Line("1.5.5", "0", "100"),
        Line("1.000,5", "0", "100"), Line("0 ms", "0", "100"), Line("nan", "0", "100")}},
      {"the angle of Ch11 is no number", {Line("0", "zero", "100")}},
      {"the angle of Ch0 is outside -64 to 63,5 °", {Line("-64.01", "0", "100")}},
      {"the angle of Ch11 is outside -64 to 63,5 °", {Line("0", "63,51", "100")}},
      {"the duration is no number",
       {Line("0", "0", ""), Line("0", "0", "100 °"), Line("0", "0", "1e999")}},
      {"the duration is outside 20 to 32767 ms",
       {Line("0", "0", "19.9"), Line("0", "0", "32767.1"), Line("0", "0", "-100")}},
  };
  for (const auto& [reason, lines] : cases) {
    for (const std::string& line : lines) {
      const std::vector<EditRow> before = {Step(1, 2, 3)};
      std::vector<EditRow> read = before;
      const auto fault = ReadStepText(good + "\n" + good + "\r\n" + line + "\r", kComma, read);
      ASSERT_TRUE(fault) << line;
      EXPECT_EQ(fault->line, 3) << line;
      EXPECT_EQ(fault->reason, reason) << line;
      EXPECT_EQ(read, before) << line;
    }
  }
}

}  // namespace
}  // namespace pelmora
