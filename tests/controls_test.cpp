#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "platform/controls/cw_slide.h"
#include "platform/controls/drop_down_list.h"
#include "platform/controls/text_field.h"

namespace platform {
namespace {

struct ControlsTest : testing::Test {
  ControlsTest() { window.resize(400, 400); }

  static void Activate(QWidget& top) {
    top.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&top));
  }
  void ShowWindow() {
    window.show();
    Activate(window);
  }

  QMainWindow window;
};

TEST_F(ControlsTest, FaderFollowsTheMouseToItsEndsAndDoesNotJumpToIt) {
  CWSlide slide(&window);
  slide.setMaximum(255);
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
    EXPECT_LE(slide.value(), 10);
  }
}

TEST_F(ControlsTest, NoInputMethodPassesTheFilterOfATextFieldBy) {
  TextField field(&window);
  ShowWindow();
  field.setFocus();
  field.setReadOnly(true);
  field.setReadOnly(false);
  QInputMethodEvent composed;
  composed.setCommitString("x");
  QApplication::sendEvent(&field, &composed);
  EXPECT_EQ(field.text(), "");
}

TEST_F(ControlsTest, ATextFieldIsLeftWhenAnotherControlGetsTheFocus) {
  TextField field(&window);
  QPushButton button(&window);
  QWidget other;
  window.menuBar()->addMenu("Menu");
  ShowWindow();
  QSignalSpy lost(&field, &TextField::LostFocus);
  for (const bool to_another_window : {false, true}) {
    for (const bool comes_back : {true, false}) {
      SCOPED_TRACE(testing::Message() << to_another_window << comes_back);
      Activate(window);
      field.setFocus();
      if (to_another_window) {
        other.show();
        Activate(other);
      } else {
        window.menuBar()->setFocus(Qt::MenuBarFocusReason);
      }
      EXPECT_FALSE(field.hasFocus());
      if (to_another_window && !comes_back) button.setFocus();  // the window is inactive
      Activate(window);
      if (comes_back) field.setFocus();
      EXPECT_EQ(lost.size(), button.hasFocus() ? 1 : 0);
      button.setFocus();
      EXPECT_EQ(lost.size(), 1);
      lost.clear();
    }
  }
}

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
