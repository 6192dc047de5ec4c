// Playing a sequence from the PC: which bytes leave at which step, and when the wait for its end
// begins; what the operator may do meanwhile in a long list.
#include "platform/controls/cw_button.h"
#include "platform/look/list_look.h"
#include "playback/pc_emulator.h"
#include "tests/window_fixture.h"

namespace pelmora {
namespace {

constexpr char kEmuPC[] = "CWButtonEmuPC";

class Playback : public WindowTest {
 protected:
  // Of step `step` of a composed sequence: channel 0, and the duration.
  static int Position(int step) { return 100 + step; }
  static int Duration(int step) { return 400 + 20 * step; }

  // Steps that differ in channel 0. To be called before the port is open, so that nothing is sent.
  void Compose(int steps) {
    for (int step = 0; step < steps; ++step) AddStep(0, Position(step), Duration(step));
    hands->Click("CommandUpdate");
  }

  void Play(int from) {
    Connect();
    Select(from);
    hands->Click(kEmuPC);
  }

  void ToggleBreak(int line) {
    const int selected = Selected();
    Select(line);
    hands->Click("CommandBrk");
    Select(selected);
  }

  // Ticks ("t"), presses of "Continue" ("C") and "Repeat" ("R"), each with the step that is
  // selected after it. What stands behind that: "*" its position was sent, "^" the wait for its end
  // has begun anew, "!" playback has halted.
  void Walk(const QString& actions) {
    for (const QString& action : actions.split(' ')) {
      const int starts = timer.Starts();
      const auto before = std::chrono::steady_clock::now();
      if (action[0] == 't') timer.Elapse();
      if (action[0] == 'C') hands->Click("CommandContinue");
      if (action[0] == 'R') hands->Click("CommandRepeat");
      const int step = Selected();
      const Bytes sent = Sent(action.contains('*') ? 2 : 0);
      QString seen = action[0] + QString::number(step);
      if (sent == Bytes{8, static_cast<std::uint8_t>(Position(step))}) seen += '*';
      if (timer.Starts() > starts) seen += '^';
      if (hands->Find<platform::CWButton>(kEmuPC).Waiting()) seen += '!';
      EXPECT_EQ(seen.toStdString(), action.toStdString());
      EXPECT_EQ(timer.Enabled(), !action.contains('!'));
      if (!timer.Enabled()) continue;
      EXPECT_EQ(timer.Wait(), Duration(step));
      const std::optional<HeldStep> held = form->Playback().Held();
      ASSERT_TRUE(held);
      EXPECT_EQ(held->line, step);
      EXPECT_GE(held->since, before);
    }
  }
};

TEST_F(Playback, HaltsOnBreakpointsContinuesAndRepeats) {
  Compose(10);
  for (const int line : {2, 4, 2}) ToggleBreak(line);  // the second press takes it away
  Play(0);
  Walk("t1* t2* t3* C3^ t4*!");
  const QPoint line = List().visualItemRect(List().item(4)).bottomLeft();
  EXPECT_EQ(List().viewport()->grab().toImage().pixelColor(line),
            platform::ColoursOf({.selected = true, .halted = true}, List().palette()).ground);
  Walk("t4! C4^ t5* t6* t7* t8* t9* t0* t1* t2* t3* t4*!");
  ToggleBreak(1);
  // "Repeat" goes back to the breakpoint before, without one to the start.
  Walk("R1*^ t2* t3* t4*! R1*^ R0*^ R0^ t1*!");
  hands->Click(kEmuPC);
  EXPECT_FALSE(form->Playback().Held());
}

// The list under the operator's hands, longer than its window, while a sequence plays in it.
class LongList : public Playback {
 protected:
  LongList() : list(List()) {
    Compose(40);
    composed = Lines();
    list.SetListIndex(0);
  }

  QPoint Lowest() const { return {20, list.viewport()->height() - 1}; }
  int LowestLine() const { return list.indexAt(Lowest()).row(); }
  void Press(QPoint place) { QTest::mousePress(list.viewport(), Qt::LeftButton, {}, place); }
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
  Press(list.visualItemRect(list.item(2)).center());
  for (int report = 0; report < 5; ++report) {
    QTest::mouseMove(list.viewport(), Lowest() - QPoint(0, report));
    timer.Elapse();
  }
  Release(Lowest());
  EXPECT_EQ(Selected(), line);
  composed.move(2, line);
  EXPECT_EQ(Lines(), composed);
}

}  // namespace
}  // namespace pelmora
