// Shaping a movement: drags and keys in the window "Movement", what they change, what they send,
// and what becomes of a drag when something else happens meanwhile.
#include "platform/controls/cw_slide.h"
#include "tests/movement_fixture.h"

namespace pelmora {
namespace {

class Shape : public Movement {
 protected:
  Shape() {
    ComposeAndOpen(30);
    Select(3);
    Press("CommandBrk");
    Select(8);
    hands->Click("CommandUp");  // shows step 9
  }

  int Fader(int channel) const {
    return hands->Read(QStringLiteral("CWSlide1_%1").arg(channel)).toInt();
  }
  // So many ms on the screen, in whole pixels.
  int Wide(double ms) const { return At(ms, 0).x() - At(0, 0).x(); }
  // Bytes for some 50 ms, by faders that are back where they were.
  void KeepTheLineBusy() {
    for (int channel = 1; channel < kChannels; ++channel) {
      for (const int position : {Fader(channel) ^ 1, Fader(channel)}) SetSlider(channel, position);
    }
  }
  void Drag(const QPoint& from, const QPoint& way) {
    DragTo(from, from + way);
    ReleaseAt(from + way);
  }
  // The values of steps that differ from these, "6.0 = 182" for channel 0 of step 6, and what else
  // of the program does.
  std::string Changes(const EditRows& rows, const ProgramState& state) const {
    QStringList changes;
    for (std::size_t step = 0; step < rows.size(); ++step) {
      for (std::size_t column = 0; column < kEditColumns; ++column) {
        const int value = Data().EditBuffer[step][column];
        if (value == rows[step][column]) continue;
        changes.append(QString("%1.%2 = %3").arg(step).arg(column).arg(value));
      }
    }
    const QRegularExpression others("^(?!Movement|focus|redo|[-+])");
    return (changes + Difference(state, StateOf(*this)).filter(others)).join(" · ").toStdString();
  }
};

TEST_F(Shape, ADragChangesOneValueOfOneStep) {
  const double half = Geometry().lanes.Y(0, 0) - Geometry().lanes.Y(0, 1);
  ASSERT_GE(half, 1) << "a pixel is no more than half a degree";
  Connect();
  const struct {
    QPoint from, way;
    const char* live;  // said while the button is down
    const char* changes;
  } cases[] = {
      {Level(6, 0), {0, -30}, "Ch0 27 °", "6.0 = 182 · Ch0: 182 · selected: 6 · undo: Angle"},
      // The step with the breakpoint.
      {Level(3, 0), {9, 1}, "Ch0 5.5 °", "3.0 = 139 · Ch0: 139 · selected: 3 · undo: Angle"},
      // Beyond the lane.
      {Level(6, 0), {-40, -900}, "Ch0 63.5 °", "6.0 = 255 · Ch0: 255 · selected: 6 · undo: Angle"},
      // Ends of steps: in a lane, on the ruler, the last one.
      {At(2800, 300), {Wide(100), 40}, "500 ms", "6.12 = 500 · selected: 6 · undo: Duration"},
      {At(400, 20), {-500, 0}, "20 ms", "0.12 = 20 · selected: 0 · undo: Duration"},
      {At(12000, 300),
       {Wide(40), 0},
       "440 ms",
       "29.12 = 440 · selected: 29 · top line: 17 · undo: Duration"},
  };
  for (const auto& [from, way, live, changes] : cases) {
    SCOPED_TRACE(changes);
    Select(9);
    const EditRows rows = Data().EditBuffer;
    const ProgramState before = StateOf(*this);
    const double span = Canvas().Time().Span();
    PressAt(from);
    KeepTheLineBusy();
    MoveTo(from + way);
    EXPECT_TRUE(State().contains(Local(live))) << State().toStdString();
    EXPECT_EQ(Data().EditBuffer, rows) << "not before its end";
    ReleaseAt(from + way);
    EXPECT_EQ(Changes(rows, before), changes);
    EXPECT_EQ(Canvas().Time().Span(), span) << "nothing slips away from under the pointer";
    const int fader = Fader(0);
    Keys("Ctrl+Z");
    EXPECT_EQ(Data().EditBuffer, rows);
    EXPECT_EQ(Fader(0), fader) << "undo moves no fader";
    Keys("Ctrl+0");
  }
}

TEST_F(Shape, InALowLaneAndAsAClickThatTrembles) {
  const QStringList before = Lines();
  Drag(Level(6, 5), {1, 1});
  EXPECT_EQ(Selected(), 6) << "a click";
  EXPECT_EQ(Lines(), before);
  Drag(Level(6, 5, 5), {0, -20});
  EXPECT_EQ(Position(6, 5), 128 - 24 + 20) << "the lane that was clicked is the high one";
  Drag(Level(6, 5, 5), {0, -5});
  Keys("Ctrl+Z");
  EXPECT_EQ(Position(6, 5), 128 - 24 + 20) << "each drag is undone by itself";
  // Half degrees are fewer than pixels in a low lane.
  Drag(Level(6, 11, 5), {0, -6});
  EXPECT_GT(Position(6, 11), 128 - 24 + 6);
}

TEST_F(Shape, EscapePutsEverythingBack) {
  SetSlider(0, 77);
  Connect();
  const ProgramState before = StateOf(*this);
  board.ClearLog();
  for (const auto& [from, way] :
       {std::pair(Level(9, 0), QPoint(0, -50)), std::pair(At(4000, 300), QPoint(60, 0))}) {
    DragTo(from, from + way);
    Keys("Escape");
    EXPECT_TRUE(Shown()) << "the first one is the drag's";
    ReleaseAt(from + way);
    ExpectAsIn(before);
  }
  const Bytes sent = Sent(4);
  EXPECT_EQ(Bytes(sent.end() - 2, sent.end()), (Bytes{8, 77})) << "the servo, too";
  EXPECT_EQ(NameOf("undo"), "Load Buffer");
  // Keys and other buttons mean nothing during a drag.
  DragTo(Level(9, 0), Level(9, 0) + QPoint(0, -50));
  Keys("Right Shift+Up Down Enter Ctrl++ Escape");
  QTest::mouseClick(Window().windowHandle(), Qt::RightButton, {}, {300, 300});
  ReleaseAt({300, 300});
  ExpectAsIn(before);
}

// Whatever else happens, the drag ends, and what happened counts.
TEST_F(Shape, ADragEndsWithoutEffectWhenSomethingElseHappens) {
  Connect();
  const auto play_for_a_moment = [&] {
    Press("CWButtonEmuPC");
    QTest::qWait(30);
    Press("CWButtonEmuPC");
  };
  const auto minimise = [&] {
    QHideEvent hide;
    QShowEvent show;
    QApplication::sendEvent(&Canvas(), &hide);
    QApplication::sendEvent(&Canvas(), &show);
  };
  const auto open_dialog = [&] {
    Press("CommandInterpolate");
    EXPECT_TRUE(Window().isVisible());
    EXPECT_FALSE(Canvas().isEnabled());
    Keys("Right Shift+Up Shift+Right");
    hands->Click("CancelButton");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(Canvas().isEnabled());
  };
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"undo", [&] { Keys("Ctrl+Z"); }},
      {"a step goes", [&] { Press("CommandRem"); }},
      {"a step is moved", [&] { ListKeys("Ctrl+Up"); }},
      {"another sequence", [&] { Press("CommandMoreSeq"), Press("CommandLessSeq"); }},
      {"a step comes", [&] { Press("CommandAdd"); }},
      {"all is cleared", [&] { Press("CommandClear"); }},
      {"a read completes", [&] { FillFlash(FilledSequences(3, 20, 5)), ReadWell(); }},
      {"playback ends", play_for_a_moment},
      {"the window hides", [&] { Keys("Ctrl+M"); }},
      {"it is minimised", minimise},
      {"the program is locked", [&] { form->setEnabled(false), form->setEnabled(true); }},
      {"another window comes up", [&] { QApplication::setActiveWindow(form.get()); }},
      {"the dialog comes up", open_dialog},
  };
  for (const auto& [what, happens] : cases) {
    for (const bool angle : {true, false}) {
      SCOPED_TRACE(std::string(what) + (angle ? ", angle" : ", duration"));
      Compose(30);
      Press("CommandAdd");  // something to undo
      Open();
      Keys("Ctrl+0");
      const QPoint from = angle ? Level(4, 0) : At(Geometry().time.X(0) + 2000, 300);
      const QPoint way = angle ? QPoint(0, -30) : QPoint(50, 0);
      SetSlider(0, 77);
      DragTo(from, from + way);
      const int fader = Fader(0);
      happens();
      EXPECT_EQ(Fader(0), fader) << "where the servo is";
      const ProgramState then = StateOf(*this);
      MoveTo(from + 2 * way);
      ReleaseAt(from + 2 * way);
      QTest::qWait(10);
      ExpectAsIn(then);
    }
  }
}

