#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "platform/cw_button.h"
#include "platform/cw_num_edit.h"
#include "platform/cw_slide.h"
#include "platform/drop_down_list.h"
#include "platform/file_dialog.h"
#include "platform/list_box.h"
#include "platform/message_box.h"
#include "platform/progress_bar.h"
#include "platform/push_button.h"
#include "platform/text_field.h"

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
  Events events;
};

TEST_F(ControlsTest, FaderFollowsTheMouseWhereItIsDrawn) {
  CWSlide slide(&window);
  slide.SetScaleMaximum(255);
  slide.SetCaption("Ch0");
  slide.setGeometry(10, 10, 33, 273);
  slide.setValue(128);
  ShowWindow();
  const int x = slide.width() / 2;
  // The centre lies half-way between the caption and the lower end.
  const int caption = slide.fontMetrics().height();
  const QPoint centre(x, (caption + slide.height()) / 2);
  for (const auto& [y, value] : {std::pair{-50, 255}, std::pair{400, 0}}) {
    slide.setValue(128);
    QTest::mousePress(&slide, Qt::LeftButton, {}, centre);
    QTest::mouseMove(&slide, {x, y});
    QTest::mouseRelease(&slide, Qt::LeftButton, {}, {x, y});
    EXPECT_EQ(slide.value(), value);
  }
  for (const auto button : {Qt::LeftButton, Qt::MiddleButton}) {
    slide.setValue(0);
    QTest::mouseClick(&slide, button, {}, {x, caption + 10});
    EXPECT_LE(slide.value(), 10) << "a servo jumped to the pointer";
  }
}

TEST_F(ControlsTest, KeysOfATextFieldPassItsFilter) {
  TextField field(&window);
  QLineEdit other(&window);
  ShowWindow();
  std::vector<int> keys;
  int lost = 0;
  field.LostFocus = [&] { ++lost; };
  field.KeyPress = [&](int& key) {
    keys.push_back(key);
    if (key != 8 && key != 13 && key != '-' && (key < '0' || key > '9')) key = 0;
  };
  field.setFocus();
  QTest::keyClicks(&field, "-1a 2+.3");
  EXPECT_EQ(field.text(), "-123");
  keys.clear();
  for (const int key : {Qt::Key_Home, Qt::Key_Delete, Qt::Key_End, Qt::Key_Backspace,
                        Qt::Key_Return, Qt::Key_Enter}) {
    QTest::keyClick(&field, static_cast<Qt::Key>(key));
  }
  EXPECT_EQ(field.text(), "12");
  EXPECT_EQ(keys, (std::vector<int>{8, 13, 13}));

  QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&field, Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(field.text(), "");
  QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(field.text(), "12");
  EXPECT_EQ(keys.size(), 3U);

  field.setReadOnly(true);
  field.setReadOnly(false);
  QInputMethodEvent composed;
  composed.setCommitString("x");
  QApplication::sendEvent(&field, &composed);
  EXPECT_EQ(field.text(), "12") << "an input method passed the filter by";

  for (const auto reason :
       {Qt::PopupFocusReason, Qt::MenuBarFocusReason, Qt::ActiveWindowFocusReason}) {
    QFocusEvent out(QEvent::FocusOut, reason);
    QApplication::sendEvent(&field, &out);
  }
  EXPECT_EQ(lost, 0);
  QTest::keyClick(&field, Qt::Key_Tab);
  EXPECT_TRUE(other.hasFocus());
  EXPECT_EQ(lost, 1);
}

TEST_F(ControlsTest, ButtonTakesTheFocusBeforeItActs) {
  TextField field(&window);
  PushButton button("&Add", &window);
  ShowWindow();
  QStringList order;
  field.LostFocus = [&] { order += "commit"; };
  QObject::connect(&button, &PushButton::clicked, [&] { order += "click"; });
  field.setFocus();
  QTest::keyClick(&field, Qt::Key_A, Qt::AltModifier);
  EXPECT_EQ(order, QStringList({"commit", "click"})) << "the click has to be handled at once";
  field.LostFocus = [&] { button.setEnabled(false); };
  field.setFocus();
  QTest::keyClick(&field, Qt::Key_A, Qt::AltModifier);
  EXPECT_EQ(order.size(), 2) << "a button disabled by the commit acted";
}

TEST_F(ControlsTest, EntriesAreChosenFromTheOpenListOnly) {
  DropDownList list(&window);
  for (int i = 1; i <= 8; ++i) list.addItem("Comm" + QString::number(i), i);
  QString state = "free";
  list.setCurrentIndex(-1);
  list.ToolTip = [&](int item) { return state + QString::number(item); };
  ShowWindow();
  QSignalSpy clicks(&list, &DropDownList::Click);
  EXPECT_EQ(list.currentIndex(), -1);

  QWheelEvent wheel({5, 5}, list.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, {}, false);
  QApplication::sendEvent(&list, &wheel);
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_Down);
  EXPECT_EQ(list.currentIndex(), -1);
  EXPECT_EQ(clicks.size(), 0);
  ASSERT_TRUE(list.view()->isVisible());
  EXPECT_EQ(list.itemData(2, Qt::ToolTipRole), "free3");

  list.view()->setCurrentIndex(list.model()->index(2, 0));
  QTest::keyClick(list.view(), Qt::Key_Return);
  EXPECT_EQ(list.currentData(), 3);
  state = "taken";
  list.showPopup();
  EXPECT_EQ(list.itemData(2, Qt::ToolTipRole), "taken3");
  QTest::keyClick(list.view(), Qt::Key_Return);
  EXPECT_EQ(clicks.size(), 2) << "also for the entry already selected";
}

TEST_F(ControlsTest, OpenDialogsEndWithTheProgram) {
  CWButton button("PC Emu", &window);
  ShowWindow();
  ModalMessageBox message(events);
  ModalFileDialog files(events);
  QTimer::singleShot(0, &events, [&] {
    auto* box = window.findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "<b>No</b> Connection");
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    EXPECT_EQ(box->icon(), QMessageBox::Information);
    EXPECT_EQ(box->standardButtons(), QMessageBox::Ok);
    EXPECT_EQ(box->parentWidget(), &window);
    // The window gets no input meanwhile, but the toolkit would let it be closed.
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_FALSE(button.isChecked());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    QTimer::singleShot(0, &events, [&] {  // a file dialog on top of the box
      QTimer::singleShot(0, &events, &Events::End);
      EXPECT_FALSE(files.ShowOpen({"Data Files (*.dat)|*.dat", ".dat", ""}).has_value());
    });
  });
  message.Show("<b>No</b> Connection", "Program");
  EXPECT_TRUE(events.Ending());
  message.Show("late", "Program");
  QApplication::processEvents();
  const auto start = std::chrono::steady_clock::now();
  QTimer::singleShot(400, &window, [] {});
  events.DoEvents();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(200));
}

}  // namespace
}  // namespace platform
