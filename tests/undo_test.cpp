// Undo and redo on the real window, by their keys.
#include <QAction>
#include <QClipboard>
#include <QDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest/QTest>

#include "platform/cw_num_edit.h"
#include "platform/list_box.h"
#include "tests/flash_fixture.h"
#include "tests/sequence_view.h"

namespace pelmora {
namespace {

class UndoTest : public FlashTest {
 protected:
  UndoTest() : list(hands->Find<platform::ListBox>("ListSequence")) {}

  void Key(QWidget& widget, int key, Qt::KeyboardModifiers modifiers) {
    // On the off-screen platform a dialog that closes leaves no window active.
    if (!form->isActiveWindow()) {
      form->activateWindow();
      ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    }
    if (&widget == &list) list.setFocus();
    QTest::keyClick(&widget, static_cast<Qt::Key>(key), modifiers);
  }
  void Undo() { Key(*form, Qt::Key_Z, Qt::ControlModifier); }
  void Redo() { Key(*form, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier); }
  void Press(const char* button) { hands->Find<QPushButton>(button).click(); }
  SequenceView Now() const { return Look(*this); }
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

  platform::ListBox& list;

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
    Key(list, Qt::Key_Up, Qt::ControlModifier);
    Press("CommandBrk");
    Select(1);
    Connect();
  }

  struct Case {
    const char* name;
    std::function<void()> change;
  };

