// The context menu of the step list. What its commands change by their keys is in effects.txt.
#include <QClipboard>

#include "tests/flash_fixture.h"

namespace pelmora {
namespace {

class ListMenu : public FlashTest {};

TEST_F(ListMenu, ShowsNamesAndKeysAndDoesWhatTheyDo) {
  AddSteps(3);
  Select(0);
  // A right click selects the line as any button does, and opens the menu when it is released.
  auto& menu = hands->Find<QMenu>("ListMenu");
  platform::ListBox& list = List();
  const QPoint place = list.visualItemRect(list.item(1)).center();
  QTest::mousePress(list.viewport(), Qt::RightButton, {}, place);
  EXPECT_FALSE(menu.isVisible());
  QTest::mouseRelease(list.viewport(), Qt::RightButton, {}, place);
  ASSERT_TRUE(menu.isVisible());
  ExpectSteps("012", 1);
  QStringList shown;
  for (const QAction* entry : menu.actions()) {
    if (entry->isSeparator()) continue;
    const QString keys = entry->shortcut().toString();
    shown.append(entry->text().remove('&') + (keys.isEmpty() ? "" : '\t' + keys) +
                 (entry->isEnabled() ? "" : " (disabled)"));
  }
  EXPECT_EQ(shown.join('\n').toStdString(),
            "Undo Add\tCtrl+Z\n"
            "Redo\tCtrl+Shift+Z (disabled)\n"
            "Cut\tCtrl+X\n"
            "Copy\tCtrl+C\n"
            "Copy Sequence\tCtrl+Shift+C\n"
            "Paste\tCtrl+V\n"
            "Move Up\tCtrl+Up\n"
            "Move Down\tCtrl+Down\n"
            "Show Step\tEnter\n"
            "Movement\tCtrl+M");
  const QRect cut = menu.actionGeometry(&hands->Find<QAction>("ListCut"));
  QTest::mouseClick(&menu, Qt::LeftButton, {}, cut.center());
  EXPECT_FALSE(menu.isVisible());
  ExpectSteps("02", 1);
  // The keys of what was disabled work once the menu has gone.
  ListKeys("Ctrl+Z Ctrl+Shift+Z");
  ExpectSteps("02", 1);
}

// Playback selects other lines behind the open menu.
TEST_F(ListMenu, MeansTheLineThatItWasOpenedOn) {
  Connect();
  const auto choose_on_0 = [this](const char* item) {
    if (!hands->Find<QAbstractButton>("CWButtonEmuPC").isChecked()) Press("CWButtonEmuPC");
    const QPoint place = List().visualItemRect(List().item(0)).center();
    QTest::mouseClick(List().viewport(), Qt::RightButton, {}, place);
    timer.Elapse();
    timer.Elapse();
    auto& menu = hands->Find<QMenu>("ListMenu");
    const QRect entry = menu.actionGeometry(&hands->Find<QAction>(item));
    QTest::mouseClick(&menu, Qt::LeftButton, {}, entry.center());
    hands->Wait(1);
  };
  AddSteps(4);
  choose_on_0("ListMoveDown");
  ExpectSteps("1023", 1);
  choose_on_0("ListCut");
  ExpectSteps("023", 0);
  choose_on_0("ListPaste");
  ExpectSteps("0123", 1);
  choose_on_0("ListUndo");
  ExpectSteps("023", 0);
  timer.Elapse();
  ListKeys("Ctrl+X");  // a key means the line that is selected now
  ExpectSteps("03", 1);
}

TEST_F(ListMenu, ClosesWhenTheLinesChange) {
  AddSteps(3);
  const QPoint place = List().visualItemRect(List().item(1)).center();
  QTest::mouseClick(List().viewport(), Qt::RightButton, {}, place);
  auto& menu = hands->Find<QMenu>("ListMenu");
  ASSERT_TRUE(menu.isVisible());
  Press("CommandClear");
  EXPECT_FALSE(menu.isVisible());
}

}  // namespace
}  // namespace pelmora
