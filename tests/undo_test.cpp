// Undo and redo on the real window, by their keys.
#include <QRandomGenerator>

#include "tests/flash_fixture.h"
#include "tests/sequence_view.h"

namespace pelmora {
namespace {

constexpr auto kCtrl = Qt::ControlModifier;

class UndoTest : public FlashTest {
 protected:
  void Undo() { Key(*form, Qt::Key_Z, kCtrl); }
  void Redo() { Key(*form, Qt::Key_Z, kCtrl | Qt::ShiftModifier); }
  SequenceView Now() const { return Look(*this); }
  void ExpectView(const SequenceView& wanted) { EXPECT_EQ(Difference(Now(), wanted), ""); }
  // By code, which is quicker than by hand.
  void Add(int channel, int position, int duration_ms) {
    SetSlider(channel, position);
    hands->Find<platform::CWNumEdit>("CWNumEditTimeStep").setValue(duration_ms);
    Press("CommandAdd");
  }
  void Interpolate(int count) {
    Press("CommandInterpolate");
    form->findChild<QSpinBox*>("CWNumEditInterp")->setValue(count);
    form->findChild<QPushButton*>("OKButton")->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  void LoadFile(const Sequences& sequences) {
    QFile file(folder_.filePath("file"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::fromStdString(FileOf(sequences)));
    file.close();
    files.answer = file.fileName();
    Trigger("LoadBuffer");
    files.answer.reset();
  }
  // What an item of the list's context menu would read now; empty when it would be disabled.
  QString MenuItem(const char* name) {
    auto& menu = hands->Find<QMenu>("ListMenu");
    emit menu.aboutToShow();
    auto& item = hands->Find<QAction>(name);
    const QString text = item.isEnabled() ? item.text().remove('&') : QString();
    emit menu.aboutToHide();
    return text;
  }
  // Makes the board silent, and acts as soon as an operation waits for it.
  void WhenWaitingForASilentBoard(std::function<void()> act) {
    board.SetFaults({.silent = true});
    hands->When([this] { return Waiting(); }, std::move(act));
  }

 private:
  QTemporaryDir folder_;
};

// Steps in three sequences, the current one (2) changed since it was stored, a breakpoint, and a
// selection that no label names.
class UndoOfEachChange : public UndoTest {
 protected:
  UndoOfEachChange() {
    Add(0, 10, 100);
    Press("CommandMoreSeq");
    Add(1, 20, 200);
    Press("CommandMoreSeq");
    for (const int position : {30, 60, 90, 120}) Add(2, position, position * 10);
    ListKey(Qt::Key_Up, kCtrl);
    Press("CommandBrk");
    Select(1);
    Connect();
    composed = Now();
  }

  SequenceView composed;
};

TEST_F(UndoOfEachChange, IsOneStepAndBringsEverythingBack) {
  const struct {
    const char* name;
    std::function<void()> change;
  } cases[] = {
      {"Add", [&] { Press("CommandAdd"); }},
      {"Remove", [&] { Press("CommandRem"); }},
      {"Replace", [&] { Press("CommandReplace"); }},
      {"Clear Sequence", [&] { Press("CommandClear"); }},
      {"Clear All", [&] { Press("CommandClearAll"); }},
      {"Move", [&] { ListKey(Qt::Key_Up, kCtrl); }},
      {"Move", [&] { hands->DragLine("ListSequence", 3, 0); }},
      {"Interpolate", [&] { Interpolate(5); }},
      {"Cut", [&] { ListKey(Qt::Key_X, kCtrl); }},
      {"Paste", [&] { ListKey(Qt::Key_V, kCtrl); }},
      {"Load Buffer", [&] { Trigger("LoadBuffer"); }},  // cancelled
      {"Load Buffer",
       [&] {
         box.Expect("Load", "Data Loaded!");
         LoadFile(ExampleSequences());
       }},
      {"Read Seq.",
       [&] {
         FillFlash(RandomSequences(3, 100));
         ExpectMessage(kReadText);
         Read();
       }},
      {"Read Seq.",
       [&] {
         FillFlash({});
         ExpectMessage(kNothingText);
         Read();
       }},
  };
  Select(3);
  const SequenceView before = Now();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    c.change();
    const SequenceView after = Now();
    ASSERT_TRUE(Changed(before, after));
    EXPECT_EQ(MenuItem("ListUndo"), QString("Undo %1").arg(c.name));
    EXPECT_EQ(MenuItem("ListRedo"), "");
    board.ClearLog();
    const QString slider = hands->Read("CWSlide1_2");
    Undo();
    ExpectView(before);
    EXPECT_EQ(MenuItem("ListRedo"), QString("Redo %1").arg(c.name));
    Redo();
    ExpectView(after);
    Undo();
    Key(*form, Qt::Key_Y, kCtrl);
    ExpectView(after);
    Undo();
    ExpectView(before);
    EXPECT_EQ(hands->Read("CWSlide1_2"), slider);
    ExpectSent({});
  }
  // What was composed is undone as well.
  for (int i = 0; i < 7; ++i) Undo();
  EXPECT_EQ(Contents(Now()), std::vector<std::vector<EditRow>>(kSequences));
  EXPECT_EQ(MenuItem("ListUndo"), "");
}

TEST_F(UndoOfEachChange, WhatChangesNoSequenceIsNoStep) {
  Press("CommandAdd");
  Select(0);
  for (const char* button :
       {"CommandBrk", "CommandMoreSeq", "CommandRem", "CommandClear", "CommandResBrk"}) {
    Press(button);
  }
  Trigger("SaveBuffer");  // cancelled
  Press("CommandLessSeq");
  Press("CommandLessSeq");
  EXPECT_EQ(MenuItem("ListUndo"), "Undo Add");
  Undo();
  ExpectView(composed);
}

TEST_F(UndoOfEachChange, IsSilentAboveTheBoardsCapacity) {
  const QString warning = "Out of memory: too many steps. Max # of bytes is 24064!";
  ExpectMessage(warning);
  box.Expect("Load", "Data Loaded!");
  LoadFile(FilledSequences(1, 4096, 7));
  Select(255);
  ExpectMessage(warning);
  Press("CommandRem");
  Undo();
  EXPECT_EQ(Lines().size(), kSteps);
  Redo();
  EXPECT_EQ(Lines().size(), kSteps - 1);
}

TEST_F(UndoOfEachChange, WorksWhilePlaybackRunsAndLeavesTheViewWhereItIs) {
  for (int i = 0; i < 60; ++i) Press("CommandAdd");
  Select(30);
  hands->Click("CWButtonEmuPC");
  Press("CommandRem");
  List().scrollToItem(List().item(30), QAbstractItemView::PositionAtCenter);
  const QRect place = List().visualItemRect(List().item(28));
  Undo();
  EXPECT_EQ(List().visualItemRect(List().item(28)), place);
  EXPECT_EQ(Selected(), 30);
  timer.Elapse();
  EXPECT_EQ(Selected(), 31);
  for (int i = 0; i < 67; ++i) Undo();
  timer.Elapse();
  EXPECT_EQ(hands->Read("CWButtonEmuPC"), "Off") << "nothing is left to play";
}

TEST_F(UndoOfEachChange, OfAReadWaitsForItsEndAndTakesWhatWasDoneMeanwhileWithIt) {
  WhenWaitingForASilentBoard([&] {
    const SequenceView cleared = Now();
    Undo();
    ExpectView(cleared);
    EXPECT_EQ(MenuItem("ListUndo"), "");
    Press("CommandAdd");
    Press("CommandMoreSeq");
    Undo();
    EXPECT_EQ(Data().CurSeq, 1);
    Abort();
  });
  ExpectMessage(kReadingErrorText, [&] {
    Undo();
    EXPECT_EQ(Data().CurSeq, 1) << "the read has not ended yet";
  });
  Read();
  EXPECT_EQ(Data().SeqSteps[0], 1);
  Undo();
  ExpectView(composed);
}

TEST_F(UndoOfEachChange, BringsBackWhatALostLineTook) {
  box.ExpectAnything();
  WhenWaitingForASilentBoard([&] { board.Unplug(); });
  Read();
  EXPECT_TRUE(Lines().isEmpty());
  Undo();
  ExpectView(composed);
  // And what a press of the button took with no port open.
  hands->WaitUntil([this] { return Enabled("ComboPort"); });
  Read();
  EXPECT_TRUE(Lines().isEmpty());
  Undo();
  ExpectView(composed);
}

TEST_F(UndoOfEachChange, IsNotAvailableWhileTheFlashIsErasedOrProgrammed) {
  for (const char* operation : {"CommandErase", "CommandFlash"}) {
    WhenWaitingForASilentBoard([&] {
      Undo();
      ExpectView(composed);
      EXPECT_EQ(MenuItem("ListUndo"), "");
      Unplug();
      ExpectMessage(kAbortText);
    });
    hands->Click(operation);
    EXPECT_EQ(MenuItem("ListUndo"), "Undo Move");
    ConnectAgain();
  }
}

TEST_F(UndoTest, IsTheFieldsOwnWhileAnEntryIsBeingEdited) {
  Press("CommandAdd");
  for (const char* name : {"Text1_3", "CWNumEditTimeStep"}) {
    SCOPED_TRACE(name);
    auto& field = hands->Find<QWidget>(name);
    const QString shown = hands->Read(name);
    hands->Type(name, "77", false);
    const QString typed = hands->Read(name);
    ASSERT_NE(typed, shown);
    // The toolkit takes typing back in one or several steps.
    for (int i = 0; i < 3; ++i) Key(field, Qt::Key_Z, kCtrl);
    EXPECT_EQ(hands->Read(name), shown);
    for (int i = 0; i < 3; ++i) Key(field, Qt::Key_Y, kCtrl);
    EXPECT_EQ(hands->Read(name), typed);
    EXPECT_EQ(Lines().size(), 1);
    Key(field, Qt::Key_Return);
    const QString committed = hands->Read(name);
    Key(field, Qt::Key_Z, kCtrl);
    EXPECT_EQ(Lines().size(), 0) << "committed, the entry is no longer being edited";
    Key(field, Qt::Key_Y, kCtrl);
    EXPECT_EQ(Lines().size(), 1);
    EXPECT_EQ(hands->Read(name), committed);
  }
}

// Any changes in any order, and what is no change in between.
class RandomChanges : public UndoTest, public testing::WithParamInterface<unsigned> {
 protected:
  int Random(int below) { return static_cast<int>(random_.bounded(below)); }
  Sequences SomeSequences() {
    return RandomSequences(random_.generate(), Random(4) == 0 ? 4000 : Random(200));
  }
  void DoOneOf(const std::vector<std::function<void()>>& actions) {
    actions[static_cast<std::size_t>(Random(static_cast<int>(actions.size())))]();
  }

