// The window as a whole: what it shows at start-up, its menus, captions, keyboard and names for
// assistive technology, how it ends, and screens that are smaller than it.
#include <QAccessible>
#include <QFontMetricsF>
#include <QGroupBox>
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>

#include "tests/window_fixture.h"
#include "ui/inventory.h"

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

TEST_F(StartUp, MenusTogglePanelsAndTheirCheckMarks) {
  const QVector<QPair<QString, QStringList>> items = {{"FreshProg", {"FrameFlash"}},
                                                      {"Emu", {"FrameRealEmu"}},
                                                      {"Serial", {"FrameSer", "FrameInfo"}}};
  for (const auto& [item, panels] : items) {
    for (const bool shown : {false, true, false}) {
      EXPECT_EQ(hands->Find<QAction>(item).isChecked(), shown);
      for (const QString& panel : panels) {
        EXPECT_EQ(hands->Find<QWidget>(panel).isVisible(), shown) << panel.toStdString();
      }
      hands->ChooseMenu(item);
    }
  }
}

TEST_F(StartUp, TellsAssistiveTechnologyNameRoleValueAndState) {
  SetSlider(3, 200);
  Connect();
  hands->Click("CWButtonMainOnOff");
  const auto spoken = [this](const QString& name) {
    return QAccessible::queryAccessibleInterface(&hands->Find<QWidget>(name));
  };
  EXPECT_EQ(spoken("CWSlide1_3")->text(QAccessible::Name), "Ch3 position");
  EXPECT_EQ(spoken("CWSlide1_3")->role(), QAccessible::Slider);
  EXPECT_EQ(spoken("CWSlide1_3")->valueInterface()->currentValue().toInt(), 200);
  EXPECT_EQ(spoken("CWButtonMainOnOff")->text(QAccessible::Name), "PC Control Enable");
  EXPECT_TRUE(spoken("CWButtonMainOnOff")->state().checked);
  for (const ControlRow& row : Inventory()) {
    EXPECT_NE(spoken(ElementName(row, 0))->text(QAccessible::Name), "") << row.control.name;
  }
}

TEST_F(StartUp, ToolTipsSayWhatEveryButtonDoesAndItsKeyWhichIsItsOwn) {
  QStringList keys;
  for (const ControlRow& row : Inventory()) {
    const QString name = ElementName(row, 0);
    const QString tip = hands->Find<QWidget>(name).toolTip();
    if (hands->Window().findChild<QPushButton*>(name) && row.start != Start::kHidden) {
      EXPECT_FALSE(tip.isEmpty()) << name.toStdString();
    }
    const QString key = QKeySequence::mnemonic(QString::fromUtf8(row.caption)).toString();
    EXPECT_TRUE(tip.isEmpty() || tip.contains(key)) << tip.toStdString();
    EXPECT_LE(tip.size(), 90) << "one line: " << tip.toStdString();
    if (!key.isEmpty()) keys.append(key);
  }
  for (const MenuRow& row : Menus()) {
    const auto& item = hands->Find<QAction>(row.item.name);
    EXPECT_NE(item.toolTip(), item.text().remove('&')) << "the toolkit's own";
  }
  keys.append({QKeySequence::mnemonic(Menus().front().menu).toString(),
               QKeySequence::mnemonic(Menus().back().menu).toString()});
  EXPECT_GE(keys.size(), 17);
  for (const char* slow : {"CommandErase", "CommandFlash", "CommandRead"}) {
    EXPECT_FALSE(hands->Find<QPushButton>(slow).text().contains('&')) << slow;
  }
  EXPECT_EQ(keys.removeDuplicates(), 0) << keys.join(' ').toStdString();
  EXPECT_EQ(hands->Find<QWidget>("CommandRead").toolTip(),
            "Empties the program first, then reads all 16 sequences from the board");
}

TEST_F(StartUp, ClosingSendsTwoStopBytesAndNothingMore) {
  Connect();
  timer.SetEnabled(true);
  form->close();
  EXPECT_FALSE(timer.Enabled()) << "it would play on";
  SetSlider(0, 1);
  ExpectSent({0, 0});
  EXPECT_TRUE(events.Ending());
}

class SmallScreen : public WindowTest {
 protected:
  void ShowOn(const QRect& screen) {
    Restart({.screen = screen});
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
  }
  static bool IsWhollySeen(const QWidget& control) {
    return control.visibleRegion().boundingRect() == control.rect();
  }
};

TEST_F(SmallScreen, LetsEveryControlBeReached) {
  for (const QRect& screen :
       {QRect(0, 0, 1024, 600), QRect(0, 30, 960, 510), QRect(10, 20, 800, 500)}) {
    ShowOn(screen);
    EXPECT_TRUE(screen.adjusted(0, 30, 0, 0).contains(form->geometry())) << "no title bar is seen";
    EXPECT_TRUE(IsWhollySeen(*form->menuBar()));
    EXPECT_EQ(form->minimumSize(), form->maximumSize());
    for (const char* item : {"FreshProg", "Emu", "Serial"}) hands->Find<QAction>(item).trigger();
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

TEST_F(SmallScreen, OnALargerOneNothingScrolls) {
  ShowOn(QRect(0, 0, 1280, 800));
  EXPECT_EQ(form->findChild<QScrollArea*>(), nullptr);
  EXPECT_NEAR(form->geometry().center().x(), 640, 1);
}

}  // namespace
}  // namespace pelmora
