// The owner of the edited sequence by itself: what it announces and when, and the change of one
// value of a step.
#include "edit/edited_sequence.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QSignalSpy>
#include <algorithm>
#include <functional>

#include "core/step_line.h"
#include "platform/system/main_loop.h"
#include "rig/scripted.h"

namespace pelmora {
namespace {

using enum EditedSequence::Joins;

class EditedSequenceTest : public testing::Test {
 protected:
  EditedSequenceTest() {
    labels[0].setText("Sequence N° 0");
    edited.Form_Load();
    for (const int position : {10, 20, 30}) Add(position);
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
  static std::string Line(int position) { return EditorLine(Step(position, 100), "."); }
  static SequenceTable Table(int steps_of_each) {
    SequenceTable table;
    table.SeqSteps.fill(static_cast<std::int16_t>(steps_of_each));
    return table;
  }
  void Add(int position) { edited.Insert({Line(position)}); }

  // What is announced is complete: the list, the rows, the flags and the labels agree.
  void Hear(char what) {
    heard += what;
    ASSERT_EQ(edited.ListIndex(), list.ListIndex());
    for (int line = 0; line < edited.ListCount(); ++line) {
      const std::string text = list.List(line).toStdString();
      EXPECT_EQ(ReadStepLine(text, "."), edited.Row(line));
    }
    for (int row = edited.ListCount(); row < kSteps; ++row) {
      EXPECT_EQ(edited.Row(row)[kBreakColumn], 0);
    }
    EXPECT_EQ(labels[0].text(), QString("Sequence N° %1").arg(edited.Data().CurSeq));
  }
  std::string Heard() { return std::exchange(heard, {}); }
  QString UndoName() { return edited.Changes().UndoName(); }
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
  const auto break_at = [this](int line) {
    edited.Select(line);
    edited.ToggleBreak();
  };
  const struct {
    const char* name;
    std::function<void()> before;  // three steps, the second selected
    std::function<void()> operation;
    const char* heard;  // s: sequence, i: selection, b: breakpoints
  } cases[] = {
      {"Add", {}, [&] { Add(40); }, "si"},
      {"Add clears breakpoints", [&] { break_at(0); }, [&] { Add(40); }, "sib"},
      {"Remove", {}, [&] { edited.Remove(); }, "s"},
      {"Remove the last", [&] { edited.Select(2); }, [&] { edited.Remove(); }, "si"},
      {"Remove, none selected",
       [&] {
         break_at(0);
         edited.Select(-1);
       },
       [&] { edited.Remove(); }, "b"},
      {"Replace", {}, [&] { edited.ReplaceSelected(Line(77)); }, "s"},
      {"a value", {}, [&] { EXPECT_TRUE(edited.ChangeValue(2, 5, 99, kYes)); }, "s"},
      {"the same value", {}, [&] { EXPECT_TRUE(edited.ChangeValue(2, 5, 30, kYes)); }, ""},
      {"Move", {}, [&] { edited.Move(1, 2); }, "si"},
      {"Move, with its breakpoint", [&] { break_at(1); }, [&] { edited.Move(1, 2); }, "sib"},
      {"a step above the selected one", {}, [&] { edited.Move(0, 2); }, "si"},
      {"Interpolate",
       {},
       [&] {
         edited.Replace(1, {4, Step(1, 20)});
       },
       "s"},
      {"Clear Sequence", [&] { break_at(1); }, [&] { edited.Clear(); }, "sib"},
      {"Clear All", {}, [&] { edited.ClearAll(); }, "si"},
      {"a store", {}, [&] { EXPECT_TRUE(edited.BufferToData()); }, "s"},
      {"another sequence", {}, [&] { edited.ShowSequence(1); }, "si"},
      {"no other sequence", {}, [&] { edited.ShowSequence(-1); }, ""},
      {"a breakpoint", {}, [&] { edited.ToggleBreak(); }, "b"},
      {"no breakpoint", {}, [&] { edited.ResetBreakPoints(); }, ""},
      {"a load", {}, [&] { edited.TakeTable(Table(2)); }, "si"},
      {"a header", {}, [&] { EXPECT_TRUE(edited.TakeHeader({})); }, "s"},
      {"a reply", {}, [&] { EXPECT_TRUE(edited.TakeReply({}, {})); }, "si"},
      {"an undo", [&] { Add(40); }, [&] { edited.Undo(); }, "si"},
      {"an undo that brings a breakpoint back",
       [&] {
         break_at(1);
         edited.Clear();
       },
       [&] { edited.Undo(); }, "sib"},
      {"the operator's selection", {}, [&] { list.setCurrentRow(2); }, "i"},
      {"the same selection", {}, [&] { edited.Select(1); }, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    edited.ClearAll();
    for (const int position : {10, 20, 30}) Add(position);
    edited.Select(1);
    if (c.before) c.before();
    heard.clear();
    c.operation();
    EXPECT_EQ(Heard(), c.heard);
  }
}

// The warning processes events: everything has been announced before it, and what is done meanwhile
// is left alone after it.
TEST_F(EditedSequenceTest, WarnsWhenTheOperationIsComplete) {
  const auto warn = [this](std::function<void()> meanwhile = {}) {
    box.Expect("Program", CapacityText(), std::move(meanwhile));
  };
  warn([this] { EXPECT_EQ(heard, "si"); });
  edited.TakeTable(Table(200));
  const auto read_meanwhile = [this] {
    EXPECT_EQ(Heard(), "s");
    EXPECT_EQ(edited.ListIndex(), 0);
    EXPECT_EQ(labels[2].text(), "Step N° 0");
    EXPECT_TRUE(edited.TakeReply({}, {}));
  };
  edited.Select(0);
  heard.clear();
  warn(read_meanwhile);
  warn();  // "Replace" is "Add" and "Remove"
  edited.ReplaceSelected(Line(5));
  EXPECT_EQ(edited.ListCount(), 0);
  EXPECT_EQ(Heard(), "si");
}

TEST_F(EditedSequenceTest, KnowsWhetherTheTableHoldsTheList) {
  EXPECT_TRUE(edited.Stored());
  const std::function<void()> changes[] = {
      [&] { edited.Move(0, 2); },
      [&] { edited.Clear(); },
      [&] {
        edited.Replace(1, {Step(20, 40), Step(20, 60)});
      },
      [&] { edited.Replace(1, {Step(20, 120)}); },
      [&] { edited.Replace(1, {Step(21, 100)}); },
  };
  for (const auto& change : changes) {
    change();
    EXPECT_FALSE(edited.Stored());
    edited.Undo();
    EXPECT_TRUE(edited.Stored());
    edited.Redo();
    EXPECT_FALSE(edited.Stored());
    EXPECT_TRUE(edited.BufferToData());
    EXPECT_TRUE(edited.Stored());
    edited.Undo();
  }
}

TEST_F(EditedSequenceTest, ChangesOneValueInPlaceAndStores) {
  edited.ShowSequence(1);
  edited.ShowSequence(0);  // lines as they come from the table
  Add(40);                 // and one as it is composed, at the top
  edited.Select(2);
  edited.ToggleBreak();
  edited.NameStep();
  edited.Select(3);
  const struct {
    int line, column, value;
    const char* text;
  } cases[] = {
      {0, 0, 0,
       "-64 °\t-44 °\t-44 °\t-44 °\t-44 °\t-44 °\t-44 °\t-44 °\t-44 °\t-44 °\t-44 °\t"
       "-44 °\t100 ms"},
      {0, kDurationColumn, 32767,
       "-64 °\t-44 °\t-44 °\t-44 °\t-44 °\t-44 °\t-44 °\t-44 °\t-44 °\t"
       "-44 °\t-44 °\t-44 °\t32767 ms"},
      {2, 11, 255,
       "-54 °\t-54 °\t-54 °\t-54 °\t-54 °\t-54 °\t-54 °\t-54 °\t-54 °\t-54 °\t-54 °\t"
       "63.5 °\t100  ms\t\tBREAK!"},
      {2, kDurationColumn, 20,
       "-54 °\t-54 °\t-54 °\t-54 °\t-54 °\t-54 °\t-54 °\t-54 °\t-54 °\t"
       "-54 °\t-54 °\t63.5 °\t20  ms\t\tBREAK!"},
  };
  for (const auto& c : cases) {
    ASSERT_TRUE(edited.ChangeValue(c.line, c.column, c.value, kNo));
    EXPECT_EQ(list.List(c.line), c.text);
    EXPECT_EQ(edited.Row(c.line)[static_cast<std::size_t>(c.column)], c.value);
    EXPECT_TRUE(edited.Stored());
    EXPECT_EQ(edited.ListIndex(), 3);
    EXPECT_EQ(labels[2].text(), "Step N° 2");
    EXPECT_EQ(UndoName(), c.column == kDurationColumn ? "Duration" : "Angle");
  }
  EXPECT_EQ(edited.Row(2)[kBreakColumn], 1);
  const Declaration before = edited.Data();
  for (const auto& [line, column, value] : {std::array{-1, 0, 1},
                                            {4, 0, 1},
                                            {0, -1, 1},
                                            {0, kBreakColumn, 1},
                                            {0, 0, -1},
                                            {0, 0, 256},
                                            {0, kDurationColumn, 19},
                                            {0, kDurationColumn, 32768}}) {
    EXPECT_FALSE(edited.ChangeValue(line, column, value, kNo))
        << line << ' ' << column << ' ' << value;
  }
  EXPECT_EQ(before.EditBuffer, edited.Data().EditBuffer);
}

TEST_F(EditedSequenceTest, MergesChangesOfTheSameValueIntoOneUndoStep) {
  const auto change = [this](int line, int column, int value, EditedSequence::Joins joins = kYes) {
    EXPECT_TRUE(edited.ChangeValue(line, column, value, joins));
  };
  const struct {
    const char* name;
    std::function<void()> changes;
    int steps;  // of undo
  } cases[] = {
      {"one", [&] { change(0, 0, 1); }, 1},
      {"of the same value",
       [&] {
         change(0, 0, 1);
         change(0, 0, 2);
         change(0, 0, 3);
       },
       1},
      {"of the same value, not joining",
       [&] {
         change(0, 0, 1, kNo);
         change(0, 0, 2, kNo);
         change(0, 0, 3);
         change(0, 0, 4);
       },
       3},
      {"of two channels, in turn",
       [&] {
         change(0, 0, 1);
         change(0, 1, 1);
         change(0, 0, 2);
       },
       3},
      {"of two lines",
       [&] {
         change(0, kDurationColumn, 20);
         change(1, kDurationColumn, 20);
       },
       2},
      {"and back",
       [&] {
         change(0, 0, 1);
         change(0, 0, 2);
         change(0, 0, 10);
       },
       0},
      {"and back, then on",
       [&] {
         change(0, 0, 1);
         change(0, 0, 10);
         change(0, 0, 2);
       },
       1},
      {"and back in two steps, with another selection in between",
       [&] {
         change(0, 0, 1);
         edited.Select(0);
         edited.Select(2);
         change(0, 0, 10);
       },
       2},
      {"with another change in between",
       [&] {
         change(0, 0, 1);
         edited.Move(1, 2);
         edited.Move(2, 1);
         change(0, 0, 2);
       },
       4},
      {"with an undo in between",
       [&] {
         change(0, 0, 1);
         edited.Select(0);
         change(0, 0, 2);
         edited.Undo();
         change(0, 0, 3);
       },
       2},
      {"with a breakpoint in between",
       [&] {
         change(0, 0, 1);
         edited.ToggleBreak();
         change(0, 0, 2);
       },
       2},
      {"of a stale table: what is stored is a change, although the list is as it was",
       [&] {
         edited.Move(1, 2);
         change(0, 0, 1);
         change(0, 0, 10);
       },
       2},
  };
  const int composed = 3;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    edited.Select(2);
    c.changes();
    EXPECT_EQ(CountUndoSteps(), composed + c.steps);
    for (int i = 0; i < composed; ++i) edited.Redo();
    EXPECT_EQ(edited.Row(0), Step(10, 100));
  }
}

TEST_F(EditedSequenceTest, UndoesTheAddOfAStepLikeItsNeighbours) {
  Add(30);
  edited.Select(2);
  Add(30);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(edited.ListIndex(), 3);
    edited.Undo();
    EXPECT_EQ(edited.ListCount(), 4);
    EXPECT_EQ(edited.ListIndex(), 2);
    EXPECT_EQ(edited.Data().SeqSteps[0], 4);
    EXPECT_EQ(labels[3].text(), "56 bytes");
    edited.Redo();
    EXPECT_EQ(edited.ListCount(), 5);
    EXPECT_TRUE(edited.Stored());
  }
}

// A read that has failed after its header: no steps, but the number of bytes that programming
// sends.
TEST_F(EditedSequenceTest, UndoesTheChangeOfAFigureAlone) {
  edited.ClearAll();
  {
    const History::Change change = edited.BeginChange("Read Seq.");
    EXPECT_TRUE(edited.TakeHeader({0, 28}));
  }
  edited.ClearAll();
  EXPECT_EQ(edited.Data().TotalBytes, 0);
  edited.Undo();
  EXPECT_EQ(edited.Data().TotalBytes, 28);
  edited.Undo();
  EXPECT_EQ(edited.Data().TotalBytes, 0);
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
