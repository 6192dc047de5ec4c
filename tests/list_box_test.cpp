// The list box with a pointer and keys, in a list that is longer than its window.
#include "platform/list_box.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

#include "platform/list_look.h"

namespace platform {
namespace {

class ListBoxTest : public testing::Test {
 protected:
  ListBoxTest() {
    window.resize(400, 400);
    list.setGeometry(0, 20, 300, 205);  // no multiple of what a line needs
    Fill(40);
    QObject::connect(&list, &ListBox::MouseDown, [&](int line) { Log("down", line); });
    QObject::connect(&list, &ListBox::MouseUp, [&](int line) { Log("up", line); });
    QObject::connect(&list, &ListBox::DblClick, [&] { Log("double", list.ListIndex()); });
    QObject::connect(&list, &ListBox::MoveLine,
                     [&](int from, int to) { log += QString("move %1 to %2").arg(from).arg(to); });
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    list.setFocus();
    QTest::mouseMove(&window, {390, 390});
  }
  ~ListBoxTest() override {  // the toolkit's test library remembers buttons that are down
    for (const auto button : {Qt::LeftButton, Qt::RightButton}) Release({390, 390}, button);
  }

  void Fill(int lines) {
    for (int i = 0; i < lines; ++i) list.AddItem(QString("%1\t\tms").arg(i));
  }
  void Log(const char* name, int line) { log += QString("%1 %2").arg(name).arg(line); }
  QString Happened() {
    const QString all = log.join(", ");
    log.clear();
    return all;
  }

  QPoint On(int line) const { return list.visualItemRect(list.item(line)).center(); }
  int Bottom() const { return list.viewport()->height() - 1; }
  int LineUnder(QPoint place) const { return list.indexAt(place).row(); }
  int Top() const { return LineUnder({20, 0}); }

