// The window "Movement" under the operator's hands: it shows what the list holds, walks through the
// steps and shapes them, whatever else happens meanwhile.
#include <QtTest/qtestspontaneevent.h>
#include <QAccessible>
#include <QBackingStore>
#include <QPaintEvent>
#include <QScrollBar>
#include <QToolTip>

#include "tests/movement_fixture.h"
#include "tests/screen_reader.h"

namespace pelmora {
namespace {

constexpr char kEmuPC[] = "CWButtonEmuPC";

// What of a widget has been painted anew.
struct Painted : QObject {
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) region |= static_cast<QPaintEvent*>(event)->region();
    return false;
  }
  QRegion region;
};

TEST_F(Movement, ComesBackWhereItWasLeftAndGoesWithTheProgram) {
  EXPECT_FALSE(form->findChild<MovementWindow*>()) << "not made before it is wanted";
  Open();
  EXPECT_FALSE(Window().isModal());
  const QRect place = Window().geometry();
  Window().close();
  EXPECT_FALSE(Shown() || Item().isChecked() || main_loop.Ending());
  Item().trigger();
  EXPECT_TRUE(Shown() && Item().isChecked());
  EXPECT_EQ(Window().geometry(), place);
  QHideEvent minimised;
  QSpontaneKeyEvent::setSpontaneous(&minimised);
  qApp->notify(&Window(), &minimised);
  EXPECT_TRUE(Item().isChecked()) << "it is still there";
  Window().showMinimized();
  EXPECT_FALSE(Item().isChecked());
  Item().trigger();
  EXPECT_TRUE(Shown() && Item().isChecked() && !Window().isMinimized());
  form->close();
  EXPECT_FALSE(Shown());
}

TEST_F(Movement, DrawsSelectionHaltBreakpointsAndLateSteps) {
  ComposeAndOpen(5);
  EXPECT_EQ(ColourAt(Level(3, 0)), Colours().curve);
  const int y = Canvas().height() - 3;  // below the level in the last lane
  const auto expect = [&](int ms, const QColor& colour) { EXPECT_EQ(ColourAt(At(ms, y)), colour); };
  expect(1000, Colours().odd_lane);
  hands->Wait(50);
  Painted painted;
  Canvas().installEventFilter(&painted);
  Select(2);
  EXPECT_TRUE(hands->WaitUntil([&] {
    return painted.region.contains({Places::kLabels / 2, y});
  })) << "the angles beside the names";
  expect(1000, Colours().selected);
  Press("CommandBrk");
  expect(800, Colours().brk);
  Connect();
  Select(1);
  hands->Click(kEmuPC);
  expect(600, Colours().selected);
  timer.Elapse();
  expect(1000, Colours().halted);
  hands->Click(kEmuPC);
  expect(1000, Colours().selected);
  // Twelve channels in 20 ms.
  EXPECT_NE(ColourAt(At(1590, Places::kRuler - 3)), Colours().amber);
  Select(4);
  hands->Type("CWNumEditTimeStep", "20");
  for (int channel = 0; channel < kChannels; ++channel) SetSlider(channel, 200);
  Press("CommandReplace");
  const QPoint late = At(1610, Places::kRuler - 3);
  EXPECT_EQ(ColourAt(late), Colours().amber);
  QHelpEvent help(QEvent::ToolTip, late, Canvas().mapToGlobal(late));
  QApplication::sendEvent(&Canvas(), &help);
  EXPECT_EQ(QToolTip::text(), Local("Step 4 lasts 20 ms, but its positions take 27.5 ms on the "
                                    "line: played from the PC it comes late. The board plays it "
                                    "in time."));
}

