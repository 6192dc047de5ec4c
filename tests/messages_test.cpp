// The message boxes and file dialogs of the program itself: who gets the keyboard and the pointer
// while one is open, and what becomes of a gesture when one comes up.
#include <QElapsedTimer>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

// Keys and clicks go through the windows, as the window system gives them: a modal dialog keeps
// them from the others there.
class Messages : public WindowTest {
 protected:
  Messages() {
    Restart({.message_boxes = true, .file_dialogs = true});
    EXPECT_TRUE(Activate(*form));
  }
  ~Messages() override { form->close(); }  // nobody answers a message that comes then

  // Controls get the focus in the active window only.
  bool Activate(QWidget& window) {
    window.activateWindow();
    return hands->WaitUntil([&] { return QApplication::activeWindow() == &window; });
  }
  // Does `work` in the message box or file dialog that opens next.
  void InDialog(std::function<void(QDialog&)> work) {
    hands->When([] { return QApplication::activeModalWidget() != nullptr; },
                [this, work = std::move(work)] {
                  auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
                  ASSERT_TRUE(Activate(*dialog));
                  work(*dialog);
                });
  }
  static void WindowKeys(QWidget& window, const QString& keys) {
    for (const QString& key : keys.split(' ')) {
      const QKeyCombination pressed = QKeySequence(key)[0];
      QTest::keyClick(window.windowHandle(), pressed.key(), pressed.keyboardModifiers());
    }
  }
  void WindowClick(QWidget& control) {
    QWidget* window = control.window();
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                      control.mapTo(window, control.rect().center()));
  }
};

// The end of the program by Ctrl+Q, or as a signal asks for it, while something else is open.
class EndBehind : public Messages,
                  public testing::WithParamInterface<std::tuple<std::string, bool>> {};

TEST_P(EndBehind, SendsTheStopByte) {
  const QString opener = QString::fromStdString(std::get<0>(GetParam()));
  const bool by_key = std::get<1>(GetParam());
  AddSteps(2);
  Connect();
  Sent(0);
  const auto end = [&](QDialog& dialog) {
    by_key ? WindowKeys(dialog, "Ctrl+Q") : void(form->close());
  };
  if (opener == "CommandInterpolate" || opener == "OKButton") Press("CommandInterpolate");
  if (opener == "CommandInterpolate") {
    auto& dialog = hands->Find<QDialog>("DialogInterp");
    ASSERT_TRUE(Activate(dialog));
    end(dialog);
  } else {
    if (opener == "OKButton") hands->Find<QSpinBox>("CWNumEditInterp").setValue(100);
    InDialog(end);
    opener == "SaveBuffer" ? Trigger(opener) : hands->Click(opener);
  }
  EXPECT_TRUE(main_loop.Ending());
  Press("CommandErase");  // no message comes any more, nor a dialog
  Trigger("SaveBuffer");
  Bytes sent = by_key ? Bytes{0} : Bytes{0, 0};
  if (opener == "CommandErase") sent.insert(sent.begin(), 7);
  ExpectSent(sent);
}

INSTANTIATE_TEST_SUITE_P(Messages, EndBehind,
                         testing::Combine(testing::Values<std::string>("CommandErase", "SaveBuffer",
                                                                       "CommandInterpolate",
                                                                       "OKButton"),
                                          testing::Bool()));

TEST_F(Messages, KeepTheKeyboardAndWhatIsBehindGetsNothing) {
  AddSteps(3);
  const QStringList lines = Lines();
  Trigger("ListMovement");
  ASSERT_TRUE(Activate(*form));
  InDialog([&](QDialog& dialog) {
    auto& message = dynamic_cast<QMessageBox&>(dialog);
    EXPECT_EQ(message.text(), "No Connection Available!");
    EXPECT_EQ(message.textFormat(), Qt::PlainText);
    EXPECT_EQ(message.icon(), QMessageBox::Information);
    EXPECT_EQ(message.standardButtons(), QMessageBox::Ok);
    EXPECT_EQ(message.parentWidget(), form.get());
    for (const char* control :
         {"CommandAdd", "CommandInterpolate", "CommandUp", "MovementCanvas"}) {
      WindowClick(hands->Find<QWidget>(control));
    }
    WindowKeys(*form, "Up Alt+A Alt+R Alt+Right Ctrl+S Ctrl+L Ctrl+X");
    QAbstractButton& ok = *message.button(QMessageBox::Ok);
    EXPECT_TRUE(ok.hasFocus());
    const QImage focused = ok.grab().toImage();
    ok.clearFocus();
    EXPECT_NE(ok.grab().toImage(), focused) << "one sees what Enter would press";
    ok.setFocus();
    EXPECT_EQ(QApplication::activeWindow(), &message);
    // It answers a press and takes a key at once; a key that is held opens and closes nothing more.
    QTest::simulateEvent(message.button(QMessageBox::Ok), true, Qt::Key_Return, {}, "\r", true);
    EXPECT_TRUE(message.isVisible());
    WindowKeys(message, "Return");
    EXPECT_FALSE(message.isVisible());
  });
  hands->Click("CWButtonMainOnOff");
  EXPECT_EQ(Lines(), lines);
  EXPECT_EQ(Selected(), 2);
  EXPECT_EQ(form->findChild<QDialog*>("DialogInterp"), nullptr);
}

