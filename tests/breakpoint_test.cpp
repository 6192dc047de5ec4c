// Breakpoints: their marks and flags, and playback that halts on them.
#include "tests/playback_fixture.h"

namespace pelmora {
namespace {

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