TEST_F(Shape, GoesOnWhilePlaybackRuns) {
  Connect();
  Select(6);
  for (int i = 0; i < 8; ++i) Keys("Ctrl++");
  Select(12);
  Press("CWButtonEmuPC");
  Select(6);
  const double left = Canvas().Time().Left();
  DragTo(Level(6, 0), Level(6, 0) + QPoint(0, -10));
  EXPECT_EQ(Selected(), 6) << "a press selects, and playback goes on from there";
  ASSERT_TRUE(hands->WaitUntil([&] {
    timer.Elapse();
    return Selected() == 18;
  }));
  EXPECT_EQ(Fader(0), Position(18, 0));
  EXPECT_EQ(Canvas().Time().Left(), left) << "what is under a pressed button stays there";
  MoveTo(Level(6, 0) + QPoint(0, -20));
  EXPECT_TRUE(hands->WaitUntil([&] { return Fader(0) == Position(6, 0) + 20; })) << Fader(0);
  ReleaseAt(Level(6, 0) + QPoint(0, -20));
  EXPECT_EQ(Position(6, 0), 128 + 24 + 20);
  EXPECT_EQ(Selected(), 18);
  EXPECT_TRUE(timer.Enabled());
}

TEST_F(Shape, AWarningAtTheEndOfADragLeavesNothingHeld) {
  Keys("Escape");
  ExpectMessage("Out of memory: too many steps. Max # of bytes is 24064!");
  Load(FilledSequences(1, 4096, 7));
  Open();
  Keys("Home");
  for (int i = 0; i < 15; ++i) Keys("Ctrl++");
  const QPoint end = At(Duration(0), 300);
  const int before = Duration(0);
  DragTo(end, end + QPoint(60, 0));
  ExpectMessage("Out of memory: too many steps. Max # of bytes is 24064!", [&] {
    MoveTo(end + QPoint(200, 0));
    ReleaseAt(end + QPoint(200, 0));
    Keys("Escape");
  });
  ReleaseAt(end + QPoint(60, 0));
  EXPECT_GT(Duration(0), before);
  EXPECT_EQ(Lines().size(), kSteps) << "256 steps can be shaped, too";
}