  void Press(QPoint place, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mousePress(list.viewport(), button, {}, place);
  }
  void Move(QPoint place) { QTest::mouseMove(list.viewport(), place); }
  void Release(QPoint place, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseRelease(list.viewport(), button, {}, place);
  }
  void Wheel(QPoint place, int notches, Qt::MouseButtons held = Qt::NoButton) {
    QWheelEvent event(place, list.viewport()->mapToGlobal(place), {}, {0, -120 * notches}, held, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(list.viewport(), &event);
  }

  QMainWindow window;
  ListBox list{&window};
  QStringList log;
};

TEST_F(ListBoxTest, SelectionFollowsThePressedPointer) {
  for (const auto button : {Qt::LeftButton, Qt::MiddleButton}) {
    list.SetListIndex(7);
    list.SetListIndex(0);
    Press(On(1), button);
    EXPECT_EQ(list.ListIndex(), 1);
    Move(On(3));
    EXPECT_EQ(list.ListIndex(), 3);
    list.SetListIndex(5);  // the program selects meanwhile
    Release(On(4), button);
    EXPECT_EQ(list.ListIndex(), 4);
    EXPECT_EQ(Happened(), "down 1, up 4");
    Move(On(2));
    EXPECT_EQ(list.ListIndex(), 4);
  }
  // A gesture ends with its last button.
  Press(On(1));
  Press(On(2), Qt::RightButton);
  Release(On(2));
  Release(On(3), Qt::RightButton);
  EXPECT_EQ(Happened(), "down 1, up 3");
}

// At every height of the list, so that its last line is a cut one, a whole one, or a sliver.
TEST_F(ListBoxTest, AClickStaysOnTheLineUnderThePointer) {
  for (int height = 190; height < 210; ++height) {
    list.resize(300, height);
    for (const int turned : {0, 3}) {
      list.scrollToTop();
      list.SetListIndex(-1);
      Wheel({20, 20}, turned);
      const QPoint place(20, Bottom());
      const int line = LineUnder(place);
      const int top = Top();
      const QString click = QString("down %1, up %1").arg(line);
      Press(place);
      EXPECT_EQ(LineUnder(place), line) << height;
      Release(place);
      EXPECT_EQ(Happened(), click) << height;
      QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
      Release(place);
      EXPECT_EQ(Happened(), QString("down %1, double %1, up %1").arg(line)) << height;
      EXPECT_EQ(list.ListIndex(), line);
      EXPECT_EQ(Top(), top) << height;
    }
  }
}

TEST_F(ListBoxTest, ASelectionByTheProgramScrollsAfterTheGestureOnly) {
  Press(On(3));
  list.SetListIndex(30);
  EXPECT_EQ(list.ListIndex(), 30);
  EXPECT_EQ(Top(), 0);
  Release(On(3));
  EXPECT_EQ(Happened(), "down 3, up 3");
  EXPECT_EQ(list.ListIndex(), 3);

  Press(On(3));
  Move(On(5));
  list.SetListIndex(30);
  Move(On(6));
  EXPECT_EQ(list.ListIndex(), 6);
  list.SetListIndex(30);
  EXPECT_EQ(Top(), 0);
  Release(On(6));
  EXPECT_EQ(Happened(), "down 3, up 6");

  list.scrollToTop();
  Press(On(2));
  list.SetListIndex(30);
  list.setEnabled(false);
  list.setEnabled(true);
  EXPECT_TRUE(list.viewport()->rect().contains(On(30)));
}

TEST_F(ListBoxTest, ADoubleClickAcrossATurnedPageShowsNothing) {
  const QPoint place = On(4);
  Press(place);
  Release(place);
  list.SetListIndex(30);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
  Release(place);
  EXPECT_FALSE(Happened().contains("double"));
}

TEST_F(ListBoxTest, ATremblingHandMovesNothing) {
  const int edge = list.visualItemRect(list.item(2)).bottom();
  Press({20, edge});
  Move({20, edge + 1});
  Move({22, edge + 3});
  EXPECT_EQ(list.ListIndex(), 2);
  Release({21, edge + 2});
  EXPECT_EQ(Happened(), "down 2, up 2");
}

TEST_F(ListBoxTest, ADragDropsWhereThePointerIs) {
  Press(On(3));
  const QPoint lowest(20, Bottom());
  for (int report = 0; report < 10; ++report) Move(lowest - QPoint(0, report % 2));
  const int line = LineUnder(lowest);
  EXPECT_EQ(Top(), 0) << "a drag inside the list scrolls nothing";
  EXPECT_EQ(list.ListIndex(), line);
  Release(lowest);
  EXPECT_EQ(Happened(), QString("down 3, up %1").arg(line));

  Press(On(1));
  Move(On(5));
  Move(On(1));
  Release(On(1));
  EXPECT_EQ(Happened(), "down 1, up 1") << "back where it came from";

  Press(On(2));
  Wheel(On(2), 1, Qt::LeftButton);
  const int under = LineUnder({20, 40});
  Move({20, 40});
  EXPECT_NE(Top(), 0);
  Release({20, 40});
  EXPECT_EQ(Happened(), QString("down 2, up %1").arg(under)) << "the wheel turns under a drag";
}

TEST_F(ListBoxTest, HeldOutsideItScrollsOneLineIn60Milliseconds) {
  Press(On(2));
  QElapsedTimer clock;
  clock.start();
  const auto most = [&clock] { return static_cast<int>(clock.elapsed() / 60); };
  for (int report = 0; report < 100; ++report) Move({20, 240 + report % 3});
  EXPECT_LE(Top(), most()) << "reports of the pointer scroll nothing by themselves";
  EXPECT_TRUE(QTest::qWaitFor([&] { return Top() >= 3; }));
  EXPECT_LE(Top(), most());
  Move(On(Top() + 1));
  const int top = Top();
  QTest::qWait(100);
  EXPECT_EQ(Top(), top) << "back inside it stands still";
  Move({20, -20});
  EXPECT_TRUE(QTest::qWaitFor([&] { return list.ListIndex() == 0; }));
  Release(On(0));
  Press(On(LineUnder({20, Bottom()})));
  Move({20, 260});
  EXPECT_TRUE(QTest::qWaitFor([&] { return Top() > 2; })) << "straight out of the last line";
  Move({20, 20});
  const int held = list.ListIndex();
  list.hide();  // the release never comes
  list.show();
  Move({20, 100});
  EXPECT_EQ(list.ListIndex(), held);
}

TEST_F(ListBoxTest, EscapeGivesADragUp) {
  list.SetListIndex(6);
  Press(On(1));
  Move({20, 260});
  EXPECT_TRUE(QTest::qWaitFor([&] { return Top() > 3; }));
  QTest::keyClick(&list, Qt::Key_Escape);
  const int top = Top();
  EXPECT_EQ(list.ListIndex(), 1);
  EXPECT_TRUE(list.viewport()->rect().contains(On(1)));
  Move(On(3));
  QTest::qWait(150);
  Release(On(3));
  EXPECT_EQ(Happened(), "down 1");
  EXPECT_EQ(list.ListIndex(), 1);
  EXPECT_EQ(Top(), top);
}

TEST_F(ListBoxTest, LinesMayGoDuringADrag) {
  struct Case {
    const char* what;
    int lines;  // those that are there afterwards
  };
  for (const Case& c : {Case{"cleared", 0}, Case{"another list", 5}, Case{"a longer one", 60}}) {
    for (const bool drag : {false, true}) {
      list.Clear();
      Fill(40);
      Press(On(4));
      if (drag) Move({20, 260});
      list.Clear();
      Fill(c.lines);
      QTest::qWait(80);  // the drag would scroll
      Move({20, 50});
      EXPECT_EQ(list.ListIndex(), -1) << c.what;
      Release({20, 50});
      EXPECT_EQ(Happened(), "down 4, up -1") << c.what;
      EXPECT_EQ(list.ListIndex(), -1) << c.what;
    }
  }
}

TEST_F(ListBoxTest, Keys) {
  struct Case {
    int selected;
    Qt::Key key;
    Qt::KeyboardModifier modifier;
    int then;
    const char* happens;
  };
  const Case cases[] = {
      {-1, Qt::Key_Down, Qt::NoModifier, 0, ""},
      {-1, Qt::Key_Up, Qt::NoModifier, 0, ""},
      {-1, Qt::Key_Home, Qt::NoModifier, 0, ""},
      {-1, Qt::Key_PageUp, Qt::NoModifier, 0, ""},
      {-1, Qt::Key_PageDown, Qt::NoModifier, 0, ""},
      {-1, Qt::Key_End, Qt::NoModifier, 39, ""},
      {5, Qt::Key_Down, Qt::NoModifier, 6, ""},
      {5, Qt::Key_Home, Qt::NoModifier, 0, ""},
      {5, Qt::Key_End, Qt::NoModifier, 39, ""},
      {39, Qt::Key_Down, Qt::NoModifier, 39, ""},
      {5, Qt::Key_Down, Qt::ControlModifier, 5, "move 5 to 6"},
      {5, Qt::Key_Up, Qt::ControlModifier, 5, "move 5 to 4"},
      {0, Qt::Key_Up, Qt::ControlModifier, 0, ""},
      {39, Qt::Key_Down, Qt::ControlModifier, 39, ""},
      {-1, Qt::Key_Down, Qt::ControlModifier, -1, ""},
      {5, Qt::Key_Return, Qt::NoModifier, 5, "double 5"},
      {5, Qt::Key_Enter, Qt::KeypadModifier, 5, "double 5"},
      {-1, Qt::Key_Return, Qt::NoModifier, -1, ""},
      {5, Qt::Key_Escape, Qt::NoModifier, 5, ""},
  };
  for (const bool focused_anew : {false, true}) {
    for (const Case& c : cases) {
      list.SetListIndex(c.selected);
      if (focused_anew) {  // makes the first line current without selecting it
        list.clearFocus();
        list.setFocus();
      }
      QTest::keyClick(&list, c.key, c.modifier);
      EXPECT_EQ(list.ListIndex(), c.then) << c.selected << ' ' << c.key << ' ' << c.modifier;
      EXPECT_EQ(Happened(), c.happens) << c.selected << ' ' << c.key << ' ' << c.modifier;
      EXPECT_TRUE(c.then < 0 || list.viewport()->rect().contains(On(c.then))) << c.key;
    }
  }
  list.SetListIndex(5);
  for (const bool repeated : {false, true, true}) {
    QTest::simulateEvent(&list, true, Qt::Key_Return, {}, "\r", repeated);
  }
  EXPECT_EQ(Happened(), "double 5") << "not again while the key is held";
  list.Clear();
  for (const auto key : {Qt::Key_Down, Qt::Key_End, Qt::Key_PageUp, Qt::Key_Return, Qt::Key_Menu}) {
    QTest::keyClick(&list, key);
  }
  EXPECT_EQ(list.ListIndex(), -1);
}

TEST_F(ListBoxTest, PagesTurnWhenTheSelectionLeavesThem) {
  list.resize(300, 18 * 13);
  const int rows = LineUnder({20, Bottom()}) + 1;
  int turns = 0;
  for (int line = 1; line < 40; ++line) {
    const int top = Top();
    list.SetListIndex(line);
    EXPECT_TRUE(list.viewport()->rect().contains(On(line))) << line;
    if (Top() == top) continue;
    ++turns;
    EXPECT_EQ(line, top + rows) << "no page turns before its last line";
    EXPECT_TRUE((Top() - top) % 2 == 0 || Top() == 40 - rows) << "stripes stay where they are";
  }
  EXPECT_LE(turns, 40 / (rows - 2));
  list.SetListIndex(10);
  EXPECT_GT(LineUnder({20, Bottom()}), 10) << "backwards the new page ends below the line";
  EXPECT_LT(Top(), 10 - rows / 2);
}

class ListLook : public ListBoxTest {
 protected:
  ListLook() {
    list.SetColumns({{4, 60, Qt::AlignLeft}, {64, 80, Qt::AlignRight}, {160, 60, {}, true}});
    list.SetLineNumbers(true);
    list.SetListIndex(-1);
    list.clearFocus();
  }
  QImage Line(int line) {
    return list.viewport()->grab(list.visualItemRect(list.item(line))).toImage();
  }
  QColor Ground(int line) { return Line(line).pixelColor(2, 9); }
  bool Has(const QImage& image, const QColor& colour) {
    for (int i = 0; i < image.width() * image.height(); ++i) {
      if (image.pixelColor(i % image.width(), i / image.width()) == colour) return true;
    }
    return false;
  }
  LineColours Colours(const LineState& state) { return ColoursOf(state, list.palette()); }
};

TEST_F(ListLook, LinesAreDrawnAsTheirStatesSay) {
  list.SetList(0, "a\t100 ms\tSTOP");
  list.SetList(2, "a\t100  ms\t");
  EXPECT_TRUE(Has(Line(0), Colours({}).strong));
  EXPECT_FALSE(Has(Line(2).copy(160, 0, 60, 20), Colours({}).strong));
  EXPECT_TRUE(Has(Line(2).copy(224, 0, 60, 20), Colours({}).number));
  EXPECT_EQ(Line(0).copy(0, 0, 150, 20), Line(2).copy(0, 0, 150, 20)) << "under each other";
  EXPECT_EQ(Ground(1), Colours({.odd = true}).ground);
  Wheel({20, 20}, 1);
  EXPECT_EQ(Ground(5), Colours({.odd = true}).ground) << "stripes belong to the lines";
  list.SetListIndex(4);
  EXPECT_EQ(Ground(4), Colours({.selected = true}).ground);
  list.SetHalted(true);
  EXPECT_EQ(Ground(4), Colours({.selected = true, .halted = true}).ground);
  list.SetHalted(false);
  list.setEnabled(false);
  EXPECT_EQ(Ground(4), Colours({.selected = true, .enabled = false}).ground);
}

TEST_F(ListLook, ADragShowsWhatItDoes) {
  const QColor mark = list.palette().color(QPalette::Text);
  const auto marked = [&](int line, int y) { return Line(line).pixelColor(150, y) == mark; };
  Press(On(2));
  Move(On(5));
  EXPECT_EQ(Ground(2), Colours({.dragged = true}).ground);
  EXPECT_EQ(list.viewport()->cursor().shape(), Qt::ClosedHandCursor);
  EXPECT_TRUE(marked(5, Line(5).height() - 1)) << "below 5";
  Move(On(1));
  EXPECT_TRUE(marked(1, 0)) << "above 1";
  Move(On(2));
  EXPECT_FALSE(marked(2, 0)) << "it goes nowhere";
  Release(On(2));
  EXPECT_NE(Ground(2), Colours({.dragged = true}).ground);
  EXPECT_EQ(list.viewport()->cursor().shape(), Qt::ArrowCursor);
}

}  // namespace
}  // namespace platform
