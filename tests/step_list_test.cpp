// The step list of the real window under the operator's hands, while a sequence plays in it.
#include "tests/playback_fixture.h"

namespace pelmora {
namespace {

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

TEST_F(LongList, ADoubleClickOnTheLowestLineShowsThatStep) {
  Connect();
  const int line = LowestLine();
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, Lowest());
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, Lowest());
  Release(Lowest());
  ExpectSent(Shown(line));
  EXPECT_EQ(hands->Read("LabelStep"), QString("Step N° %1").arg(line));
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

TEST_F(LongList, AltArrowsPressTheArrowButtonsFromAnywhere) {
  for (const char* name : {"ListSequence", "CWSlide1_0", "Text1_0", "CommandAdd"}) {
    auto& control = hands->Find<QWidget>(name);
    for (const auto& [key, line] : {std::pair(Qt::Key_Right, 1), std::pair(Qt::Key_Left, 0)}) {
      control.setFocus();
      QTest::keyClick(&control, key, Qt::AltModifier);
      EXPECT_EQ(Selected(), line) << name;
      EXPECT_EQ(hands->Read("LabelStep"), QString("Step N° %1").arg(line)) << name;
    }
  }
  hands->Type("Text1_1", "40", false);
  hands->Keys(hands->Find<QWidget>("Text1_1"), "Alt+Left");
  EXPECT_EQ(hands->Read("Text1_1"), "0") << "committed before the step is shown";
  Select(0);
  Operator::Hold(list, Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(Selected(), 1) << "once for a held key";
}

}  // namespace
}  // namespace pelmora