  void ExpectUndoneAndRedone(const Case& c) {
    SCOPED_TRACE(c.name);
    const SequenceView before = Now();
    c.change();
    const SequenceView after = Now();
    ASSERT_TRUE(Changed(before, after));
    EXPECT_EQ(MenuItem("ListUndo"), QString("Undo %1").arg(c.name));
    EXPECT_EQ(MenuItem("ListRedo"), "");
    board.ClearLog();
    const QString slider = hands->Read("CWSlide1_2");
    for (const int redo_key : {Qt::Key_Z, Qt::Key_Y}) {
      Undo();
      EXPECT_EQ(Difference(Now(), before), "");
      EXPECT_EQ(MenuItem("ListRedo"), QString("Redo %1").arg(c.name));
      Key(*form, redo_key,
          redo_key == Qt::Key_Y ? Qt::ControlModifier : Qt::ControlModifier | Qt::ShiftModifier);
      EXPECT_EQ(Difference(Now(), after), "");
    }
    Undo();
    EXPECT_EQ(Difference(Now(), before), "");
    EXPECT_EQ(hands->Read("CWSlide1_2"), slider);
    ExpectSent({});
  }
};

TEST_F(UndoOfEachChange, IsOneStepAndBringsEverythingBack) {
  Select(3);
  const Case cases[] = {
      {"Add", [&] { Press("CommandAdd"); }},
      {"Remove", [&] { Press("CommandRem"); }},
      {"Replace", [&] { Press("CommandReplace"); }},
      {"Clear Sequence", [&] { Press("CommandClear"); }},
      {"Clear All", [&] { Press("CommandClearAll"); }},
      {"Move", [&] { Key(list, Qt::Key_Up, Qt::ControlModifier); }},
      {"Move", [&] { hands->DragLine("ListSequence", 3, 0); }},
      {"Interpolate", [&] { Interpolate(5); }},
      {"Cut", [&] { Key(list, Qt::Key_X, Qt::ControlModifier); }},
      {"Paste", [&] { Key(list, Qt::Key_V, Qt::ControlModifier); }},
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
  for (const Case& c : cases) {
    ExpectUndoneAndRedone(c);
  }
  // All of them left the state in which the first began: what was composed is undone as well.
  for (int i = 0; i < 7; ++i) Undo();
  EXPECT_EQ(Contents(Now()), std::vector<std::vector<EditRow>>(kSequences));
  EXPECT_EQ(MenuItem("ListUndo"), "");
}

TEST_F(UndoOfEachChange, WhatChangesNoSequenceIsNoStep) {
  const SequenceView before = Now();
  Press("CommandAdd");
  Select(0);
  Press("CommandBrk");
  Press("CommandMoreSeq");
  Press("CommandRem");
  Press("CommandClear");
  Trigger("SaveBuffer");  // cancelled
  Press("CommandResBrk");
  Press("CommandLessSeq");
  Press("CommandLessSeq");
  EXPECT_EQ(MenuItem("ListUndo"), "Undo Add");
  Undo();
  EXPECT_EQ(Difference(Now(), before), "");
}

TEST_F(UndoOfEachChange, IsSilentAboveTheBoardsCapacity) {
  const QString warning = "Out of memory: too many steps. Max # of bytes is 24064!";
  ExpectMessage(warning);
  box.Expect("Load", "Data Loaded!");
  LoadFile(FilledSequences(1, 4096, 7));
  ExpectMessage(warning);
  Press("CommandMoreSeq");
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
  list.scrollToItem(list.item(30), QAbstractItemView::PositionAtCenter);
  const QRect place = list.visualItemRect(list.item(28));
  Undo();
  EXPECT_EQ(list.visualItemRect(list.item(28)), place);
  EXPECT_EQ(Selected(), 30);
  timer.Elapse();
  EXPECT_EQ(Selected(), 31);
  for (int i = 0; i < 67; ++i) Undo();
  timer.Elapse();
  EXPECT_EQ(hands->Read("CWButtonEmuPC"), "Off") << "nothing is left to play";
}

class UndoOfARead : public UndoOfEachChange {
 protected:
  // Presses keys and buttons as soon as an operation waits for the board.
  void WhenWaiting(std::function<void()> act) {
    hands->When([this] { return Waiting(); }, std::move(act));
  }
};

TEST_F(UndoOfARead, WaitsForItsEndAndTakesWhatWasDoneMeanwhileWithIt) {
  const SequenceView before = Now();
  simboard::Faults silent;
  silent.silent = true;
  board.SetFaults(silent);
  WhenWaiting([&] {
    const SequenceView cleared = Now();
    Undo();
    EXPECT_EQ(Difference(Now(), cleared), "");
    EXPECT_EQ(MenuItem("ListUndo"), "");
    Press("CommandAdd");
    Press("CommandMoreSeq");
    Undo();
    EXPECT_EQ(Data().CurSeq, 1);
    Abort();
  });
  ExpectMessage(kReadingErrorText, [&] {
    const SequenceView failed = Now();
    Undo();
    EXPECT_EQ(Difference(Now(), failed), "") << "the read has not ended yet";
  });
  Read();
  EXPECT_EQ(Data().SeqSteps[0], 1);
  Undo();
  EXPECT_EQ(Difference(Now(), before), "");
}

TEST_F(UndoOfARead, BringsBackWhatALostLineTook) {
  const SequenceView before = Now();
  simboard::Faults silent;
  silent.silent = true;
  board.SetFaults(silent);
  box.ExpectAnything();
  WhenWaiting([&] { board.Unplug(); });
  Read();
  EXPECT_TRUE(Lines().isEmpty());
  Undo();
  EXPECT_EQ(Difference(Now(), before), "");
  // And what a press of the button took with no port open.
  hands->WaitUntil([this] { return Enabled("ComboPort"); });
  Read();
  EXPECT_TRUE(Lines().isEmpty());
  Undo();
  EXPECT_EQ(Difference(Now(), before), "");
}

TEST_F(UndoOfARead, IsNotAvailableWhileTheFlashIsErasedOrProgrammed) {
  const SequenceView before = Now();
  for (const char* operation : {"CommandErase", "CommandFlash"}) {
    simboard::Faults silent;
    silent.silent = true;
    board.SetFaults(silent);
    WhenWaiting([&] {
      Undo();
      EXPECT_EQ(Difference(Now(), before), "");
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
    for (int i = 0; i < 3; ++i) Key(field, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(hands->Read(name), shown);
    for (int i = 0; i < 3; ++i) Key(field, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(hands->Read(name), typed);
    EXPECT_EQ(Lines().size(), 1);
    Key(field, Qt::Key_Return, {});
    const QString committed = hands->Read(name);
    Key(field, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Lines().size(), 0) << "committed, the entry is no longer being edited";
    Key(field, Qt::Key_Y, Qt::ControlModifier);
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

  void Change() {
    const int lines = list.ListCount();
    switch (Random(20)) {
      case 0:
        return Press("CommandRem");
      case 1:
        return Press("CommandReplace");
      case 2:
        return Random(5) == 0 ? Press("CommandClear") : Press("CommandAdd");
      case 3:
        return Random(5) == 0 ? Press("CommandClearAll") : Press("CommandAdd");
      case 4:
      case 5:
        return Key(list, Random(2) == 0 ? Qt::Key_Up : Qt::Key_Down, Qt::ControlModifier);
      case 6:
        if (lines >= 2 && lines < 200 && Selected() >= 0) {
          SetSlider(Random(kChannels), Random(256));
          Interpolate(2 + Random(8));
          if (auto* dialog = form->findChild<QDialog*>("DialogInterp")) dialog->reject();
          QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        return;
      case 7:
        return Key(list, Qt::Key_X, Qt::ControlModifier);
      case 8:
      case 9:
        return Key(list, Qt::Key_V, Qt::ControlModifier);
      case 10:
        if (Random(6) != 0) return Press("CommandAdd");
        return Random(3) == 0 ? Trigger("LoadBuffer") : LoadFile(SomeSequences());
      case 11:
        return ReadSomething();
      default:
        return Add(Random(kChannels), Random(256), 20 + Random(2000));
    }
  }

  void ReadSomething() {
    simboard::Faults faults;
    switch (Random(5)) {
      case 0:
        faults.silent = true;
        break;
      case 1:
        faults.cut_reply_at = static_cast<std::size_t>(Random(200));
        break;
      case 2:
        FillFlash(SomeSequences());
        break;
      default:
        return Press("CommandAdd");
    }
    board.SetFaults(faults);
    hands->When([this] { return Waiting(); }, [this] { Press("CommandAdd"); });
    Press("CommandRead");
  }

  void NoChange() {
    switch (Random(8)) {
      case 0:
        return Select(Random(list.ListCount() + 1) - 1);
      case 1:
        return Press("CommandBrk");
      case 2:
        return Press(Random(2) == 0 ? "CommandMoreSeq" : "CommandLessSeq");
      case 3:
        return Trigger("SaveBuffer");
      case 4:
        return Press("CommandUp");
      case 5:
        return Key(list, Qt::Key_C, Qt::ControlModifier);
      case 6:
        return Key(list, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
      default:
        return;
    }
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
