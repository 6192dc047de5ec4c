// The owner of the edited sequence by itself: what it announces and when, and the change of one
// value of a step.
#include "edit/edited_sequence.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <functional>
#include <map>

#include "core/step_line.h"
#include "platform/system/main_loop.h"
#include "rig/program_state.h"

namespace pelmora {
namespace {

using enum EditedSequence::Joins;

class EditedSequenceTest : public testing::Test {
 protected:
  EditedSequenceTest() {
    labels[0].setText("Sequence N° 0");
    edited.Form_Load();
    Do("add 10; add 20; add 30");
    QObject::connect(&edited, &EditedSequence::SequenceChanged, [this] { Hear('s'); });
    QObject::connect(&edited, &EditedSequence::SelectionChanged, [this] { Hear('i'); });
    QObject::connect(&edited, &EditedSequence::BreakpointsChanged, [this] { Hear('b'); });
  }
  ~EditedSequenceTest() override { EXPECT_EQ(box.Outstanding(), 0U); }

  static EditRow Step(int position, int duration) {
    EditRow row{};
    row.fill(position);
    row[kDurationColumn] = duration;
    row[kBreakColumn] = 0;
    return row;
  }
  static EditRow Line(int position) { return Step(position, 100); }
  static SequenceTable Table(int steps_of_each) {
    SequenceTable table;
    table.SeqSteps.fill(static_cast<std::int16_t>(steps_of_each));
    return table;
  }

  // Operations, one after the other: "select 1; add 40".
  void Do(const QString& operations) {
    for (const QString& operation : operations.split("; ", Qt::SkipEmptyParts)) {
      const QStringList words = operation.split(' ');
      const auto number = [&](int i) { return words.value(i).toInt(); };
      const auto value = [&](auto joins) {
        EXPECT_TRUE(edited.ChangeValue(number(1), number(2), number(3), joins));
      };
      const auto steps = [&] { return std::vector(size_t(number(2)), Step(number(3), number(4))); };
      const std::map<QString, std::function<void()>> kinds = {
          {"add", [&] { edited.Insert({Line(number(1))}); }},
          {"remove", [&] { edited.Remove(); }},
          {"replace", [&] { edited.ReplaceSelected(Line(number(1))); }},
          {"value", [&] { value(kYes); }},
          {"lone-value", [&] { value(kNo); }},
          {"move", [&] { edited.Move(number(1), number(2)); }},
          // A line by so many steps of this position and duration.
          {"split", [&] { edited.Replace(number(1), steps()); }},
          {"clear", [&] { edited.Clear(); }},
          {"clear-all", [&] { edited.ClearAll(); }},
          {"store", [&] { EXPECT_TRUE(edited.BufferToData()); }},
          {"show", [&] { edited.ShowSequence(number(1)); }},
          {"break", [&] { edited.Select(number(1)), edited.ToggleBreak(); }},
          {"no-breaks", [&] { edited.ResetBreakPoints(); }},
          {"load", [&] { edited.TakeTable(Table(number(1))); }},
          {"header", [&] { EXPECT_TRUE(edited.TakeHeader({})); }},
          {"reply", [&] { EXPECT_TRUE(edited.TakeReply({}, {})); }},
          {"undo", [&] { edited.Undo(); }},
          {"redo", [&] { edited.Redo(); }},
          {"select", [&] { edited.Select(number(1)); }},
          {"click", [&] { list.setCurrentRow(number(1)); }},
      };
      kinds.at(words[0])();
    }
  }

  // What is announced is complete: the list, the rows, the flags and the label agree.
  void Hear(char what) {
    heard += what;
    for (int row = 0; row < kSteps; ++row) {
      const std::string line = list.List(row).toStdString();
      EXPECT_EQ(edited.Row(row)[kBreakColumn], HasBreakMark(line));
      if (row >= edited.ListCount()) continue;
      EXPECT_EQ(edited.Row(row), ReadStepLine(line, "."));
    }
    EXPECT_EQ(labels[0].text(), QString("Sequence N° %1").arg(edited.Data().CurSeq));
  }
  std::string Heard() { return std::exchange(heard, {}); }
  // The steps that undo takes back one after the other.
  int CountUndoSteps() {
    int steps = 0;
    for (; edited.Changes().CanUndo(); ++steps) edited.Undo();
    return steps;
  }

