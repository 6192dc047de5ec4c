// Steps cut, copied and pasted in the list of the real window, and the list's context menu.
#include <QClipboard>

#include "tests/flash_fixture.h"

namespace pelmora {
namespace {

class StepClipboard : public FlashTest {
 protected:
  StepClipboard() { QGuiApplication::clipboard()->clear(); }

  // Keys for the control that has the focus.
  void Keys(const QString& keys) {
    QWidget* focus = QApplication::focusWidget();
    hands->Keys(focus ? *focus : *form, keys);
  }
  void SetClipboard(const QString& text) { QGuiApplication::clipboard()->setText(text); }
  QString Clipboard() const { return QGuiApplication::clipboard()->text(); }
  // A line of the clipboard for a step with this angle of channel 0.
  QString TextOf(const QString& angle, const QString& duration) const {
    return angle + QString("\t0").repeated(kChannels - 1) + '\t' + duration + '\n';
  }
};

TEST_F(StepClipboard, KeysWorkWhereverNothingIsTyped) {
  Trigger("Serial");
  AddSteps(3);
  const std::pair<const char*, bool> cases[] = {
      {"CommandAdd", true}, {"CWSlide1_3", true},        {"CWButtonEmuPC", true},
      {"ComboPort", true},  {"Text1_3", false},          {"Text1_14", false},
      {"Echo", false},      {"CWNumEditTimeStep", false}};
  for (const auto& [name, work] : cases) {
    SCOPED_TRACE(name);
    for (const QString keys : {"Ctrl+Shift+C", "Ctrl+C", "Ctrl+X", "Ctrl+V"}) {
      Select(1);
      SetClipboard(TextOf("5", "20"));
      auto& control = hands->Find<QWidget>(name);
      control.setFocus();
      const QStringList lines = Lines();
      Keys(keys);
      EXPECT_EQ(Lines() != lines, work && (keys == "Ctrl+X" || keys == "Ctrl+V"));
      EXPECT_EQ(Clipboard().endsWith("\t140\n") || Clipboard().endsWith("\t120\n"),
                work && keys != "Ctrl+V");
      if (Lines() != lines) Keys("Ctrl+Z");
    }
  }
  hands->Find<QWidget>("CommandAdd").setFocus();
  Keys("Delete");
  ExpectSteps("012", 1);
  Press("CommandBrk");
  Operator::Hold(List(), Qt::Key_Delete);
  ExpectSteps("02", 1);  // as "Remove"
  EXPECT_EQ(hands->Read("LabelByte"), "28 bytes");
}

TEST_F(StepClipboard, MenuShowsNamesAndKeysAndDoesWhatTheyDo) {
  AddSteps(3);
  Select(0);
  const auto item = [this](const char* name) -> QAction& { return hands->Find<QAction>(name); };
  // A right click selects the line as any button does, and opens the menu when it is released.
  auto& menu = hands->Find<QMenu>("ListMenu");
  platform::ListBox& list = List();
  const QPoint place = list.visualItemRect(list.item(1)).center();
  QTest::mousePress(list.viewport(), Qt::RightButton, {}, place);
  EXPECT_FALSE(menu.isVisible());
  QTest::mouseRelease(list.viewport(), Qt::RightButton, {}, place);
  ASSERT_TRUE(menu.isVisible());
  EXPECT_EQ(Selected(), 1);
  EXPECT_EQ(Order(), "012");
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
  QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&item("ListCut")).center());
  EXPECT_FALSE(menu.isVisible());
  EXPECT_EQ(Order(), "02");
  const QPair<const char*, const char*> chosen[] = {
      {"ListPaste", "021"},    {"ListMoveUp", "012"}, {"ListMoveDown", "021"},
      {"ListShowStep", "021"}, {"ListUndo", "012"},   {"ListRedo", "021"},
  };
  for (const auto& [name, order] : chosen) {
    item(name).trigger();
    EXPECT_EQ(Order(), order) << name;
  }
  EXPECT_EQ(hands->Read("Text1_0"), "2") << "the step that was shown";
  item("ListCopySequence").trigger();
  EXPECT_EQ(Clipboard().count('\n'), 3);
  item("ListCopy").trigger();
  EXPECT_EQ(Clipboard(), TextOf("1", "120"));
  // The keys of what was disabled work once the menu has gone.
  item("ListUndo").trigger();
  EXPECT_EQ(Order(), "012");
}

}  // namespace
}  // namespace pelmora
