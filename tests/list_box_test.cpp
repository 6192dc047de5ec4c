// The list box with a pointer and keys, in a list that is longer than its window.
#include "platform/controls/list_box.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QMenuBar>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <climits>

#include "platform/look/list_look.h"

namespace platform {
namespace {

class ListBoxTest : public testing::Test {
 protected:
  ListBoxTest() {
    window.resize(400, 400);
    list.setGeometry(0, 20, 300, 205);  // no multiple of what a line needs
    Fill(40);
    QObject::connect(&list, &ListBox::MouseDown, [&](int line) { Log("down %1", line); });
    QObject::connect(&list, &ListBox::MouseUp, [&](int line) { Log("up %1", line); });
    QObject::connect(&list, &ListBox::DblClick, [&] { Log("double %1", list.ListIndex()); });
    QObject::connect(&list, &ListBox::RemoveLine, [&] { Log("remove %1", list.ListIndex()); });
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    list.setFocus();
    QTest::mouseMove(&window, {390, 390});
  }
  ~ListBoxTest() override {  // the toolkit's test library remembers buttons that are down
    Release({390, 390});
  }

  void Fill(int lines) {
    for (int i = 0; i < lines; ++i) list.AddItem(QString("%1\t\tms").arg(i));
  }
  void Log(const QString& event, int line) { log += event.arg(line); }
  // What the list has told since the last look.
  void ExpectHappened(const QString& events) {
    EXPECT_EQ(std::exchange(log, {}).join(", "), events);
  }

