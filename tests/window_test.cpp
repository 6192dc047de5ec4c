// The window as a whole: what it shows at start-up, its menus, captions, keyboard and names for
// assistive technology, how it ends, and screens that are smaller than it.
#include <QAccessible>
#include <QFontMetricsF>
#include <QGroupBox>
#include <QHelpEvent>
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QToolTip>

#include "demo/placement.h"
#include "platform/look/slide_style.h"
#include "tests/screen_reader.h"
#include "tests/window_fixture.h"
#include "ui/inventory.h"
#include "ui/look.h"

namespace pelmora {
namespace {

// Whether the control's line of text, being wider than its `place`, reaches into another control.
bool ReachesIntoAnother(const QWidget& control, const QRect& place) {
  QRect more = control.geometry();
  more.setLeft(place.right() + 1);
  more.setHeight(std::min(more.height(), control.fontMetrics().height()));
  return std::ranges::any_of(
      control.parentWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly),
      [&](const QWidget* other) {
        return other != &control && !other->isWindow() && other->geometry().intersects(more);
      });
}

using StartUp = WindowTest;

TEST_F(StartUp, ShowsEveryCaptionInFull) {
  for (const ControlRow& row : Inventory()) {
    for (int i = 0; i < row.count; ++i) {
      const QString name = ElementName(row, i);
      auto& control = hands->Find<QWidget>(name);
      const QRect place((row.left + i * row.pitch) / 15, row.top / 15, row.width / 15,
                        row.height / 15);
      QString text;
      if (auto* label = qobject_cast<QLabel*>(&control)) {
        text = label->text();
        // Rather than narrowing its text a label takes the room before the next control.
        EXPECT_LE(label->font().stretch() % 100, 0) << name.toStdString();
        EXPECT_FALSE(ReachesIntoAnother(control, place)) << name.toStdString();
      }
      int frame = 0;  // pixels: the edge, and the lamp of a switch
      if (auto* button = qobject_cast<QPushButton*>(&control)) {
        text = button->text().remove('&');
        frame = button->isCheckable() ? 36 : 6;
      }
      if (auto* panel = qobject_cast<QGroupBox*>(&control)) text = panel->title();
      const double needed = QFontMetricsF(control.font()).horizontalAdvance(text);
      EXPECT_LE(needed + frame, control.width()) << text.toStdString();
    }
  }
}

class ScreenReader : public WindowTest, protected Listener {
 protected:
  QAccessibleInterface& Spoken(const QString& control) const {
    return *QAccessible::queryAccessibleInterface(&hands->Find<QWidget>(control));
  }
  QString NameOfLine(int line) const {
    return Spoken("ListSequence").child(line)->text(QAccessible::Name);
  }
};

TEST_F(ScreenReader, GetsWhatTheControlsShow) {
  SetSlider(11, 200);
  Connect();
  hands->Click("CWButtonMainOnOff");
  EXPECT_EQ(Spoken("CWSlide1_11").text(QAccessible::Value), "72");
  EXPECT_EQ(Spoken("Text1_23").text(QAccessible::Value), "36 °");
  EXPECT_EQ(Spoken("ComboPort").text(QAccessible::Name), "Serial Comm Port: Comm1");
  EXPECT_EQ(Spoken("ComboPort").text(QAccessible::Value), "Comm1");
  EXPECT_TRUE(Spoken("CWButtonMainOnOff").state().checked);
  EXPECT_FALSE(Spoken("CWButtonEmuPC").state().checked);
}

TEST_F(ScreenReader, HearsOfStepsBreakpointsAndAHaltAndKeepsItsPlace) {
  SetSlider(11, 127);
  AddSteps(5);
  EXPECT_EQ(NameOfLine(4),
            Local("Step 4: Ch0 4 °, Ch1 0 °, Ch2 0 °, Ch3 0 °, Ch4 0 °, Ch5 0 °, Ch6 0 °, "
                  "Ch7 0 °, Ch8 0 °, Ch9 0 °, Ch10 0 °, Ch11 -0.5 °, 180 ms"));
  for (const char* button : {"CommandDwn", "CommandUp", "CommandAdd", "CommandReplace",
                             "CommandRem", "CommandBrk", "CommandResBrk", "CommandLessSeq"}) {
    auto& control = hands->Find<QPushButton>(button);
    control.setFocus();
    Heard(QAccessible::Focus);
    control.click();
    EXPECT_EQ(Heard(QAccessible::Focus).join('/'), "") << button;
  }
  // The end of the line's name, whose change has been announced once.
  const auto announced = [this] {
    EXPECT_EQ(Heard(QAccessible::NameChanged).count(NameOfLine(1)), 1);
    return NameOfLine(1).section(", ", 13);
  };
  const auto description = [this](const char* button) {
    return Spoken(button).text(QAccessible::Description);
  };
  Connect();
  Select(1);
  Press("CommandBrk");
  EXPECT_EQ(announced(), "breakpoint");
  EXPECT_EQ(description("CommandBrk"), "Step 1 has a breakpoint");
  Select(0);
  EXPECT_EQ(description("CommandBrk"), "Step 0 has no breakpoint");
  Press("CWButtonEmuPC");
  timer.Elapse();
  EXPECT_EQ(announced(), "breakpoint, halted");
  EXPECT_EQ(description("CWButtonEmuPC"), "Halted at step 1");
  Select(2);
  EXPECT_EQ(description("CWButtonEmuPC"), "Halted at step 2");
  Select(1);
  Press("CommandContinue");
  EXPECT_EQ(announced(), "breakpoint");
  Press("CWButtonEmuPC");
  Press("CommandClear");
  Press("CWButtonEmuPC");
  EXPECT_FALSE(description("CWButtonEmuPC").startsWith("Halted")) << "it waits for a first step";
}

TEST_F(StartUp, TipsOfMenuItemsStandBesideTheMenu) {
  auto& menu = *qobject_cast<QMenu*>(hands->Find<QAction>("Emu").parent());
  menu.popup({100, 100});
  const QPoint place = menu.actionGeometry(menu.actions().at(1)).center();
  QHelpEvent rest(QEvent::ToolTip, place, menu.mapToGlobal(place));
  QApplication::sendEvent(&menu, &rest);
  EXPECT_EQ(QToolTip::text(), hands->Find<QAction>("Emu").toolTip());
  const auto windows = QApplication::topLevelWidgets();
  const auto tip = std::ranges::find(windows, "qtooltip_label", &QObject::objectName);
  ASSERT_NE(tip, windows.end());
  EXPECT_FALSE((*tip)->geometry().intersects(menu.geometry()));
  EXPECT_NEAR((*tip)->y(), menu.mapToGlobal(place).y(), 30);
  QToolTip::hideText();
  menu.close();
}

class Paints : public QObject {
 public:
  bool eventFilter(QObject*, QEvent* event) override {
    seen |= event->type() == QEvent::Paint;
    return false;
  }
  bool seen = false;
};

TEST_F(StartUp, AFieldThatThePointerHasLeftLooksSo) {
  auto& field = hands->Find<QWidget>("Text1_3");
  QTest::mouseMove(&field);
  hands->Wait(50);
  Paints paints;
  field.installEventFilter(&paints);
  QTest::mouseMove(form.get(), {1, 1});
  EXPECT_TRUE(hands->WaitUntil([&] { return paints.seen; }, 1000));
}

TEST_F(StartUp, TheArrowThatGoesNoFurtherIsFaded) {
  auto& duration = hands->Find<QSpinBox>("CWNumEditTimeStep");
  const auto arrow = [&](int value, int row) {
    duration.setValue(value);
    const QRect arrows(duration.width() - 12, 0, 10, duration.height() / 2);
    return duration.grab(arrows.translated(0, row * arrows.height())).toImage();
  };
  for (const auto& [value, row] : {std::pair(20, 1), {32767, 0}}) {
    EXPECT_NE(arrow(value, row), arrow(1000, row)) << value;
    EXPECT_EQ(arrow(value, 1 - row), arrow(1000, 1 - row)) << value;
  }
}

using Faders = WindowTest;

TEST_F(Faders, AreMarkedWhereTheSelectedStepHasThem) {
  const QColor colour = platform::SlideColoursOf({}, ProgramPalette()).mark;
  const auto marked = [&](const char* fader = "CWSlide1_3") {  // at which height, -1 for not at all
    const QImage image = hands->Find<QWidget>(fader).grab().toImage();
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        if (image.pixelColor(x, y) == colour) return y;
      }
    }
    return -1;
  };
  for (const int position : {200, 0}) AddStep(3, position, 100);
  EXPECT_EQ(marked(), -1) << "the handle is there";
  Select(0);
  const int high = marked();
  EXPECT_GT(high, 0);
  EXPECT_EQ(marked("CWSlide1_4"), -1);
  SetSlider(3, 80);
  Select(1);
  EXPECT_GT(marked(), high) << "behind the handle";
  Press("CommandReplace");
  EXPECT_EQ(marked(), -1);
  SetSlider(3, 0);
  EXPECT_GT(marked(), 0);
  Press("CommandClear");
  EXPECT_EQ(marked(), -1);
}

