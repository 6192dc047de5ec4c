#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QBackingStore>
#include <QMainWindow>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "platform/controls/cw_num_edit.h"
#include "platform/controls/drop_down_list.h"
#include "platform/controls/progress_bar.h"
#include "platform/controls/text_field.h"

namespace platform {
namespace {

struct ControlsTest : testing::Test {
  ControlsTest() { window.resize(400, 400); }

  void ShowWindow() {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }

  QMainWindow window;
};

TEST_F(ControlsTest, AClickIntoATextFieldSelectsAllOfIt) {
  TextField field(&window);
  field.setText("-25");
  QPushButton button(&window);
  button.move(100, 100);
  ShowWindow();
  const QPoint place(field.fontMetrics().horizontalAdvance("-2"), field.height() / 2);
  for (int i = 0; i < 2; ++i) {
    button.setFocus();
    QTest::mousePress(&field, Qt::LeftButton, {}, place);
    QTest::mouseMove(&field, place + QPoint(4, 0));  // while the button is down
    QTest::mouseRelease(&field, Qt::LeftButton, {}, place);
    EXPECT_EQ(field.selectedText(), "-25");
    QTest::qWait(QApplication::doubleClickInterval() + 1);
    QTest::mouseClick(&field, Qt::LeftButton, {}, place);
    EXPECT_EQ(field.selectedText(), "");
    EXPECT_NE(field.cursorPosition(), 0);
    QTest::mouseDClick(&field, Qt::LeftButton, {}, place);
    EXPECT_EQ(field.selectedText(), "-25");
  }
  button.setFocus();
  QTest::keyClick(&button, Qt::Key_Tab);
  EXPECT_EQ(field.selectedText(), "-25") << "by Tab";
}

TEST_F(ControlsTest, ABarHasPlainDigitsInEveryLocale) {
  const QLocale before;
  QLocale::setDefault(QLocale("ar_EG"));
  EXPECT_EQ(ProgressBar().text(), "0 %");
  QLocale::setDefault(before);
}

TEST_F(ControlsTest, ArrowsOfANumberFieldFadeWhenABoundIsTyped) {
  CWNumEdit field(&window);
  field.SetScale(20, 1000, 20, 200);
  ShowWindow();
  field.setFocus();
  const auto arrows = [&] {
    QTest::qWait(30);  // for what is still to be drawn
    const auto* drawn = static_cast<QImage*>(window.backingStore()->paintDevice());
    return drawn->copy(field.width() - 20, 0, 20, field.height());
  };
  for (const char* typed : {"500", "1000", "999"}) {
    field.selectAll();
    QTest::keyClicks(&field, typed);
    const QImage shown = arrows();
    field.repaint();
    EXPECT_TRUE(arrows() == shown) << typed;
  }
}

TEST_F(ControlsTest, EntriesAreChosenFromTheOpenListOnly) {
  DropDownList list(&window);
  for (int i = 1; i <= 8; ++i) list.addItem("Comm" + QString::number(i), i);
  list.setCurrentIndex(-1);
  QString state = "free";
  list.StandsFor = [&](int item) { return item < 4 ? state + QString::number(item) : ""; };
  list.NothingTip = "nothing";
  ShowWindow();
  QSignalSpy clicks(&list, &DropDownList::Click);
  for (const auto key : {Qt::Key_C, Qt::Key_Down}) {
    list.hidePopup();
    list.setFocus();
    QTest::keyClick(&list, key);
    EXPECT_EQ(list.currentIndex(), -1);
  }
  EXPECT_EQ(clicks.size(), 0);
  ASSERT_TRUE(list.view()->isVisible());
  EXPECT_EQ(list.itemData(2, Qt::ToolTipRole), "free3");
  EXPECT_EQ(list.itemData(3, Qt::ToolTipRole), "nothing");
  EXPECT_TRUE(list.itemData(3, Qt::ForegroundRole).isValid()) << "pale";
  EXPECT_FALSE(list.itemData(2, Qt::ForegroundRole).isValid());

  for (int chosen = 1; chosen <= 2; ++chosen) {  // also the entry already selected
    const QString stood_for = std::exchange(state, "taken") + "3";
    list.view()->setCurrentIndex(list.model()->index(2, 0));
    QTest::keyClick(list.view(), Qt::Key_Return);
    EXPECT_EQ(list.currentData(), 3);
    ASSERT_EQ(clicks.size(), chosen);
    EXPECT_EQ(clicks.last().first(), stood_for);
    list.showPopup();
    EXPECT_EQ(list.itemData(2, Qt::ToolTipRole), "taken3");
  }
}

}  // namespace
}  // namespace platform