TEST_F(Movement, AClickOnANameChoosesTheLaneAndThePointerSaysWhatAPressTakes) {
  ComposeAndOpen(30);
  Select(9);
  ClickAt({20, static_cast<int>(Geometry().lanes.Top(3)) + 5});
  EXPECT_EQ(State(), Local("Step 9, 3.60 s to 4.00 s, 400 ms, Ch3 -18 °"));
  const std::pair<QPoint, Qt::CursorShape> shapes[] = {
      {Level(4, 3, 3), Qt::SplitVCursor},
      {Level(4, 9, 3), Qt::SplitVCursor},
      {Level(4, 3, 3) + QPoint(0, 20), Qt::ArrowCursor},
      {At(2000, 300), Qt::SplitHCursor},
      {At(2000, 20), Qt::SplitHCursor},
      {{20, 300}, Qt::ArrowCursor}};
  for (const auto& [point, shape] : shapes) {
    MoveTo(point);
    EXPECT_EQ(Canvas().cursor().shape(), shape) << point.x() << ", " << point.y();
  }
}

TEST_F(Movement, KeysAndWheelZoomAndScroll) {
  ComposeAndOpen(30);
  auto& bar = hands->Find<QScrollBar>("MovementScrollBar");
  EXPECT_FALSE(bar.isVisible());
  EXPECT_TRUE(Canvas().Time().Fits()) << "all of it, as long as nobody zooms";
  const double fitted = Canvas().Time().Span();
  for (int i = 0; i < 8; ++i) Keys("Ctrl++");
  EXPECT_LT(Canvas().Time().Span(), fitted / 4);
  EXPECT_TRUE(bar.isVisible());
  Keys("Home");
  EXPECT_EQ(Canvas().Time().Left(), 0) << "the selected step comes into view";
  Keys("End");
  EXPECT_EQ(bar.value(), bar.maximum());
  for (int i = 0; i < 12; ++i) Wheel({600, 300}, 0.25);  // as a touchpad turns
  EXPECT_LT(bar.value(), bar.maximum() - bar.pageStep() / 5);
  const double left = Canvas().Time().Left();
  for (const double way : {0.02, -0.02}) {
    for (int i = 0; i < 10; ++i) Wheel({600, 300}, way);
  }
  EXPECT_NEAR(Canvas().Time().Left(), left, 0.01) << "small turns to both sides";
  const double time = Geometry().TimeAt(700);
  Wheel({700, 300}, 2, Qt::ControlModifier);
  EXPECT_NEAR(Geometry().TimeAt(700), time, 0.01);
  const QPoint place = At(MiddleOf(27), 300);
  ClickAt(place);
  Wheel(place, 5);
  QTest::mouseDClick(&Canvas(), Qt::LeftButton, {}, place);
  ReleaseAt(place);
  EXPECT_EQ(Selected(), 27) << "the second click hits another step than the first";
  bar.setValue(0);
  EXPECT_EQ(Canvas().Time().Left(), 0);
  Select(20);
  EXPECT_GT(Canvas().Time().Left(), 0) << "a selection from elsewhere comes into view, too";
  Keys("Ctrl+-");
  Keys("Ctrl+0");
  EXPECT_NEAR(Canvas().Time().Span(), fitted, 0.01);
  EXPECT_FALSE(bar.isVisible());
}

TEST_F(Movement, TellsWhatComesUnderAPointerAtRest) {
  ComposeAndOpen(30);
  for (int i = 0; i < 6; ++i) Keys("Ctrl++");
  const QPoint rest(655, 310);
  MoveTo(rest);
  int told = -1;
  const auto tells_another = [&] {
    const int step = static_cast<int>(Geometry().TimeAt(rest.x())) / 400;
    EXPECT_NE(step, std::exchange(told, step)) << "the view stood still";
    return State().startsWith(QStringLiteral("Step %1,").arg(step));
  };
  EXPECT_TRUE(tells_another());
  for (const char* key : {"End", "Home", "Ctrl+0"}) {
    Keys(key);
    EXPECT_TRUE(tells_another()) << key << ": " << State().toStdString();
  }
  Window().resize(800, 700);
  EXPECT_TRUE(tells_another());
  for (int i = 0; i < 6; ++i) Keys("Ctrl++");
  Select(3);
  EXPECT_TRUE(tells_another()) << State().toStdString();
}