TEST_F(Shape, AnEndHeldBesideTheViewScrollsIt) {
  for (int i = 0; i < 8; ++i) Keys("Ctrl++");
  Keys("End");
  const QPoint end = At(12000, 300);
  DragTo(end, QPoint(Canvas().width() + 30, 300));
  const double left = Canvas().Time().Left();
  ASSERT_TRUE(hands->WaitUntil([&] { return Canvas().Time().Left() > left + 200; }));
  MoveTo(QPoint(Canvas().width() - 50, 300));
  ReleaseAt(QPoint(Canvas().width() - 50, 300));
  EXPECT_GT(Duration(29), 500);
}

TEST_F(Shape, KeysShapeTheSelectedStepInTheChosenLane) {
  Connect();
  Select(4);
  Keys("Down Down");
  board.ClearLog();
  const std::tuple<const char*, int, int, const char*> cases[] = {
      {"Shift+Up", 2, 145, "Angle"},        {"Shift+Down Shift+Down", 2, 143, "Angle"},
      {"Shift+PgUp", 2, 153, "Angle"},      {"Shift+PgDown", 2, 143, "Angle"},
      {"Shift+Right", 12, 420, "Duration"}, {"Shift+Left Shift+Left", 12, 380, "Duration"}};
  for (const auto& [keys, column, value, name] : cases) {
    Keys(keys);
    EXPECT_EQ(Position(4, column), value) << keys;
    EXPECT_EQ(NameOf("undo"), name);
  }
  EXPECT_EQ(Fader(2), 143) << "the servo shows the angle";
  EXPECT_EQ(Sent(10), (Bytes{10, 145, 10, 144, 10, 143, 10, 153, 10, 143})) << "each change once";
  // Keys in a row are one step of undo, a held one, too.
  Operator::Hold(Canvas(), Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(Position(4, 2), 149);
  for (const auto& [column, value] : {std::pair(2, 143), std::pair(12, 400), std::pair(2, 144)}) {
    Keys("Ctrl+Z");
    EXPECT_EQ(Position(4, column), value);
  }
  EXPECT_EQ(Selected(), 4);
}

}  // namespace
}  // namespace pelmora