  QImage Line(int line) {
    return list.viewport()->grab(list.visualItemRect(list.item(line))).toImage();
  }
  void ExpectGround(int line, const LineState& state) {
    EXPECT_EQ(Line(line).pixelColor(2, 9), ColoursOf(state, list.palette()).ground) << line;
  }
  QPoint On(int line) const { return list.visualItemRect(list.item(line)).center(); }
  bool InView(int line) const { return list.viewport()->rect().contains(On(line)); }
  QPoint Lowest() const { return {20, list.viewport()->height() - 1}; }
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

TEST_F(ListBoxTest, ASelectionByTheProgramScrollsAfterTheGestureOnly) {
  const std::function<void()> ends[] = {[this] { Release(On(3)); },  // it counts no more
                                        [this] { list.setEnabled(false); },
                                        [this] { list.hide(); }};
  for (const auto& end : ends) {
    list.scrollToTop();
    Press(On(3));
    list.SetListIndex(30);
    EXPECT_EQ(Top(), 0);
    end();
    list.setEnabled(true);
    list.show();
    EXPECT_TRUE(InView(list.ListIndex()));
    Move(On(6));
  }
  EXPECT_EQ(list.ListIndex(), 30);
  ExpectHappened("down 3, up 3, down 3, down 3");
}

TEST_F(ListBoxTest, ADoubleClickAcrossATurnedPageShowsNothing) {
  const QPoint place = On(4);
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
  list.SetListIndex(30);
  const int line = LineUnder(place);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
  ExpectHappened(QString("down 4, up 4, down %1").arg(line));
}

TEST_F(ListBoxTest, ADragDropsWhereThePointerIs) {
  Press(On(1), Qt::MiddleButton);
  Move(On(5));
  EXPECT_EQ(list.ListIndex(), 5);
  Press(On(2), Qt::RightButton);
  Release(On(2), Qt::MiddleButton);
  Release(On(4), Qt::RightButton);  // a gesture ends with its last button
  Move(On(2));
  EXPECT_EQ(list.ListIndex(), 4);
  ExpectHappened("down 1, up 4");

  Press(On(1));
  Move(On(5));
  Release(On(1));  // back where it came from
  ExpectHappened("down 1, up 1");

  const int edge = list.visualItemRect(list.item(2)).bottom();
  Press({20, edge});
  Release({21, edge + 3});  // too short a way
  ExpectHappened("down 2, up 2");

  Press(On(2));
  Wheel(On(2), 1, Qt::LeftButton);
  EXPECT_NE(Top(), 0);
  const int line = LineUnder({20, 40});
  Release({20, 40});
  ExpectHappened(QString("down 2, up %1").arg(line));
}

TEST_F(ListBoxTest, HeldOutsideItScrollsOneLineIn60MillisecondsUntilEscape) {
  Press(On(2));
  QElapsedTimer clock;
  clock.start();
  for (int report = 0; report < 100; ++report) Move({20, 240 + report % 3});
  EXPECT_LE(Top(), clock.elapsed() / 60) << "reports of the pointer scroll nothing by themselves";
  EXPECT_TRUE(QTest::qWaitFor([&] { return Top() >= 3; }));
  EXPECT_LE(Top(), clock.elapsed() / 60);
  Move(On(Top() + 1));
  const int top = Top();
  QTest::qWait(100);
  EXPECT_EQ(Top(), top) << "back inside it stands still";
  Move({20, -20});
  EXPECT_TRUE(QTest::qWaitFor([&] { return Top() == 0; }));
  Release(On(0));
  ExpectHappened("down 2, up 0");

  const int lowest = LineUnder(Lowest());
  Press(Lowest());
  Move({20, 260});  // straight out of the list
  EXPECT_TRUE(QTest::qWaitFor([&] { return Top() > lowest; }));
  QTest::keyClick(&list, Qt::Key_Escape);
  EXPECT_TRUE(InView(lowest));
  const int after = Top();
  Move(On(after));
  QTest::qWait(100);
  Release(On(after));
  EXPECT_EQ(list.ListIndex(), lowest);
  EXPECT_EQ(Top(), after);
  ExpectHappened(QString("down %1").arg(lowest));
}

TEST_F(ListBoxTest, AMenuOpenedByAKeyEndsADrag) {
  auto& menu = *window.menuBar()->addMenu("&File");
  menu.addAction("Save");
  QApplication::processEvents();  // the menu bar appears
  QSignalSpy wanted(&list, &ListBox::ContextMenuWanted);
  for (const int to : {5, 2}) {
    Press(On(2));
    Move(On(to));
    QContextMenuEvent menu_key(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(&list, &menu_key);
    QTest::keyClick(&list, Qt::Key_F, Qt::AltModifier);
    ASSERT_TRUE(menu.isVisible());
    QTest::mouseRelease(&menu, Qt::LeftButton, {}, {1, 300});  // the menu has the pointer
    menu.close();
    window.menuBar()->setActiveAction(nullptr);
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Delete);
    ExpectHappened("down 2, remove 2");
  }
  EXPECT_EQ(wanted.size(), 0) << "the menu key";
}

TEST_F(ListBoxTest, LinesMayComeAndGoDuringADrag) {
  const std::function<void()> changes[] = {[this] { list.Clear(); }, [this] { list.RemoveItem(0); },
                                           [this] { list.InsertItem(0, "new"); }};
  for (const auto& change : changes) {
    for (const QPoint place : {On(4), QPoint(20, 260)}) {
      Press(On(4));
      Move(place);
      change();
      const int selected = list.ListIndex();
      const int top = Top();
      QTest::qWait(80);
      EXPECT_EQ(Top(), top) << "the drag would scroll";
      Move({20, 50});
      Release({20, 60});
      ExpectHappened("down 4, up -1");
      EXPECT_EQ(list.ListIndex(), selected);
      list.Clear();
      Fill(40);
    }
  }
}

TEST_F(ListBoxTest, LineThatGoesTakesItsSelectionAlong) {
  for (const auto& [removed, selected] : {std::pair{7, 4}, {2, 3}, {3, -1}, {0, -1}}) {
    if (removed == 7) list.SetListIndex(4);
    list.RemoveItem(removed);
    EXPECT_EQ(list.ListIndex(), selected);
  }
}

TEST_F(ListBoxTest, AHeldKeyCountsOnce) {
  list.SetListIndex(5);
  for (const bool held : {false, true, true}) {
    QTest::simulateEvent(&list, true, Qt::Key_Return, {}, "\r", held);
    QTest::simulateEvent(&list, true, Qt::Key_Delete, {}, "", held);
  }
  ExpectHappened("double 5, remove 5");
}

using ListLook = ListBoxTest;

TEST_F(ListLook, LinesAreDrawnAsTheirStatesSay) {
  list.SetColumns({{4, 60, Qt::AlignLeft}, {64, 80, Qt::AlignRight}, {160, 60, {}, true}});
  list.SetList(0, "a\t100 ms\tSTOP");
  list.SetList(2, "a\t100  ms\t");
  list.SetListIndex(4);
  const QRect mark(160, 0, 60, 18);
  const QRgb strong = ColoursOf({}, list.palette()).strong.rgb();
  const auto drawn = [&](int line) {
    return Line(line).copy(mark).convertToFormat(QImage::Format_Indexed8).colorTable();
  };
  EXPECT_TRUE(drawn(0).contains(strong));
  EXPECT_FALSE(drawn(2).contains(strong));
  EXPECT_EQ(Line(0).copy(0, 0, 150, 20), Line(2).copy(0, 0, 150, 20)) << "under each other";
  Wheel({20, 20}, 1);
  ExpectGround(5, {.odd = true});  // stripes belong to the lines
  for (const bool halted : {true, false}) {
    list.SetHalted(halted);
    ExpectGround(4, {.selected = true, .halted = halted});
  }
  list.setEnabled(false);
  ExpectGround(4, {.selected = true, .enabled = false});
}

TEST_F(ListLook, NumbersStandUnderEachOtherAndRepeatedOnesArePaler) {
  list.clearFocus();
  list.SetColumns({{10, 60, Qt::AlignHCenter, false, "-63.5 C"}});
  for (int i = 0; const char* number : {"-0.5 C", "-0.5  C", "-60.5 C", "7 C", "1,5 C"}) {
    list.SetList(i++, number);
  }
  struct Ink {
    int left = INT_MAX, right = 0;  // the columns of pixels that are not the ground
    int darkest = 255;
  };
  const auto ink = [this](int line) {
    const QImage drawn = Line(line).copy(0, 0, 80, 18);  // without the line's number
    Ink found;
    for (int x = 0; x < drawn.width(); ++x) {
      for (int y = 0; y < drawn.height(); ++y) {
        const QColor pixel = drawn.pixelColor(x, y);
        if (pixel == drawn.pixelColor(0, 0)) continue;
        found = {std::min(found.left, x), x, std::min(found.darkest, pixel.value())};
      }
    }
    return found;
  };
  const int digit = list.fontMetrics().horizontalAdvance('0');
  const int minus = list.fontMetrics().horizontalAdvance('-');
  EXPECT_EQ(ink(0).right, ink(2).right);
  EXPECT_NEAR(ink(0).left, ink(2).left + digit, 1);
  EXPECT_NEAR(ink(3).left, ink(2).left + digit + minus, 2);
  EXPECT_NEAR(ink(4).left, ink(3).left, 2) << "any decimal separator";
  EXPECT_GT(ink(1).darkest, ink(0).darkest + 40);
  EXPECT_NEAR(ink(2).darkest, ink(0).darkest, 20);
  list.SetList(0, "-1.5 C");
  EXPECT_NEAR(ink(1).darkest, ink(0).darkest, 20);
}

TEST_F(ListLook, ADragShowsWhatItDoes) {
  const QColor mark = list.palette().color(QPalette::Text);
  const auto marked = [&](int line, int y) { return Line(line).pixelColor(150, y) == mark; };
  Press(On(2));
  Move(On(5));
  ExpectGround(2, {.dragged = true});
  EXPECT_EQ(list.viewport()->cursor().shape(), Qt::ClosedHandCursor);
  EXPECT_TRUE(marked(5, Line(5).height() - 1)) << "below 5";
  Move(On(1));
  EXPECT_TRUE(marked(1, 0)) << "above 1";
  Move(On(2));
  EXPECT_FALSE(marked(2, 0)) << "it goes nowhere";
  Release(On(1));
  EXPECT_EQ(list.viewport()->cursor().shape(), Qt::ArrowCursor);
  ExpectGround(2, {});
}

}  // namespace
}  // namespace platform
