// Breakpoints: their marks and flags, and playback that halts on them.
#include "tests/playback_fixture.h"

namespace pelmora {
namespace {

class BreakPoints : public Playback {
 protected:
  void ExpectRepeatFrom(int step) {
    hands->Click("CommandRepeat");
    ExpectRunning();
    EXPECT_EQ(Selected(), step);
  }
};

TEST_F(BreakPoints, HaltContinueAndRepeat) {
  Compose(std::vector<int>(10, 400));
  SetBreak(4);
  Play(0);
  ExpectTicks({1, 2, 3});
  ExpectRunning();
  ExpectTick(4);
  ExpectHalted();
  timer.Elapse();
  ExpectSent({});

  hands->Click("CommandContinue");
  ExpectRunning();
  ExpectSent({});
  ExpectTicks({5, 6, 7, 8, 9, 0, 1, 2, 3});
  ExpectRunning();
  ExpectTick(4);
  ExpectHalted();

  SetBreak(1);
  ExpectRepeatFrom(1);
  ExpectSent(Shown(1));
  ExpectTicks({2, 3, 4});
  ExpectHalted();
  ExpectRepeatFrom(1);
  ExpectSent(Shown(1));
  ExpectRepeatFrom(0);  // no earlier breakpoint: from the start
  ExpectSent(Shown(0));
  ExpectRepeatFrom(0);
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
  ExpectRepeatFrom(1);
  EXPECT_EQ(timer.Wait(), 200);
  ExpectRepeatFrom(0);
  EXPECT_EQ(timer.Wait(), 100);
  EXPECT_EQ(timer.Starts(), starts + 3);
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
    if (name.endsWith("none selected")) Select(-1);
    if (name.endsWith("Buffer")) {
      Trigger(name);
    } else {
      hands->Click(name.section(',', 0, 0));
    }
    EXPECT_TRUE(Breaks().empty()) << name.toStdString();
  }
}

}  // namespace
}  // namespace pelmora
