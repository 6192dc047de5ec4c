// Undo and redo on the real window, by their keys.
#include "tests/flash_fixture.h"

namespace pelmora {
namespace {

class UndoTest : public FlashTest {
 protected:
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
    List().setFocus();
  }

  void Undo() { hands->Keys(*form, "Ctrl+Z"); }
  void Redo() { hands->Keys(*form, "Ctrl+Shift+Z"); }
  void Interpolate(int count) {
    Press("CommandInterpolate");
    form->findChild<QSpinBox*>("CWNumEditInterp")->setValue(count);
    form->findChild<QPushButton*>("OKButton")->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  void ReadBack(const Sequences& sequences, const char* message) {
    FillFlash(sequences);
    ExpectMessage(message);
    Press("CommandRead");
  }
  // Makes the board silent, and acts as soon as an operation waits for it.
  void WhenWaitingForASilentBoard(std::function<void()> act) {
    board.SetFaults({.silent = true});
    hands->When([this] { return Waiting(); }, std::move(act));
  }
};

TEST_F(UndoTest, OfEachChangeIsOneStepAndBringsEverythingBack) {
  const std::pair<const char*, std::function<void()>> cases[] = {
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
      {"Read Seq.", [&] { ReadBack(RandomSequences(3, 100), kReadText); }},
      {"Read Seq.", [&] { ReadBack({}, kNothingText); }},
  };
  Select(3);
  ListKeys("Ctrl+C");
  const ProgramState before = StateOf(*this);
  for (const auto& [name, change] : cases) {
    SCOPED_TRACE(name);
    change();
    const ProgramState after = StateOf(*this);
    EXPECT_NE(Difference(before, after), QStringList());
    EXPECT_EQ(NameOf("undo") + ", " + NameOf("redo"), QString(name) + ", none");
    board.ClearLog();
    for (const char* again : {"Ctrl+Shift+Z", "Ctrl+Y"}) {
      Undo();
      ExpectAsIn(before);
      EXPECT_EQ(NameOf("redo"), name);
      hands->Keys(*form, again);
      ExpectAsIn(after);
    }
    Undo();
    ExpectSent({});
  }
  // What was composed is undone as well.
  for (int i = 0; i < 7; ++i) Undo();
  EXPECT_EQ(Table(), Sequences());
  // What changes nothing is no step, and leaves the undone ones to be done again.
  for (const char* button : {"CommandRem", "CommandClear", "CommandClearAll"}) Press(button);
  EXPECT_EQ(NameOf("undo") + ", " + NameOf("redo"), "none, Add");
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
  const ProgramState composed = StateOf(*this);
  WhenWaitingForASilentBoard([&] {
    const ProgramState cleared = StateOf(*this);
    EXPECT_EQ(NameOf("undo"), "none");
    Undo();
    ExpectAsIn(cleared);
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
  Press("CommandRead");
  EXPECT_EQ(Data().SeqSteps[0], 1);
  Undo();
  ExpectAsIn(composed);
}

TEST_F(UndoTest, AndRedoAreNotAvailableWhileTheFlashIsErasedOrProgrammed) {
  Undo();
  const QStringList lines = Lines();
  for (const char* operation : {"CommandErase", "CommandFlash"}) {
    WhenWaitingForASilentBoard([&] {
      Undo();
      Redo();
      EXPECT_EQ(Lines(), lines);
      EXPECT_EQ(NameOf("undo") + ", " + NameOf("redo"), "none, none");
      Unplug();
      ExpectMessage(kAbortText);
    });
    hands->Click(operation);
    EXPECT_EQ(NameOf("undo") + ", " + NameOf("redo"), "Add, Move");
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
  const std::map<char, std::function<void()>> presses = {
      {'U', [&] { Undo(); }},
      {'R', [&] { Redo(); }},
      {'C', [&] { Press("CommandClear"); }},
      {'A', [&] { Press("CommandClearAll"); }},
      {'D', [&] { ListKeys("Ctrl+Down"); }},
      {'I', [&] { Interpolate(2); }},
      {'S', [&] { files.answer.reset(), Trigger("SaveBuffer"); }},
      {'+', [&] { Press("CommandMoreSeq"), Press("CommandLessSeq"); }},
      {'-', [&] { Press("CommandRem"); }},
  };
  for (const auto& [pressed, programmed] : cases) {
    SCOPED_TRACE(pressed);
    Load(steps("012"));
    Select(0);
    for (const char key : std::string(pressed)) presses.at(key)();
    board.ClearLog();
    ProgramWell();
    ExpectSent(ProgramBytes(steps(programmed)));
  }
}

}  // namespace
}  // namespace pelmora