TEST_F(Messages, GiveTheKeyboardBackToTheWindowThatHadIt) {
  Trigger("ListMovement");
  auto& movement = *hands->Find<QWidget>("MovementCanvas").window();
  for (QWidget* window : {&movement, static_cast<QWidget*>(form.get())}) {
    ASSERT_TRUE(Activate(*window));
    InDialog([](QDialog& dialog) { dialog.reject(); });
    WindowKeys(*window, "Ctrl+L");
    const auto active = [&] { return QApplication::activeWindow() == window; };
    EXPECT_TRUE(hands->WaitUntil(active)) << window->objectName().toStdString();
  }
}

TEST_F(Messages, ThatComeByThemselvesAreNotAnsweredByWhatIsTyped) {
  Connect();
  InDialog([this](QDialog& message) {
    QElapsedTimer shown;
    shown.start();
    WindowKeys(message, "1 Return Space Escape Alt+O");
    EXPECT_TRUE(message.isVisible());
    EXPECT_TRUE(hands->WaitUntil(
        [&] {
          WindowKeys(message, "Return");
          return !message.isVisible();
        },
        2000));
    EXPECT_GT(shown.elapsed(), 300);
    EXPECT_LT(shown.elapsed(), 1000);
  });
  Press("CommandErase");
  ExpectSent({7});
}

TEST_F(Messages, ThatComeWhileAMenuIsOpenCloseIt) {
  Connect();
  Press("CWButtonMainOnOff");
  auto& file = *qobject_cast<QMenu*>(hands->Find<QAction>("SaveBuffer").parent());
  file.popup(form->mapToGlobal(QPoint(5, 5)));
  bool answered = false;
  InDialog([&](QDialog& dialog) {
    auto& message = dynamic_cast<QMessageBox&>(dialog);
    EXPECT_TRUE(message.text().startsWith("The connection on Comm1"));
    EXPECT_EQ(hands->Read("CWButtonMainOnOff"), "Off") << "before the message is answered";
    QTest::mouseClick(message.button(QMessageBox::Ok), Qt::LeftButton);
    answered = true;
  });
  board.Unplug();
  EXPECT_TRUE(hands->WaitUntil([&] { return answered && !form->findChild<QMessageBox*>(); }));
  EXPECT_FALSE(file.isVisible());
  ASSERT_TRUE(Activate(*form));
  hands->Click("CommandAdd");
  EXPECT_EQ(Lines().size(), 1);
  EXPECT_TRUE(files.requests.empty());
}

TEST_F(Messages, GiveUpWhatThePointerIsDoing) {
  AddSteps(4);
  SetSlider(0, 128);
  auto& fader = hands->Find<platform::CWSlide>("CWSlide1_3");
  auto& button = hands->Find<QPushButton>("CommandRem");
  QWidget& view = *List().viewport();
  const auto centre = [this](int line) {
    return List().visualItemRect(List().item(line)).center();
  };
  const QPoint handle(fader.width() / 2, (fader.fontMetrics().height() + fader.height()) / 2);
  const auto message = [this] {
    InDialog([](QDialog& dialog) { WindowKeys(dialog, "Return"); });
    Press("CWButtonMainOnOff");
  };
  const auto dialog = [this] {
    Press("CommandInterpolate");
    hands->Find<QDialog>("DialogInterp").close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  };
  for (const auto& comes_up : {std::function<void()>(message), {dialog}}) {
    Select(1);
    QTest::mousePress(&view, Qt::LeftButton, {}, centre(1));
    QTest::mouseMove(&view, centre(3));
    EXPECT_EQ(Selected(), 3);
    comes_up();
    EXPECT_EQ(view.cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(Selected(), 1) << "the step that was dragged";
    QTest::mouseMove(&view, centre(2));
    QTest::mouseRelease(&view, Qt::LeftButton, {}, centre(2));
    hands->Keys(List(), "Return");
    EXPECT_EQ(hands->Read("LabelStep"), "Step N° 1") << "the key is alive";

    QTest::mousePress(&fader, Qt::LeftButton, {}, handle);
    QTest::mouseMove(&fader, handle - QPoint(0, 20));
    const int reached = fader.value();
    EXPECT_GT(reached, 130);
    comes_up();
    EXPECT_FALSE(fader.isSliderDown());
    QTest::mousePress(&fader, Qt::RightButton, {}, handle);
    QTest::mouseMove(&fader, handle + QPoint(0, 50));
    QTest::mouseRelease(&fader, Qt::RightButton, {}, handle + QPoint(0, 50));
    EXPECT_EQ(fader.value(), reached);
    fader.setValue(128);

    QTest::mousePress(&button, Qt::LeftButton);
    comes_up();
    EXPECT_FALSE(button.isDown());
    QTest::mouseMove(&button, {5, 5});
    QTest::mouseRelease(&button, Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(Order(), "0123");
  }
}

}  // namespace
}  // namespace pelmora
