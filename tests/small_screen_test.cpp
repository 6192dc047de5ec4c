// The window on screens that are smaller than it.
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>

#include "tests/window_fixture.h"
#include "ui/inventory.h"

namespace pelmora {
namespace {

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
  EXPECT_EQ(form->centralWidget()->size(), QSize(849, 674));
  EXPECT_NEAR(form->geometry().center().x(), 640, 1);
}

}  // namespace
}  // namespace pelmora