class SmallScreen : public WindowTest {
 protected:
  void ShowOn(const QRect& screen) {
    Restart({.screen = screen});
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    EXPECT_TRUE(hands->WaitUntil([&] { return screen.contains(form->frameGeometry()); }))
        << "a part of the window, its title bar perhaps, is not seen";
  }
  static bool IsWhollySeen(const QWidget& control) {
    return control.visibleRegion().boundingRect() == control.rect();
  }
};

TEST_F(SmallScreen, LetsEveryControlBeReached) {
  for (const QRect& screen :
       {QRect(0, 0, 1024, 600), QRect(0, 30, 960, 510), QRect(10, 20, 800, 500)}) {
    ShowOn(screen);
    EXPECT_TRUE(IsWhollySeen(*form->menuBar()));
    EXPECT_EQ(form->findChild<QScrollArea*>()->widget()->pos(), QPoint()) << "the top is not seen";
    EXPECT_EQ(form->minimumSize(), form->maximumSize());
    for (const char* item : {"FreshProg", "Emu", "Serial"}) Trigger(item);
    auto& view = *form->findChild<QScrollArea*>();
    EXPECT_EQ(view.widget()->size(), QSize(849, 674));
    EXPECT_EQ(view.verticalScrollBar()->maximum(), 674 - view.viewport()->height());
    EXPECT_EQ(view.horizontalScrollBar()->maximum(),
              screen.width() > 900 ? 0 : 849 - view.viewport()->width());

    QSet<QWidget*> reached;
    hands->Find<QWidget>("CommandMoreSeq").setFocus();
    for (QWidget* stop = form->focusWidget(); !reached.contains(stop); stop = form->focusWidget()) {
      reached.insert(stop);
      EXPECT_TRUE(IsWhollySeen(*stop)) << stop->objectName().toStdString();
      QTest::keyClick(stop, Qt::Key_Tab);
    }
    EXPECT_EQ(reached.size(), 50);
    hands->Find<QWidget>("Text1_0").setFocus();
    QTest::keyClick(form->focusWidget(), Qt::Key_C, Qt::AltModifier);
    EXPECT_TRUE(IsWhollySeen(hands->Find<QWidget>("CommandReplace")));
  }
}

