// Playing a sequence from the PC and by the board: which bytes leave at which step, the switches
// and the timer in every state, and what the operator may do meanwhile.
#include "platform/list_look.h"
#include "tests/playback_fixture.h"

namespace pelmora {
namespace {

TEST_F(Playback, HoldsTheSelectedStepThenWalksRoundTheList) {
  const std::vector<int> durations = {500, 1000, 200};
  Compose(durations);
  Play(0);
  ExpectRunning();
  EXPECT_EQ(timer.Wait(), 500);
  ExpectSent({});
  for (const int step : {1, 2, 0, 1, 2, 0, 1}) {
    ExpectTick(step);
    EXPECT_EQ(timer.Wait(), durations[static_cast<std::size_t>(step)]);
    EXPECT_EQ(hands->Read("LabelStep"), QString("Step N° %1").arg(step));
    EXPECT_EQ(hands->Read("CWNumEditTimeStep"), QString("%1 ms").arg(timer.Wait()));
    EXPECT_EQ(timer.Starts(), 1);  // the ticks follow each other; none starts the wait anew
  }
  hands->Click(kEmuPC);
  ExpectIdle();
  EXPECT_EQ(Selected(), 1);
}

TEST_F(Playback, StartsWhereTheSelectionStands) {
  Compose({60, 80, 100});
  Select(-1);
  ExpectMessage("No Connection Available!");
  hands->Click(kEmuPC);
  ExpectIdle();
  EXPECT_EQ(Selected(), -1) << "without a port nothing changes";
  Connect();
  for (const auto& [selected, held, then] :
       {std::tuple(-1, 60, 1), std::tuple(1, 80, 2), std::tuple(2, 100, 0)}) {
    Select(selected);
    hands->Click(kEmuPC);
    EXPECT_EQ(timer.Wait(), held);
    timer.Elapse();
    EXPECT_EQ(Selected(), then);
    hands->Click(kEmuPC);
  }
}

TEST_F(Playback, AnEmptyListLeavesTheSwitchOnWithoutATick) {
  Connect();
  for (const char* button : {kEmuPC, "CommandBrk", "CommandContinue", "CommandRepeat"}) {
    hands->Click(button);
    ExpectHalted();
  }
  AddStep(0, 90, 340);
  ExpectHalted();
  hands->Click("CommandContinue");
  ExpectRunning();
  EXPECT_EQ(timer.Wait(), 340);
}

using BoardPlays = Playback;

TEST_F(BoardPlays, TheCurrentSequence) {
  hands->ChooseMenu("Emu");
  Connect();
  for (const int sequence : {0, 15}) {
    while (Data().CurSeq < sequence) hands->Click("CommandMoreSeq");
    hands->Click(kRealEmu);
    ExpectSent({3, static_cast<std::uint8_t>(sequence)});
    EXPECT_FALSE(Enabled(kEmuPC));
    EXPECT_TRUE(Enabled(kRealEmu));
    hands->Click(kEmuPC);
    EXPECT_FALSE(On(kEmuPC));
    hands->Click(kRealEmu);
    ExpectSent({4});
    ExpectIdle();
  }
}

TEST_F(Playback, ResetStopsItRunningAndHalted) {
  Compose({100, 200});
  Play(0);
  hands->Click("CWButtonMainOnOff");
  ExpectSent({1});
  hands->ChooseMenu("Resetting");
  ExpectSent({17, 0});
  ExpectIdle();
  SetBreak(1);
  hands->Click(kEmuPC);
  ExpectTick(1);
  ExpectHalted();
  Trigger("Resetting");
  ExpectSent({17});
  ExpectIdle();
  // One that finds the line dead gives one message.
  hands->Click(kEmuPC);
  hands->Click("CWButtonMainOnOff");
  Sent(1);
  LoseThePort([this] { Trigger("Resetting"); });
  EXPECT_FALSE(On("CWButtonMainOnOff"));
}

TEST_F(Playback, ALostPortEndsItWithOneMessage) {
  Compose({100, 200});
  hands->ChooseMenu("Emu");
  for (const auto& [button, halted] :
       {std::pair(kEmuPC, false), std::pair(kEmuPC, true), std::pair(kRealEmu, false)}) {
    Connect();
    Select(0);
    hands->Click(button);
    if (halted) SetBreak(1);
    timer.Elapse();
    EXPECT_EQ(timer.Enabled(), button == kEmuPC && !halted);
    LoseThePort([this] { timer.Elapse(); });
    EXPECT_FALSE(On(kRealEmu));
    EXPECT_EQ(Lines().size(), 2);
    hands->Click("CommandResBrk");
    board.Replug();
    board.ClearLog();
  }
  Play(1);
  timer.Elapse();
  EXPECT_EQ(Selected(), 0);
}

// Breakpoints: their marks and flags, and playback that halts on them.
class BreakPoints : public Playback {
 protected:
  static int Duration(int step) { return 400 + 20 * step; }
  // The button shows this step, whose whole duration is waited for.
  void ExpectAfter(const char* button, int step) {
    const int starts = timer.Starts();
    hands->Click(button);
    ExpectRunning();
    EXPECT_EQ(Selected(), step);
    EXPECT_EQ(timer.Wait(), Duration(step));
    EXPECT_EQ(timer.Starts(), starts + 1);
  }
};

TEST_F(BreakPoints, HaltContinueAndRepeat) {
  std::vector<int> durations;
  for (int step = 0; step < 10; ++step) durations.push_back(Duration(step));
  Compose(durations);
  for (const int line : {2, 4, 2}) SetBreak(line);  // the second press takes it away
  ExpectBreaks({4});
  Play(0);
  ExpectTicks({1, 2, 3});
  ExpectAfter("CommandContinue", 3);
  ExpectTick(4);
  ExpectHalted();
  const QPoint line = List().visualItemRect(List().item(4)).bottomLeft();
  EXPECT_EQ(List().viewport()->grab().toImage().pixelColor(line),
            platform::ColoursOf({.selected = true, .halted = true}, List().palette()).ground);
  timer.Elapse();
  ExpectSent({});
  ExpectAfter("CommandContinue", 4);
  ExpectSent({});
  ExpectTicks({5, 6, 7, 8, 9, 0, 1, 2, 3});
  ExpectRunning();
  ExpectTick(4);
  ExpectHalted();

  SetBreak(1);
  ExpectAfter("CommandRepeat", 1);
  ExpectSent(Shown(1));
  ExpectTicks({2, 3, 4});
  ExpectHalted();
  for (const int step : {1, 0}) {  // without an earlier breakpoint from the start
    ExpectAfter("CommandRepeat", step);
    ExpectSent(Shown(step));
  }
  ExpectAfter("CommandRepeat", 0);
  ExpectTick(1);
  ExpectHalted();
  hands->Click(kEmuPC);
  ExpectIdle();
}

TEST_F(BreakPoints, CommandsThatRebuildTheListClearThem) {
  // "Remove" also when it has no line to remove, the file commands also when they are cancelled.
  for (const QString name : {"CommandAdd", "CommandRem", "CommandRem, none selected",
                             "CommandReplace", "CommandMoreSeq", "CommandLessSeq", "CommandClear",
                             "CommandClearAll", "CommandResBrk", "SaveBuffer", "LoadBuffer"}) {
    hands->Click("CommandClearAll");
    hands->Click("CommandMoreSeq");
    Compose({100, 200});
    SetBreak(0);
    SetBreak(1);
    SCOPED_TRACE(name.toStdString());
    if (name.endsWith("none selected")) Select(-1);
    if (name.endsWith("Buffer")) {
      Trigger(name);
    } else {
      hands->Click(name.section(',', 0, 0));
    }
    ExpectBreaks({});
  }
}

}  // namespace
}  // namespace pelmora
