// Breakpoints: their marks and flags, and playback that halts on them.
#include "tests/playback_fixture.h"

namespace pelmora {
namespace {

class BreakPoints : public Playback {
 protected:
  void ComposeTen() { Compose(std::vector<int>(10, 400)); }
};

TEST_F(BreakPoints, HaltContinueAndRepeat) {
  ComposeTen();
  SetBreak(4);
  Play(0);
  for (const int step : {1, 2, 3}) {
    ExpectTick(step);
    ExpectRunning();
  }
  ExpectTick(4);
  ExpectHalted();
  timer.Elapse();
  ExpectSent({});

  hands->Click("CommandContinue");
  ExpectRunning();
  EXPECT_EQ(timer.Wait(), 400);
  ExpectSent({});
  for (const int step : {5, 6, 7, 8, 9, 0, 1, 2, 3}) ExpectTick(step);
  ExpectRunning();
  ExpectTick(4);
  ExpectHalted();

  SetBreak(1);
  hands->Click("CommandRepeat");
  ExpectRunning();
  EXPECT_EQ(Selected(), 1);
  ExpectSent(Shown(1));
  for (const int step : {2, 3, 4}) ExpectTick(step);
  ExpectHalted();

  hands->Click("CommandRepeat");
  ExpectSent(Shown(1));
  hands->Click("CommandRepeat");  // no earlier breakpoint: from the start
  ExpectSent(Shown(0));
  EXPECT_EQ(Selected(), 0);
  hands->Click("CommandRepeat");
  EXPECT_EQ(Selected(), 0);
  ExpectTick(1);
  ExpectHalted();
  hands->Click(kEmuPC);
  ExpectIdle();
}

TEST_F(BreakPoints, ContinueAndRepeatTakeTheShownStepsDuration) {
  Compose({100, 200, 300});
  Play(2);
  const int starts = timer.Starts();
  Select(1);
  hands->Click("CommandContinue");
  EXPECT_EQ(timer.Wait(), 200);
  EXPECT_EQ(timer.Starts(), starts + 1);  // the wait begins anew
  Select(2);
  SetBreak(1);
  hands->Click("CommandRepeat");
  EXPECT_EQ(timer.Wait(), 200);
  hands->Click("CommandRepeat");
  EXPECT_EQ(timer.Wait(), 100);
  EXPECT_EQ(timer.Starts(), starts + 3);
  ExpectRunning();
}

TEST_F(BreakPoints, CommandsThatRebuildTheListClearThem) {
  for (const QString name : {"CommandAdd", "CommandRem", "RemoveNone", "CommandReplace",
                             "CommandMoreSeq", "CommandLessSeq", "CommandClear", "CommandClearAll",
                             "CommandResBrk", "SaveBuffer", "LoadBuffer"}) {
    hands->Click("CommandClearAll");
    hands->Click("CommandMoreSeq");
    Compose({100, 200});
    SetBreak(0);
    SetBreak(1);
    if (name == "RemoveNone") {
      Select(-1);
      hands->Click("CommandRem");
      EXPECT_EQ(Lines().size(), 2);
    } else if (name.startsWith("Command")) {
      hands->Click(name);
    } else {
      Trigger(name);  // the file dialog is cancelled
    }
    EXPECT_EQ(Breaks(), std::vector<int>{}) << name.toStdString();
  }
}

}  // namespace
}  // namespace pelmora