TEST_F(SmallScreen, AControlThatIsHalfSeenTakesAClick) {
  ShowOn(QRect(0, 0, 800, 500));
  auto& view = *form->findChild<QScrollArea*>();
  for (const auto& [name, hidden_above] : {std::pair("CommandMoreSeq", 0), {"CommandClear", 1}}) {
    auto& control = hands->Find<QPushButton>(name);
    QSignalSpy clicks(&control, &QPushButton::clicked);
    List().setFocus();
    const int middle = control.mapTo(view.widget(), control.rect().center()).y();
    view.verticalScrollBar()->setValue(middle - hidden_above * view.viewport()->height());
    const QRect seen = control.visibleRegion().boundingRect();
    EXPECT_NEAR(seen.height(), control.height() / 2, 2) << name;
    const QPoint place = control.mapTo(form.get(), seen.center());
    QTest::mouseClick(form->windowHandle(), Qt::LeftButton, {}, place);
    EXPECT_EQ(clicks.size(), 1) << name;
  }
}

TEST_F(SmallScreen, NothingScrollsWhereTheWindowFitsWithItsFrame) {
  ShowOn(QRect(0, 0, 1280, 720));
  const QRect frame = form->frameGeometry();
  EXPECT_EQ(form->findChild<QScrollArea*>(), nullptr);
  EXPECT_NEAR(frame.center().x(), 640, 1);
  EXPECT_NEAR(frame.center().y(), 360, 1);
  ASSERT_GT(frame.height(), form->height()) << "this platform draws no frame";
  for (const int missing : {0, 1}) {
    const QRect screen(30, 40, frame.width(), frame.height() - missing);
    ShowOn(screen);
    EXPECT_EQ(form->findChild<QScrollArea*>() != nullptr, missing > 0);
  }
}

TEST(Demo, ShowsTheBoardBesideTheProgramWhereBothFit) {
  const QSize program(851, 730);
  const QSize board(400, 500);
  for (const QRect& screen : {QRect(0, 0, 1251, 730), QRect(100, 50, 1600, 900)}) {
    const auto places = demo::PlacesBeside(screen, program, board);
    ASSERT_TRUE(places);
    const QRect both = QRect(places->program, program) | QRect(places->board, board);
    EXPECT_TRUE(screen.contains(both));
    EXPECT_EQ(both.size(), QSize(1251, 730)) << "side by side and level";
    EXPECT_NEAR(both.center().x(), screen.center().x(), 1);
  }
  EXPECT_FALSE(demo::PlacesBeside({0, 0, 1250, 900}, program, board)) << "one would be cut off";
}

}  // namespace
}  // namespace pelmora