  platform::MainLoop main_loop;
  rig::ScriptedMessageBox box{
      main_loop, [](const QString& problem) { ADD_FAILURE() << problem.toStdString(); }};
  platform::ListBox list;
  std::array<QLabel, 6> labels;
  EditedSequence edited{
      {list, labels[0], labels[1], labels[2], labels[3], labels[4], labels[5]}, box, "."};
  std::string heard;
};

TEST_F(EditedSequenceTest, AnnouncesOnceWhatAnOperationHasChanged) {
  // What comes before it, with the second of three steps selected, and what it announces: a change
  // of the sequence, of the selection (i), of breakpoints.
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"add 40", "", "si"},         {"remove", "", "s"},
      {"remove", "select 2", "si"}, {"remove", "break 0; select -1", "b"},
      {"replace 77", "", "s"},      {"value 2 5 99", "", "s"},
      {"move 1 2", "", "si"},       {"move 0 2", "", "si"},
      {"split 1 4 1 20", "", "s"},  {"clear", "break 1", "sib"},
      {"clear-all", "", "si"},      {"store", "", "s"},
      {"show 1", "", "si"},         {"break 1", "", "b"},
      {"load 2", "", "si"},         {"header", "", "s"},
      {"reply", "", "si"},          {"undo", "break 1; clear", "sib"},
      {"click 2", "", "i"},         {"select 1", "", ""},
      {"add 40", "break 0", "sib"}, {"move 1 2", "break 1", "sib"},
      {"undo", "add 40", "si"},     {"value 2 5 30", "", ""},
      {"show -1", "", ""},          {"no-breaks", "", ""},
  };
  for (const auto& [operation, before, announced] : cases) {
    SCOPED_TRACE(std::string(before) + "; " + operation);
    Do("clear-all; add 10; add 20; add 30; select 1");
    Do(before);
    heard.clear();
    Do(operation);
    EXPECT_EQ(Heard(), announced);
  }
}

// The warning processes events: everything has been announced before it, and what is done meanwhile
// is left alone after it.
TEST_F(EditedSequenceTest, WarnsWhenTheOperationIsComplete) {
  const auto warn = [this](std::function<void()> meanwhile = {}) {
    box.Expect("Program", CapacityText(), std::move(meanwhile));
  };
  warn([this] { EXPECT_EQ(heard, "si"); });
  Do("load 200; select 0");
  heard.clear();
  warn([this] {
    EXPECT_EQ(Heard(), "s");
    EXPECT_EQ(edited.ListIndex(), 0);
    EXPECT_EQ(labels[2].text(), "Step N° 0");
    Do("reply");
  });
  warn();  // "Replace" is "Add" and "Remove"
  Do("replace 5");
  EXPECT_EQ(edited.ListCount(), 0);
  EXPECT_EQ(Heard(), "si");
}

TEST_F(EditedSequenceTest, KnowsWhetherTheTableHoldsTheList) {
  EXPECT_TRUE(edited.Stored());
  for (const char* change :
       {"move 0 2", "clear", "split 1 2 20 40", "split 1 1 20 120", "split 1 1 21 100"}) {
    SCOPED_TRACE(change);
    for (const auto& [operation, stored] :
         {std::pair(change, false), {"undo", true}, {"redo", false}, {"store", true}}) {
      Do(operation);
      EXPECT_EQ(edited.Stored(), stored) << operation;
    }
    Do("undo");
  }
}

TEST_F(EditedSequenceTest, TakesValuesInTheirRange) {
  constexpr int kMs = kDurationColumn;
  const std::tuple<int, int, int, bool> cases[] = {
      {0, 0, 0, true},    {0, 0, -1, false},   {2, 11, 255, true},    {2, 11, 256, false},
      {0, kMs, 20, true}, {0, kMs, 19, false}, {2, kMs, 32767, true}, {2, kMs, 32768, false},
      {-1, 0, 1, false},  {3, 0, 1, false},    {0, -1, 1, false},     {0, kBreakColumn, 1, false}};
  for (const auto& [line, column, value, taken] : cases) {
    EXPECT_EQ(edited.ChangeValue(line, column, value, kNo), taken)
        << line << column << ' ' << value;
    EXPECT_EQ(Heard(), taken ? "s" : "");
  }
}

TEST_F(EditedSequenceTest, MergesChangesOfTheSameValueIntoOneUndoStep) {
  // How many steps of undo they are.
  const std::pair<const char*, int> cases[] = {
      {"value 0 0 1", 1},
      {"value 0 0 1; value 0 0 2; value 0 0 3", 1},
      {"lone-value 0 0 1; lone-value 0 0 2; value 0 0 3; value 0 0 4", 3},
      {"value 0 0 1; value 0 1 1; value 0 0 2", 3},
      {"value 0 0 1; value 0 0 2; value 0 0 10", 0},  // back to where it began
      {"value 0 0 1; value 0 0 10; value 0 0 2", 1},
      {"value 0 0 1; select 0; select 2; value 0 0 10", 2},
      {"value 0 0 1; move 1 2; move 2 1; value 0 0 2", 4},
      {"value 0 0 1; select 0; value 0 0 2; undo; value 0 0 3", 2},
      // What is stored is a change, although the list is as it was.
      {"move 1 2; value 0 0 1; value 0 0 10", 2},
  };
  for (const auto& [changes, steps] : cases) {
    SCOPED_TRACE(changes);
    Do("select 2");
    Do(changes);
    EXPECT_EQ(CountUndoSteps(), 3 + steps);
    Do("redo; redo; redo");  // what was composed
    EXPECT_EQ(edited.Row(0), Step(10, 100));
  }
}

TEST_F(EditedSequenceTest, KeepsFiveHundredStepsOfUndo) {
  for (int i = 0; i < 600; ++i) {
    edited.Select(i % 2);
    ASSERT_TRUE(edited.ChangeValue(i % 2, 0, 100 + i / 2 % 100, kYes));
  }
  EXPECT_EQ(CountUndoSteps(), 500);
  EXPECT_EQ(edited.Row(0)[0], 149);
  EXPECT_EQ(edited.Row(1)[0], 149);
}

}  // namespace
}  // namespace pelmora
