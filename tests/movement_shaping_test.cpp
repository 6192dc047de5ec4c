// Shaping a movement by drags: what is said and sent while the button is down, what a running
// playback and a message leave of a drag. What drags and keys change is in the table of effects.
#include "tests/movement_fixture.h"

namespace pelmora {
namespace {

class Shape : public Movement {
 protected:
  int Fader(int channel) const {
    return hands->Read(QStringLiteral("CWSlide1_%1").arg(channel)).toInt();
  }
  // Bytes for some 50 ms, by faders that are back where they were.
  void KeepTheLineBusy() {
    for (int channel = 1; channel < kChannels; ++channel) {
      for (const int position : {Fader(channel) ^ 1, Fader(channel)}) SetSlider(channel, position);
    }
  }
};

TEST_F(Shape, AValueIsTriedOutUntilTheDragEnds) {
  ComposeAndOpen(30);
  Connect();
  const std::tuple<QPoint, QPoint, const char*> drags[] = {
      {Level(6, 0), {0, -30}, "400 ms, Ch0 27 °"},
      {At(2800, 20), {9, 0}, "2.40 s to 2.90 s, 500 ms"}};
  for (const auto& [from, way, live] : drags) {
    const EditRows rows = Data().EditBuffer;
    PressAt(from);
    KeepTheLineBusy();
    MoveTo(from + way);
    EXPECT_TRUE(State().contains(Local(live))) << State().toStdString();
    EXPECT_EQ(Data().EditBuffer, rows);
    ReleaseAt(from + way);
    EXPECT_NE(Data().EditBuffer, rows);
    EXPECT_EQ(Fader(0), 182) << "the line was busy when the servo should have moved";
  }
}

TEST_F(Shape, GoesOnWhilePlaybackRuns) {
  ComposeAndOpen(30);
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
  const QString warning = "Out of memory: too many steps. Max # of bytes is 24064!";
  ExpectMessage(warning);
  Load(FilledSequences(1, 4096, 7));
  Open();
  Keys("Home");
  for (int i = 0; i < 15; ++i) Keys("Ctrl++");
  const QPoint end = At(Duration(0), 300);
  const int before = Duration(0);
  DragTo(end, end + QPoint(60, 0));
  ExpectMessage(warning, [&] {
    MoveTo(end + QPoint(200, 0));
    ReleaseAt(end + QPoint(200, 0));
    Keys("Escape");
  });
  ReleaseAt(end + QPoint(60, 0));
  EXPECT_GT(Duration(0), before);
  EXPECT_EQ(Lines().size(), kSteps) << "256 steps can be shaped, too";
}

TEST_F(Shape, AnEndHeldBesideTheViewScrollsIt) {
  ComposeAndOpen(30);
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

}  // namespace
}  // namespace pelmora
