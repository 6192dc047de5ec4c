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
      const std::map<QString, std::function<void()>> kinds = {
          {"add", [&] { edited.Insert({Line(number(1))}); }},
          {"remove", [&] { edited.Remove(); }},
          {"replace", [&] { edited.ReplaceSelected(Line(number(1))); }},
          {"value", [&] { value(kYes); }},
          {"lone-value", [&] { value(kNo); }},
          {"move", [&] { edited.Move(number(1), number(2)); }},
          // A line by so many steps of this position and duration.
          {"split",
           [&] {
             edited.Replace(number(1), {size_t(number(2)), Step(number(3), number(4))});
           }},
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

  // What is announced is complete: the list, the rows, the flags and the labels agree.
  void Hear(char what) {
    heard += what;
    ASSERT_EQ(edited.ListIndex(), list.ListIndex());
    for (int row = 0; row < kSteps; ++row) {
      if (row >= edited.ListCount()) {
        EXPECT_EQ(edited.Row(row)[kBreakColumn], 0);
      } else {
        EXPECT_EQ(ReadStepLine(list.List(row).toStdString(), "."), edited.Row(row));
      }
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

TEST_F(EditedSequenceTest, ChangesOneValueInPlaceAndStores) {
  // Lines as they come from the table, and one as it is composed, at the top.
  Do("show 1; show 0; add 40; break 2");
  edited.NameStep();
  Do("select 3");
  const std::tuple<const char*, int, const char*, const char*> cases[] = {
      {"lone-value 0 0 0", 0, "-64 °|-44 °*11|100 ms", "Angle"},
      {"lone-value 0 12 32767", 0, "-64 °|-44 °*11|32767 ms", "Duration"},
      {"lone-value 2 11 255", 2, "-54 °*11|63.5 °|100  ms|", "Angle"},
      {"lone-value 2 12 20", 2, "-54 °*11|63.5 °|20  ms|", "Duration"},
  };
  heard.clear();
  for (const auto& [change, line, text, name] : cases) {
    Do(change);
    EXPECT_EQ(rig::InShort(list.List(line)), text);
    EXPECT_EQ(Heard(), "s") << "selection and breakpoint stay";
    EXPECT_TRUE(edited.Stored());
    EXPECT_EQ(labels[2].text(), "Step N° 2");
    EXPECT_EQ(edited.Changes().UndoName(), name);
  }
  EXPECT_EQ(edited.ListIndex(), 3);
  EXPECT_EQ(edited.Row(2)[kBreakColumn], 1);
  constexpr int kMs = kDurationColumn;
  const int bad[][3] = {{-1, 0, 1}, {4, 0, 1},   {0, -1, 1},   {0, kBreakColumn, 1},
                        {0, 0, -1}, {0, 0, 256}, {0, kMs, 19}, {0, kMs, 32768}};
  for (const auto& [line, column, value] : bad) {
    EXPECT_FALSE(edited.ChangeValue(line, column, value, kNo)) << line << column << ' ' << value;
  }
  EXPECT_EQ(Heard(), "");
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

TEST_F(EditedSequenceTest, UndoesTheAddOfAStepLikeItsNeighbours) {
  Do("add 30; select 2; add 30");
  const auto expect = [this](int steps, int selected) {
    EXPECT_EQ(edited.ListCount(), steps);
    EXPECT_EQ(edited.ListIndex(), selected);
    EXPECT_EQ(labels[3].text(), QString("%1 bytes").arg(14 * steps));
    EXPECT_TRUE(edited.Stored());
  };
  for (int i = 0; i < 2; ++i) {
    expect(5, 3);
    Do("undo");
    expect(4, 2);
    Do("redo");
  }
}

// A read that has failed after its header: no steps, but the number of bytes that programming
// sends.
TEST_F(EditedSequenceTest, UndoesTheChangeOfAFigureAlone) {
  Do("clear-all");
  {
    const History::Change change = edited.BeginChange("Read Seq.");
    EXPECT_TRUE(edited.TakeHeader({0, 28, 1, 44}));
    EXPECT_EQ(edited.Data().SeqSteps[0], 256) << "no more than a sequence has";
    EXPECT_TRUE(edited.TakeHeader({0, 28}));
  }
  for (const auto& [operation, bytes] : {std::pair("clear-all", 0), {"undo", 28}, {"undo", 0}}) {
    Do(operation);
    EXPECT_EQ(edited.Data().TotalBytes, bytes) << operation;
  }
}

}  // namespace
}  // namespace pelmora