  void Change() {
    if (Random(20) < 8) return Add(Random(kChannels), Random(256), 20 + Random(2000));
    DoOneOf({
        [&] { Press("CommandRem"); },
        [&] { Press("CommandReplace"); },
        [&] { Press(Random(5) == 0 ? "CommandClear" : "CommandAdd"); },
        [&] { Press(Random(5) == 0 ? "CommandClearAll" : "CommandAdd"); },
        [&] { ListKey(Qt::Key_Up, kCtrl); },
        [&] { ListKey(Qt::Key_Down, kCtrl); },
        [&] { ListKey(Qt::Key_X, kCtrl); },
        [&] { ListKey(Qt::Key_V, kCtrl); },
        [&] { ListKey(Qt::Key_V, kCtrl); },
        [&] { InterpolateSomewhere(); },
        [&] { Random(6) == 0 ? LoadFile(SomeSequences()) : Press("CommandAdd"); },
        [&] { ReadSomething(); },
    });
  }

  void InterpolateSomewhere() {
    const int lines = List().ListCount();
    if (lines < 2 || lines >= 200 || Selected() < 0) return;
    SetSlider(Random(kChannels), Random(256));
    Interpolate(2 + Random(8));
    if (auto* dialog = form->findChild<QDialog*>("DialogInterp")) dialog->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  void ReadSomething() {
    const auto cut = static_cast<std::size_t>(Random(200));
    const simboard::Faults faults[] = {{.silent = true}, {.cut_reply_at = cut}, {}};
    const int kind = Random(5);
    if (kind > 2) return Press("CommandAdd");
    if (kind == 2) FillFlash(SomeSequences());
    board.SetFaults(faults[kind]);
    hands->When([this] { return Waiting(); }, [this] { Press("CommandAdd"); });
    Press("CommandRead");
  }

  void NoChange() {
    DoOneOf({
        [&] { Select(Random(List().ListCount() + 1) - 1); },
        [&] { Press("CommandBrk"); },
        [&] { Press(Random(2) == 0 ? "CommandMoreSeq" : "CommandLessSeq"); },
        [&] { Trigger("SaveBuffer"); },
        [&] { Press("CommandUp"); },
        [&] { ListKey(Qt::Key_C, kCtrl); },
        [] {},
    });
  }

  // Ends a read that brings nothing, or more than there is room for.
  void LosePatience() {
    patience_.callOnTimeout([this] {
      if (Waiting()) Press("Command1");
    });
    patience_.start(30);
  }

  QTimer patience_;
  QRandomGenerator random_{GetParam()};
};

TEST_P(RandomChanges, CanBeUndoneToTheStartAndRedoneToTheEnd) {
  constexpr int kChanges = 500;
  box.ExpectAnything();
  LosePatience();
  Connect();
  const SequenceView start = Now();
  std::vector<std::pair<SequenceView, SequenceView>> changes;  // before and after each
  while (changes.size() < kChanges) {
    NoChange();
    SequenceView before = Now();
    Change();
    SequenceView after = Now();
    if (Changed(before, after)) changes.emplace_back(before, after);
  }
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = kChanges; i-- > 0;) {
      Undo();
      ASSERT_EQ(Difference(Now(), changes[i].first), "") << "undone: change " << i;
    }
    Undo();
    ASSERT_EQ(Difference(Now(), changes[0].first), "") << "nothing more to undo";
    ASSERT_EQ(Contents(Now()), Contents(start));
    for (std::size_t i = 0; i < kChanges; ++i) {
      Redo();
      ASSERT_EQ(Difference(Now(), changes[i].second), "") << "redone: change " << i;
    }
    Redo();
    ASSERT_EQ(Difference(Now(), changes.back().second), "") << "nothing more to redo";
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomChanges, testing::Values(1U, 2U, 3U, 20261123U));

}  // namespace
}  // namespace pelmora
