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

}  // namespace
}  // namespace pelmora