TEST_F(Movement, ThePlayheadMovesThroughTheHeldStepAndTheViewFollows) {
  ComposeAndOpen(30);
  Connect();
  Select(3);
  hands->Click(kEmuPC);
  const auto head = [this] {
    const QImage image = Canvas().grab().toImage();
    int x = Places::kLabels;
    while (x < image.width() && image.pixelColor(x, Places::kRuler + 60) != Colours().head) ++x;
    return Geometry().TimeAt(x + 1);
  };
  for (const double passed : {1300, 1400, 1585}) {
    EXPECT_TRUE(hands->WaitUntil([&] { return head() > passed && head() < 1610; })) << passed;
  }
  QTest::qWait(60);
  EXPECT_NEAR(head(), 1600, 15) << "it waits at the end of the step";
  for (int i = 0; i < 10; ++i) Keys("Ctrl++");
  for (int step = 4; step < 30; ++step) {
    ASSERT_TRUE(hands->WaitUntil([&] {  // for the line, too
      timer.Elapse();
      return Selected() == step;
    }));
    const TimeScale& time = Canvas().Time();
    EXPECT_LE(time.Left(), 400 * step);
    EXPECT_GT(time.Left() + time.Span(), 400 * step);
  }
  hands->Click(kEmuPC);
  Keys("Ctrl+0");
  EXPECT_GT(head(), 12000) << "there is none any more";
}

TEST_F(Movement, TheViewFollowsThePlayheadThroughAStepThatIsLongerThanIt) {
  AddStep(0, 200, 3000);
  Open();
  for (int i = 0; i < 12; ++i) Keys("Ctrl++");
  ASSERT_LT(Canvas().Time().Span(), 1000);
  Connect();
  hands->Click(kEmuPC);
  EXPECT_TRUE(hands->WaitUntil([&] { return Canvas().Time().Left() > 0; }));
  Wheel({600, 300}, 50);
  QTest::qWait(60);
  EXPECT_EQ(Canvas().Time().Left(), 0) << "unless the operator looks elsewhere";
}

// Runs at other scales, too.
TEST_F(Movement, LooksDrawnInPartsAsItDoesDrawnAtOnce) {
  const auto picture = [this] {
    hands->Wait(30);  // for what is still to be drawn
    return static_cast<QImage*>(Window().backingStore()->paintDevice())->copy();
  };
  const auto expect_the_same = [&](const char* what) {
    const QImage in_parts = picture();
    Canvas().repaint();
    EXPECT_TRUE(picture() == in_parts) << what;
  };
  for (const int steps : {256, 30}) {
    ComposeAndOpen(steps);
    for (int step = steps / 4; step < steps / 4 + 20; ++step) {
      Select(step);
      hands->Wait(10);
    }
    expect_the_same("selections");
  }
  const QPoint level = Level(26, 0);
  PressAt(level);
  for (int i = 1; i < 30; ++i) {
    MoveTo(level + QPoint(i / 3, 4 * i));
    hands->Wait(10);
  }
  expect_the_same("a drag");
  Keys("Esc");
  ReleaseAt(pointer);
  expect_the_same("no drag any more");
  Connect();
  hands->Click(kEmuPC);
  hands->Wait(300);
  hands->Click(kEmuPC);
  expect_the_same("playback");
}

// Screen readers.
TEST_F(Movement, SaysWhatItShows) {
  ComposeAndOpen(5);
  QAccessibleInterface* canvas = QAccessible::queryAccessibleInterface(&Canvas());
  ASSERT_TRUE(canvas);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&Window())->text(QAccessible::Name),
            "Movement - Sequence N° 0");
  EXPECT_EQ(canvas->text(QAccessible::Name), "Selected step");
  EXPECT_EQ(canvas->text(QAccessible::Value), "No step is selected");
  const Listener listener;
  for (const auto& [key, text] : {std::pair("Right", "Step 0, 0.00 s to 0.40 s, 400 ms, Ch0 0 °"),
                                  std::pair("Down", "Step 0, 0.00 s to 0.40 s, 400 ms, Ch1 0 °")}) {
    Keys(key);
    EXPECT_EQ(canvas->text(QAccessible::Value), Local(text));
    EXPECT_EQ(listener.Heard(QAccessible::ValueChanged), QStringList("Selected step"));
  }
}

}  // namespace
}  // namespace pelmora
