// The step list of the real window under the operator's hands, while a sequence plays in it.
#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QtTest/QTest>
#include <algorithm>
#include <cmath>

#include "platform/list_box.h"
#include "platform/list_look.h"
#include "tests/playback_fixture.h"

namespace pelmora {
namespace {

class LongList : public Playback {
 protected:
  // The first angle field of each line: enough to tell steps apart.
  QStringList FirstAngles() const {
    QStringList angles;
    for (const QString& line : Lines()) angles.append(line.section('\t', 0, 0));
    return angles;
  }

  LongList() : list(hands->Find<platform::ListBox>("ListSequence")) {
    Compose(std::vector<int>(kLines, 100));
    list.SetListIndex(0);
  }

  // The lines' numbers, as their first angles say, where they differ from the composed order.
  QString Moved() const {
    QStringList moved;
    const QStringList angles = FirstAngles();
    for (int i = 0; i < angles.size(); ++i) {
      const QString text = angles[i].section(' ', 0, 0).replace(QLocale().decimalPoint(), ".");
      const int step = static_cast<int>(text.toDouble() * 2) + 128 - Position(0);
      if (step != i) moved += QString("%1:%2").arg(i).arg(step);
    }
    return moved.join(' ');
  }
  QPoint Lowest() const { return {20, list.viewport()->height() - 1}; }
  int LineUnder(QPoint place) const { return list.indexAt(place).row(); }
  void Press(QPoint place) { QTest::mousePress(list.viewport(), Qt::LeftButton, {}, place); }
  void Release(QPoint place) { QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, place); }

  static constexpr int kLines = 40;
  platform::ListBox& list;
};

TEST_F(LongList, AClickWhileItPlaysMovesNoStep) {
  Play(0);
  for (int ticks = 0; ticks < 16; ++ticks) {
    list.scrollToTop();
    list.SetListIndex(8);
    const QPoint place = Lowest();
    const int line = LineUnder(place);
    Press(place);
    for (int i = 0; i < ticks; ++i) timer.Elapse();
    Release(place);
    EXPECT_EQ(Moved(), "") << ticks;
    EXPECT_EQ(Selected(), line) << ticks;
  }
}

TEST_F(LongList, ADoubleClickOnTheLowestLineShowsThatStep) {
  Connect();
  const QPoint place = Lowest();
  const int line = LineUnder(place);
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
  Release(place);
  ExpectSent(Shown(line));
  EXPECT_EQ(hands->Read("LabelStep"), QString("Step N° %1").arg(line));
}

TEST_F(LongList, ADragWhileItPlaysDropsWhereThePointerIs) {
  Play(0);
  const QPoint place = Lowest();
  const int line = LineUnder(place);
  Press(list.visualItemRect(list.item(2)).center());
  for (int report = 0; report < 5; ++report) {
    QTest::mouseMove(list.viewport(), place - QPoint(0, report));
    timer.Elapse();
  }
  Release(place);
  EXPECT_EQ(Selected(), line);
  EXPECT_EQ(FirstAngles()[line], Local("-13 °")) << "step 2";
  hands->DragLine("ListSequence", line, 2);
  EXPECT_EQ(Moved(), "");
}

TEST_F(LongList, ADragGoesBeyondThePageAndEscapeTakesItBack) {
  hands->DragLine("ListSequence", 1, 30);
  EXPECT_EQ(Selected(), 30);
  hands->DragLine("ListSequence", 30, 1);
  EXPECT_EQ(Moved(), "");
  Press(list.visualItemRect(list.item(1)).center());
  QTest::mouseMove(list.viewport(), Lowest());
  QTest::keyClick(&list, Qt::Key_Escape);
  Release(Lowest());
  EXPECT_EQ(Moved(), "");
  EXPECT_EQ(Selected(), 1);
  Press(list.visualItemRect(list.item(1)).center());
  QTest::mouseMove(list.viewport(), Lowest());
  QTest::keyClick(&list, Qt::Key_Q, Qt::AltModifier);  // "Clear Sequence"
  Release(Lowest());
  EXPECT_TRUE(Lines().isEmpty());
}

TEST_F(LongList, KeysMoveAndShowSteps) {
  list.setFocus();
  list.SetListIndex(20);
  SetBreak(20);
  QTest::keyClick(&list, Qt::Key_Down, Qt::ControlModifier);
  QTest::keyClick(&list, Qt::Key_Down, Qt::ControlModifier);
  EXPECT_EQ(Moved(), "20:21 21:22 22:20");
  EXPECT_EQ(Selected(), 22);
  EXPECT_EQ(Breaks(), std::vector<int>{22});
  for (int i = 0; i < 2; ++i) QTest::keyClick(&list, Qt::Key_Up, Qt::ControlModifier);
  EXPECT_EQ(Moved(), "");
  EXPECT_EQ(Breaks(), std::vector<int>{20});
  Connect();
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_Return);
  ExpectSent(Shown(20));
}

TEST_F(LongList, AltArrowsPressTheArrowButtonsFromAnywhere) {
  hands->Type("Text1_3", "5", false);
  QWidget* field = QApplication::focusWidget();
  QTest::keyClick(field, Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(Selected(), 1);
  EXPECT_EQ(hands->Read("LabelStep"), "Step N° 1");
  for (const char* name : {"ListSequence", "CWSlide1_0", "Text1_0", "CommandAdd"}) {
    auto& control = hands->Find<QWidget>(name);
    control.setFocus();
    QTest::keyClick(&control, Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(Selected(), 2) << name;
    control.setFocus();
    QTest::keyClick(&control, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(Selected(), 1) << name;
  }
  list.setFocus();
  for (const bool repeated : {false, true, true}) {
    QTest::simulateEvent(&list, true, Qt::Key_Right, Qt::AltModifier, {}, repeated);
  }
  EXPECT_EQ(Selected(), 2) << "once for a held key";
}

}  // namespace
}  // namespace pelmora
