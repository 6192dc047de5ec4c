// Undo and redo on the real window, by their keys.
#include "tests/flash_fixture.h"
#include "tests/sequence_view.h"

namespace pelmora {
namespace {

class UndoTest : public FlashTest {
 protected:
  void Undo() { hands->Keys(*form, "Ctrl+Z"); }
  void Redo() { hands->Keys(*form, "Ctrl+Shift+Z"); }
  SequenceView Now() const { return ViewOf(*this); }
  void ExpectView(const SequenceView& wanted) { EXPECT_EQ(Difference(Now(), wanted), ""); }
  void Interpolate(int count) {
    Press("CommandInterpolate");
    form->findChild<QSpinBox*>("CWNumEditInterp")->setValue(count);
    form->findChild<QPushButton*>("OKButton")->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
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

  // Steps in three sequences, the current one (2) changed since it was stored, a breakpoint, and a
  // selection that no label names.
  UndoTest() {
    AddStep(0, 10, 100);
    Press("CommandMoreSeq");
    AddStep(1, 20, 200);
    Press("CommandMoreSeq");
    for (const int position : {30, 60, 90, 120}) AddStep(2, position, position * 10);
    ListKeys("Ctrl+Up");
    Press("CommandBrk");
    Select(1);
    Connect();
    composed = Now();
  }

  SequenceView composed;
};

TEST_F(UndoTest, OfEachChangeIsOneStepAndBringsEverythingBack) {
  const struct {
    const char* name;
    std::function<void()> change;
  } cases[] = {
      {"Add", [&] { Press("CommandAdd"); }},
      {"Remove", [&] { Press("CommandRem"); }},
      {"Replace", [&] { Press("CommandReplace"); }},
      {"Clear Sequence", [&] { Press("CommandClear"); }},
      {"Clear All", [&] { Press("CommandClearAll"); }},
      {"Move", [&] { ListKeys("Ctrl+Up"); }},
      {"Move", [&] { hands->DragLine("ListSequence", 3, 0); }},
      {"Interpolate", [&] { Interpolate(5); }},
      {"Cut", [&] { ListKeys("Ctrl+X"); }},
      {"Paste", [&] { ListKeys("Ctrl+V"); }},
      {"Load Buffer", [&] { Trigger("LoadBuffer"); }},  // cancelled
      {"Load Buffer", [&] { Load(ExampleSequences()); }},
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
    hands->Keys(*form, "Ctrl+Y");
    ExpectView(after);
    Undo();
    ExpectView(before);
    EXPECT_EQ(hands->Read("CWSlide1_2"), slider);
    ExpectSent({});
  }
  // What was composed is undone as well.
  for (int i = 0; i < 7; ++i) Undo();
  EXPECT_EQ(Contents(Now()), Steps(kSequences));
  // What changes nothing is no step, and leaves the undone ones to be done again.
  for (const char* button : {"CommandRem", "CommandClear", "CommandClearAll"}) Press(button);
  EXPECT_EQ(MenuItem("ListUndo"), "");
  EXPECT_EQ(MenuItem("ListRedo"), "Redo Add");
}

TEST_F(UndoTest, IsSilentAboveTheBoardsCapacity) {
  const QString warning = "Out of memory: too many steps. Max # of bytes is 24064!";
  ExpectMessage(warning);
  Load(FilledSequences(1, 4096, 7));
  Select(255);
  ExpectMessage(warning);
  Press("CommandRem");
  Undo();
  EXPECT_EQ(Lines().size(), kSteps);
  Redo();
  EXPECT_EQ(Lines().size(), kSteps - 1);
}

TEST_F(UndoTest, WorksWhilePlaybackRunsAndLeavesTheViewWhereItIs) {
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

TEST_F(UndoTest, OfAReadWaitsForItsEndAndTakesWhatWasDoneMeanwhileWithIt) {
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

TEST_F(UndoTest, BringsBackWhatALostLineTook) {
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

TEST_F(UndoTest, AndRedoAreNotAvailableWhileTheFlashIsErasedOrProgrammed) {
  Undo();
  composed = Now();
  for (const char* operation : {"CommandErase", "CommandFlash"}) {
    WhenWaitingForASilentBoard([&] {
      Undo();
      Redo();
      ExpectView(composed);
      EXPECT_EQ(MenuItem("ListUndo"), "");
      EXPECT_EQ(MenuItem("ListRedo"), "");
      Unplug();
      ExpectMessage(kAbortText);
    });
    hands->Click(operation);
    EXPECT_EQ(MenuItem("ListUndo"), "Undo Add");
    EXPECT_EQ(MenuItem("ListRedo"), "Redo Move");
    ConnectAgain();
  }
}

// Steps of 80 ms have a digit for a name; each of the two into which "0" is split has a letter.
TEST_F(UndoTest, ProgrammingWritesWhatTheTableMustHold) {
  const auto steps = [](const std::string& names) {
    Sequences sequences;
    for (const char name : names) {
      Step step{};
      step.positions.fill(std::uint8_t(name < 'a' ? 20 * (name - '0') : 10 * (name - 'a')));
      step.ticks = name < 'a' ? 4 : 2;
      sequences[0].push_back(step);
    }
    return sequences;
  };
  // U: undo, R: redo, C: "Clear Sequence", A: "Clear All", D: the first step down, I: interpolate,
  // S: save, +: to the next sequence and back, -: "Remove". The last three store.
  const std::pair<const char*, const char*> cases[] = {
      {"A", ""},        {"AU", "012"},   {"AUR", ""},     {"C", "012"},     {"C+", ""},
      {"CA", ""},       {"CAU", "012"},  {"CAUR", ""},    {"CAUU", "012"},  {"CAUURR", ""},
      {"D", "012"},     {"D+", "102"},   {"D+U", "012"},  {"D+UR", "102"},  {"DU+R", "012"},
      {"DU+RU", "012"}, {"I", "012"},    {"IS", "ab12"},  {"ISU", "012"},   {"ISUR", "ab12"},
      {"ISURU", "012"}, {"IU+R", "012"}, {"-", "12"},     {"-U", "012"},    {"-UR", "12"},
      {"D-", "12"},     {"D-U", "012"},  {"D-UU", "012"}, {"D-UURR", "12"}, {"-A", ""},
      {"-AU", "12"},    {"-AUU", "012"}, {"-AUURR", ""},
  };
  Press("CommandLessSeq");
  Press("CommandLessSeq");
  for (const auto& [pressed, programmed] : cases) {
    SCOPED_TRACE(pressed);
    Load(steps("012"));
    Select(0);
    for (const char key : std::string(pressed)) {
      switch (key) {
        case 'U':
          Undo();
          break;
        case 'R':
          Redo();
          break;
        case 'C':
          Press("CommandClear");
          break;
        case 'A':
          Press("CommandClearAll");
          break;
        case 'D':
          ListKeys("Ctrl+Down");
          break;
        case 'I':
          Interpolate(2);
          break;
        case 'S':
          files.answer.reset(), Trigger("SaveBuffer");
          break;
        case '+':
          Press("CommandMoreSeq"), Press("CommandLessSeq");
          break;
        default:
          Press("CommandRem");
      }
    }
    board.ClearLog();
    ProgramWell();
    ExpectSent(ProgramBytes(steps(programmed)));
  }
}

TEST_F(UndoTest, IsTheFieldsOwnWhileAnEntryIsBeingEdited) {
  Press("CommandAdd");
  const auto lines = Lines().size();
  for (const char* name : {"Text1_3", "CWNumEditTimeStep"}) {
    SCOPED_TRACE(name);
    auto& field = hands->Find<QWidget>(name);
    const QString shown = hands->Read(name);
    hands->Type(name, "77", false);
    const QString typed = hands->Read(name);
    ASSERT_NE(typed, shown);
    // The toolkit takes typing back in one or several steps.
    hands->Keys(field, "Ctrl+Z Ctrl+Z Ctrl+Z");
    EXPECT_EQ(hands->Read(name), shown);
    hands->Keys(field, "Ctrl+Y Ctrl+Y Ctrl+Y");
    EXPECT_EQ(hands->Read(name), typed);
    EXPECT_EQ(Lines().size(), lines);
    hands->Keys(field, "Return");
    const QString committed = hands->Read(name);
    hands->Keys(field, "Ctrl+Z");
    EXPECT_EQ(Lines().size(), lines - 1) << "committed, the entry is no longer being edited";
    hands->Keys(field, "Ctrl+Y");
    EXPECT_EQ(Lines().size(), lines);
    EXPECT_EQ(hands->Read(name), committed);
  }
}

}  // namespace
}  // namespace pelmora
