// Undo and redo on the real window, by their keys. That each change is undone and done again behind
// every row of tests/effects.txt is seen there.
#include "tests/flash_fixture.h"

namespace pelmora {
namespace {

class UndoTest : public FlashTest {
 protected:
  // Six changes, and the latest of them undone.
  UndoTest() {
    AddSteps(5);
    Press("CommandRem");
    Connect();
    List().setFocus();
    Undo();
  }

  void Undo() { hands->Keys(*form, "Ctrl+Z"); }
  void Redo() { hands->Keys(*form, "Ctrl+Shift+Z"); }
  void ExpectUndoAndRedo(const char* names) const {
    EXPECT_EQ(NameOf("undo") + ", " + NameOf("redo"), names);
  }
  // Makes the board silent, and acts as soon as an operation waits for it.
  void WhenWaitingForASilentBoard(std::function<void()> act) {
    board.SetFaults({.silent = true});
    hands->When([this] { return Waiting(); }, std::move(act));
  }
};

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
  for (int i = 0; i < 65; ++i) Undo();
  EXPECT_EQ(Table(), Sequences());
  timer.Elapse();
  EXPECT_EQ(hands->Read("CWButtonEmuPC"), "Off") << "nothing is left to play";
}

TEST_F(UndoTest, OfAReadWaitsForItsEndAndTakesWhatWasDoneMeanwhileWithIt) {
  const ProgramState composed = StateOf(*this);
  WhenWaitingForASilentBoard([&] {
    ExpectUndoAndRedo("none, none");
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
  const QStringList lines = Lines();
  for (const char* operation : {"CommandErase", "CommandFlash"}) {
    WhenWaitingForASilentBoard([&] {
      Undo();
      Redo();
      EXPECT_EQ(Lines(), lines);
      ExpectUndoAndRedo("none, none");
      Unplug();
      ExpectMessage(kAbortText);
    });
    hands->Click(operation);
    ExpectUndoAndRedo("Add, Remove");
    ConnectAgain();
  }
}

// The steps of sequence 0, each by a letter: three as they are loaded, and the two into which "0"
// is split.
TEST_F(UndoTest, ProgrammingWritesWhatTheTableMustHold) {
  const std::map<char, Step> named = {
      {'0', {{0}, 4}}, {'1', {{22}, 4}}, {'2', {{40}, 4}}, {'a', {{0}, 2}}, {'b', {{11}, 2}}};
  const auto steps = [&](const std::string& names) {
    Sequences sequences;
    for (const char name : names) sequences[0].push_back(named.at(name));
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
      {'I', [&] { Press("CommandInterpolate"), hands->Type("CWNumEditInterp", "2"); }},
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
