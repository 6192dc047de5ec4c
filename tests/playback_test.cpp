// Playing a sequence from the PC and by the board: which bytes leave at which step, the switches
// and the timer in every state, and what the operator may do meanwhile, in a long list, too.
#include "platform/controls/cw_button.h"
#include "platform/look/list_look.h"
#include "playback/pc_emulator.h"
#include "tests/window_fixture.h"

namespace pelmora {
namespace {

constexpr char kEmuPC[] = "CWButtonEmuPC";
constexpr char kRealEmu[] = "CWButtonRealEmu";

class Playback : public WindowTest {
 protected:
  // Channel 0 of step `step` of a composed sequence.
  static std::uint8_t Position(int step) { return static_cast<std::uint8_t>(100 + step); }
  static Bytes Shown(int step) { return {8, Position(step)}; }

  // Steps that differ in channel 0. To be called before the port is open, so that nothing is sent.
  void Compose(const std::vector<int>& durations) {
    for (std::size_t i = 0; i < durations.size(); ++i) {
      AddStep(0, Position(static_cast<int>(i)), durations[i]);
    }
    hands->Click("CommandUpdate");
  }

  void Play(int from) {
    Connect();
    Select(from);
    hands->Click(kEmuPC);
  }

  bool On(const char* name) const { return hands->Read(name) == "On"; }

  // The next tick shows exactly this step.
  void ExpectTick(int step) {
    timer.Elapse();
    EXPECT_EQ(Selected(), step);
    ExpectSent(Shown(step));
  }
  void ExpectTicks(std::initializer_list<int> steps) {
    for (const int step : steps) ExpectTick(step);
  }

  void ExpectState(bool on, bool running, bool real_emu_enabled) {
    EXPECT_EQ(On(kEmuPC), on);
    EXPECT_EQ(timer.Enabled(), running);
    EXPECT_EQ(Enabled(kRealEmu), real_emu_enabled);
    EXPECT_TRUE(Enabled(kEmuPC));
    EXPECT_EQ(hands->Find<platform::CWButton>(kEmuPC).Waiting(), on && !running);
  }
  // The step that playback holds and its duration in ms, held for no longer than since `from`.
  void ExpectHeld(int line, int duration, std::chrono::steady_clock::time_point from) {
    const std::optional<HeldStep> held = form->Playback().Held();
    ASSERT_TRUE(held);
    EXPECT_EQ(held->line, line);
    EXPECT_EQ(held->duration_ms, duration);
    EXPECT_GE(held->since, from);
  }
  void ExpectIdle() {
    ExpectState(false, false, true);
    EXPECT_FALSE(form->Playback().Held());
  }
  void ExpectRunning() { ExpectState(true, true, false); }
  void ExpectHalted() { ExpectState(true, false, false); }

  void SetBreak(int line) {
    const int selected = Selected();
    Select(line);
    hands->Click("CommandBrk");
    Select(selected);
  }
};

TEST_F(Playback, HoldsTheSelectedStepThenWalksRoundTheList) {
  const std::vector<int> durations = {500, 1000, 200};
  Compose(durations);
  Play(0);
  ExpectRunning();
  EXPECT_EQ(timer.Wait(), 500);
  ExpectSent({});
  for (const int step : {1, 2, 0, 1, 2, 0, 1}) {
    const auto before = std::chrono::steady_clock::now();
    ExpectTick(step);
    ExpectHeld(step, durations[static_cast<std::size_t>(step)], before);
    EXPECT_EQ(timer.Wait(), durations[static_cast<std::size_t>(step)]);
    EXPECT_EQ(hands->Read("LabelStep"), QString("Step N° %1").arg(step));
    EXPECT_EQ(hands->Read("CWNumEditTimeStep"), QString("%1 ms").arg(timer.Wait()));
    EXPECT_EQ(timer.Starts(), 1);  // the ticks follow each other; none starts the wait anew
  }
  hands->Click(kEmuPC);
  ExpectIdle();
  EXPECT_EQ(Selected(), 1);
}

// Breakpoints: their marks and flags, and playback that halts on them.
class BreakPoints : public Playback {
 protected:
  static int Duration(int step) { return 400 + 20 * step; }
  // The button shows this step, whose whole duration is waited for.
  void ExpectAfter(const char* button, int step) {
    const int starts = timer.Starts();
    const auto before = std::chrono::steady_clock::now();
    hands->Click(button);
    ExpectRunning();
    ExpectHeld(step, Duration(step), before);
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

// The list under the operator's hands, longer than its window, while a sequence plays in it.
class LongList : public Playback {
 protected:
  LongList() : list(List()) {
    Compose(std::vector<int>(40, 100));
    composed = Lines();
    list.SetListIndex(0);
  }

  // The composed lines, one of which has gone to another place.
  QStringList Moved(int from, int to) const {
    QStringList lines = composed;
    lines.move(from, to);
    return lines;
  }
  QPoint On(int line) const { return list.visualItemRect(list.item(line)).center(); }
  QPoint Lowest() const { return {20, list.viewport()->height() - 1}; }
  int LowestLine() const { return list.indexAt(Lowest()).row(); }
  void Press(QPoint place) { QTest::mousePress(list.viewport(), Qt::LeftButton, {}, place); }
  void Move(QPoint place) { QTest::mouseMove(list.viewport(), place); }
  void Release(QPoint place) { QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, place); }

  platform::ListBox& list;
  QStringList composed;
};

TEST_F(LongList, AClickWhileItPlaysMovesNoStep) {
  Play(0);
  for (int ticks = 0; ticks < 16; ++ticks) {
    list.scrollToTop();
    list.SetListIndex(8);
    const int line = LowestLine();
    Press(Lowest());
    for (int i = 0; i < ticks; ++i) timer.Elapse();
    Release(Lowest());
    EXPECT_EQ(Lines(), composed) << ticks;
    EXPECT_EQ(Selected(), line) << ticks;
  }
}

TEST_F(LongList, ADragWhileItPlaysDropsWhereThePointerIs) {
  Play(0);
  const int line = LowestLine();
  Press(On(2));
  for (int report = 0; report < 5; ++report) {
    Move(Lowest() - QPoint(0, report));
    timer.Elapse();
  }
  Release(Lowest());
  EXPECT_EQ(Selected(), line);
  EXPECT_EQ(Lines(), Moved(2, line));
}

TEST_F(LongList, ADragGoesBeyondThePageAndEscapeTakesItBack) {
  hands->DragLine("ListSequence", 1, 30);
  EXPECT_EQ(Lines(), Moved(1, 30));
  EXPECT_EQ(Selected(), 30);
  hands->DragLine("ListSequence", 30, 1);
  Press(On(1));
  Move(Lowest());
  QTest::keyClick(&list, Qt::Key_Escape);
  Release(Lowest());
  EXPECT_EQ(Lines(), composed);
  EXPECT_EQ(Selected(), 1);
  Press(On(1));
  Move(Lowest());
  QTest::keyClick(&list, Qt::Key_Q, Qt::AltModifier);  // "Clear Sequence"
  Release(Lowest());
  EXPECT_TRUE(Lines().isEmpty());
}

}  // namespace
}  // namespace pelmora
