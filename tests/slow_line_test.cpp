// The program on a line of its true speed: what the operator stops, stops on the board at once.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QtTest/QTest>

#include "movement/movement_window.h"
#include "platform/controls/cw_slide.h"
#include "rig/program_with_board.h"

namespace pelmora {
namespace {

using namespace rig;
using namespace std::chrono_literals;

struct SlowLine : testing::Test, ProgramWithBoard {
  SlowLine()
      : ProgramWithBoard([](const QString& problem) { ADD_FAILURE() << problem.toStdString(); },
                         simboard::Pace::k9600, {.timer = true}) {}

  // Plays two poses in which all channels differ, 20 ms each.
  void PlayPoses() {
    Load(poses);
    Connect();
    hands->Click("CWButtonEmuPC");
  }

  // The bytes of the line, once it has been silent for a while.
  std::vector<simboard::LoggedByte> Log() {
    std::size_t count = 0;
    do {
      count = board.Log().size();
      QTest::qWait(150);
    } while (board.Log().size() != count);
    return board.Log();
  }

  // What the line still has to carry before it takes the next pose, however
  // late a busy machine lets the board look at it.
  auto Backlog() const { return form->Link().Port().TimeUntilReady(); }

  // Moves the pointer up and down by so many pixels, as fast as can be, for so long that a backlog
  // would pile up, and then to its last place.
  void DragAround(const std::function<void(QPoint)>& move) const {
    QElapsedTimer clock;
    clock.start();
    for (int report = 0; clock.elapsed() < 600; ++report) {
      move({0, report % 200 - 100});
      QTest::qWait(1);
      ASSERT_LT(Backlog(), 10ms) << "more than a pose has piled up";
    }
    move(kLast);
  }
  // The servo has followed all the time, and is where the pointer is.
  static void ExpectAtLast(const std::vector<simboard::LoggedByte>& log, int code, int position) {
    EXPECT_GT(log.size(), 100U);
    EXPECT_EQ(log[log.size() - 2].byte, code);
    EXPECT_EQ(log.back().byte, position);
  }

  static constexpr QPoint kLast{0, 37};
  const Sequences poses = FilledSequences(1, 2, 1);
};

// All channels take 27.5 ms on the line: without waiting for it the board would
// be 0.7 s behind after two seconds.
TEST_F(SlowLine, OffActsOnTheBoardBehindOnePose) {
  PlayPoses();
  QTest::qWait(2000);
  hands->Click("CWButtonEmuPC");
  EXPECT_LT(Backlog(), 30ms) << "more than the pose that was on its way";
  const auto log = Log();
  // Every change was sent, in order, as fast as the line carries them.
  ASSERT_EQ(log.size() % 24, 0U);
  EXPECT_GT(log.size() / 24, 40U);
  for (std::size_t i = 0; i < log.size(); ++i) {
    const std::size_t channel = i % 24 / 2;
    const std::size_t code = channel < 8 ? 8 + channel : 32 + channel;
    const int position = poses[0][(i / 24 + 1) % 2].positions[channel];
    ASSERT_EQ(log[i].byte, i % 2 == 0 ? code : position) << i;
  }
}

TEST_F(SlowLine, QuitSendsItsStopByteBehindAFewBytesAndWaitsForIt) {
  PlayPoses();
  QTest::qWait(1000);
  EXPECT_LT(Backlog(), 30ms) << "the stop byte goes behind more than a pose";
  Trigger("Quit");
  const auto log = Log();
  EXPECT_EQ(log.back().byte, 0);
  EXPECT_EQ(log.size() % 24, 1U) << "no command is cut short";
}

TEST_F(SlowLine, AFaderDraggedAsFastAsCanBeKeepsUpWithThePointer) {
  Connect();
  auto& slide = hands->Find<platform::CWSlide>("CWSlide1_4");
  const QPoint handle(slide.width() / 2, slide.height() / 2 + 8);
  QTest::mousePress(&slide, Qt::LeftButton, {}, handle);
  ASSERT_TRUE(slide.isSliderDown());
  DragAround([&](QPoint way) { QTest::mouseMove(&slide, handle + way); });
  const auto log = Log();  // while it is held still
  ExpectAtLast(log, 8 + 4, slide.sliderPosition());
  EXPECT_EQ(slide.value(), slide.sliderPosition());
  QTest::mouseRelease(&slide, Qt::LeftButton, {}, handle + kLast);
  EXPECT_EQ(Log().size(), log.size());
}

// A drag of a level in the movement moves the servo as a dragged fader does.
TEST_F(SlowLine, ALevelDraggedAsFastAsCanBeKeepsUpWithThePointer) {
  Load(FilledSequences(1, 5, 50));
  Connect();
  Trigger("ListMovement");
  auto& window = hands->Find<MovementWindow>("Movement");
  window.resize(1200, 700);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  auto& canvas = hands->Find<QWidget>("MovementCanvas");
  const auto level = [&] {  // of step 2 in the chosen lane, of channel 0
    const Lanes lanes(Places::kRuler, canvas.height() - Places::kRuler, 0);
    return QPoint(canvas.width() / 2, qRound(lanes.Y(0, Data().EditBuffer[2][0])));
  };
  const QPoint from = level();
  QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, from);
  DragAround([&](QPoint way) { QTest::mouseMove(window.windowHandle(), from + way); });
  QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, from + kLast);
  const auto released = std::chrono::steady_clock::now();
  const auto log = Log();
  EXPECT_LT(log.back().when - released, 100ms);
  ExpectAtLast(log, 8, Data().EditBuffer[2][0]);
  EXPECT_NEAR(level().y(), (from + kLast).y(), 1);
}

}  // namespace
}  // namespace pelmora
