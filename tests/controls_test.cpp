#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QMainWindow>
#include <QSignalSpy>
#include <QTest>

#include "platform/controls/cw_slide.h"
#include "platform/controls/drop_down_list.h"
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

TEST_F(ControlsTest, FaderFollowsTheMouseWhereItIsDrawn) {
  CWSlide slide(&window);
  slide.SetScaleMaximum(255);
  slide.SetCaption("Ch0");
  slide.setGeometry(10, 10, 33, 273);
  ShowWindow();
  // The centre lies half-way between the caption and the lower end.
  const int caption = slide.fontMetrics().height();
  for (const auto& [y, value] : {std::pair{-50, 255}, std::pair{400, 0}}) {
    slide.setValue(128);
    QTest::mousePress(&slide, Qt::LeftButton, {}, {16, (caption + slide.height()) / 2});
    QTest::mouseMove(&slide, {16, y});
    QTest::mouseRelease(&slide, Qt::LeftButton, {}, {16, y});
    EXPECT_EQ(slide.value(), value);
  }
  for (const auto button : {Qt::LeftButton, Qt::MiddleButton}) {
    slide.setValue(0);
    QTest::mouseClick(&slide, button, {}, {16, caption + 10});
    EXPECT_LE(slide.value(), 10) << "a servo jumped to the pointer";
  }
}

TEST_F(ControlsTest, KeysOfATextFieldPassItsFilter) {
  TextField field(&window);
  ShowWindow();
  std::vector<int> keys;
  int lost = 0;
  field.LostFocus = [&] { ++lost; };
  field.KeyPress = [&](int& key) {
    keys.push_back(key);
    if (key == 'a') key = 0;
  };
  field.setFocus();
  for (const auto key : {Qt::Key_1, Qt::Key_A, Qt::Key_2, Qt::Key_Home, Qt::Key_Delete, Qt::Key_End,
                         Qt::Key_3, Qt::Key_Backspace, Qt::Key_Return, Qt::Key_Enter}) {
    QTest::keyClick(&field, key);
  }
  EXPECT_EQ(keys, (std::vector<int>{'1', 'a', '2', '3', 8, 13, 13}));
  field.setReadOnly(true);
  field.setReadOnly(false);
  QInputMethodEvent composed;
  composed.setCommitString("x");
  QApplication::sendEvent(&field, &composed);
  EXPECT_EQ(field.text(), "2") << "an input method passed the filter by";
  for (const auto reason : {Qt::PopupFocusReason, Qt::MenuBarFocusReason,
                            Qt::ActiveWindowFocusReason, Qt::TabFocusReason}) {
    EXPECT_EQ(lost, 0);
    QFocusEvent out(QEvent::FocusOut, reason);
    QApplication::sendEvent(&field, &out);
  }
  EXPECT_EQ(lost, 1);
}

TEST_F(ControlsTest, EntriesAreChosenFromTheOpenListOnly) {
  DropDownList list(&window);
  for (int i = 1; i <= 8; ++i) list.addItem("Comm" + QString::number(i), i);
  list.setCurrentIndex(-1);
  QString state = "free";
  list.ToolTip = [&](int item) { return state + QString::number(item); };
  ShowWindow();
  QSignalSpy clicks(&list, &DropDownList::Click);
  QWheelEvent wheel({5, 5}, list.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, {}, false);
  QApplication::sendEvent(&list, &wheel);
  for (const auto key : {Qt::Key_C, Qt::Key_Down}) {
    list.hidePopup();
    list.setFocus();
    QTest::keyClick(&list, key);
    EXPECT_EQ(list.currentIndex(), -1);
  }
  EXPECT_EQ(clicks.size(), 0);
  ASSERT_TRUE(list.view()->isVisible());
  EXPECT_EQ(list.itemData(2, Qt::ToolTipRole), "free3");

  for (int chosen = 1; chosen <= 2; ++chosen) {  // also the entry already selected
    list.view()->setCurrentIndex(list.model()->index(2, 0));
    QTest::keyClick(list.view(), Qt::Key_Return);
    EXPECT_EQ(list.currentData(), 3);
    EXPECT_EQ(clicks.size(), chosen);
    state = "taken";
    list.showPopup();
    EXPECT_EQ(list.itemData(2, Qt::ToolTipRole), "taken3");
  }
}

}  // namespace
}  // namespace platform
