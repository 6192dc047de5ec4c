// The operator's hands: keys that are held or pressed with others, the wheel, double clicks and
// presses that take the focus from an entry.
#include <QAccessible>
#include <QClipboard>
#include <QElapsedTimer>
#include <QMenuBar>
#include <QWheelEvent>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

class Hands : public WindowTest {
 protected:
  QWidget& Focus(const char* name) {
    auto& control = hands->Find<QWidget>(name);
    control.setFocus();
    return control;
  }
  // Controls get the focus in the active window only.
  bool Activate(QWidget& window) {
    window.activateWindow();
    return hands->WaitUntil([&] { return QApplication::activeWindow() == &window; });
  }
  static void Wheel(QWidget& control, double notches) {
    const QPointF place = control.rect().center();
    const QPoint angle(0, qRound(120 * notches));
    QWheelEvent wheel(place, control.mapToGlobal(place), {}, angle, {}, {}, {}, false);
    QApplication::sendEvent(&control, &wheel);
  }
};

TEST_F(Hands, WheelMovesWhatHasTheFocusOnly) {
  auto& fader = hands->Find<platform::CWSlide>("CWSlide1_3");
  auto& duration = hands->Find<QSpinBox>("CWNumEditTimeStep");
  Focus("CommandAdd");
  for (QWidget* control : {static_cast<QWidget*>(&fader), static_cast<QWidget*>(&duration)}) {
    Wheel(*control, 1);
    EXPECT_FALSE(control->hasFocus());
  }
  EXPECT_EQ(fader.value(), 128);
  EXPECT_EQ(duration.value(), 1000);
  fader.setFocus();
  Wheel(fader, 1);
  EXPECT_EQ(fader.value(), 129);
  Wheel(fader, -3);
  for (int i = 0; i < 5; ++i) Wheel(fader, -0.4);  // a fine wheel
  EXPECT_EQ(fader.value(), 124);
  hands->Type("CWNumEditTimeStep", "70");
  Wheel(duration, -5);
  EXPECT_EQ(duration.value(), 20);
}

TEST_F(Hands, PressThatCommitsAnOffsetGrabsTheHandleThatItMoves) {
  hands->Type("Text1_3", "60", false);
  auto& fader = hands->Find<platform::CWSlide>("CWSlide1_3");
  // The centre lies half-way between the caption and the lower end.
  const QPoint handle(fader.width() / 2, (fader.fontMetrics().height() + fader.height()) / 2);
  QTest::mousePress(&fader, Qt::LeftButton, {}, handle);
  EXPECT_EQ(fader.value(), 188);
  EXPECT_TRUE(fader.isSliderDown());
  EXPECT_TRUE(fader.hasFocus());
  QTest::mouseMove(&fader, handle - QPoint(0, 20));
  QTest::mouseRelease(&fader, Qt::LeftButton, {}, handle - QPoint(0, 20));
  EXPECT_NEAR(fader.value(), 188 + 21, 2);
}

TEST_F(Hands, DurationTakesSeparatorsRoundsAndStopsAtItsBounds) {
  auto& duration = hands->Find<QSpinBox>("CWNumEditTimeStep");
  const auto shown = [&](const QString& typed, const char* keys) {
    hands->Type("CWNumEditTimeStep", "70");
    hands->Type("CWNumEditTimeStep", typed, false);
    hands->Keys(duration, keys);
    return duration.text();
  };
  const std::tuple<QString, const char*, const char*> cases[] = {
      {"1 000", "Return", "1000 ms"},   {" 4 0 ", "Return", "40 ms"},
      {"1000.6", "Return", "1001 ms"},  {"1000.5", "Return", "1000 ms"},
      {"1001.50", "Return", "1002 ms"}, {"1200.", "Return", "1200 ms"},
      {"-50x.0", "Return", "50 ms"},    {".6", "Return", "20 ms"},
      {"30", "Down", "20 ms"},          {"150", "PgDown", "20 ms"},
      {"32760", "Up", "32767 ms"},      {"32600", "PgUp", "32767 ms"},
      {"1000", "Up", "1020 ms"},        {"1000", "PgUp", "1200 ms"},
      {"19", "Return", "20 ms"},        {"40000", "Return", "32767 ms"},
      {"70", "Return Space", "70 ms"},  {QString(400, '9'), "Return", "32767 ms"},
  };
  for (const auto& [typed, keys, text] : cases) {
    EXPECT_EQ(shown(QString(typed).replace('.', QLocale().decimalPoint()), keys), text)
        << typed.toStdString();
  }
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  EXPECT_EQ(shown("40,6", "Return"), "41 ms");
  EXPECT_EQ(shown("1.000", "Return"), "1000 ms") << "a thousand";
  for (const auto& [pasted, text] :
       {std::pair{" 1\u00A0000\u202F", "1000 ms"}, {"1.000", "70 ms"}}) {
    QGuiApplication::clipboard()->setText(QString::fromUtf8(pasted));
    EXPECT_EQ(shown("70", "Return Ctrl+V Return"), text) << pasted;
  }
  QLocale::setDefault(QLocale::c());
}

TEST_F(Hands, WhateverIsUsedNextCommitsTheEntryFirst) {
  constexpr char kNext[] = "CWButtonMainOnOff";
  QWidget other;
  const auto from_the_menu_bar = [&] {
    form->menuBar()->setFocus(Qt::MenuBarFocusReason);
    hands->Click(kNext);
  };
  const auto from_another_window = [&] {
    other.show();
    ASSERT_TRUE(Activate(other));
    hands->Click(kNext);
    other.hide();
    ASSERT_TRUE(Activate(*form));
  };
  const auto spoken = [&] {  // as assistive technology does
    auto* button = QAccessible::queryAccessibleInterface(&hands->Find<QWidget>(kNext));
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  };
  Connect();
  const std::function<void()> ways[] = {from_the_menu_bar, from_another_window, spoken};
  for (std::uint8_t switched = 1; const auto& use : ways) {
    hands->Type("Text1_11", QString::number(50 + switched), false);
    use();
    EXPECT_TRUE(hands->WaitUntil([&] { return !hands->Find<QPushButton>(kNext).isDown(); }));
    ExpectSent({43, static_cast<std::uint8_t>(178 + switched), switched});
    switched = 1 - switched;
  }
}

TEST_F(Hands, CaretStaysBeforeTheUnit) {
  auto& duration = hands->Find<QSpinBox>("CWNumEditTimeStep");
  QWidget* edit = duration.findChild<QLineEdit*>();
  QTest::mouseClick(edit, Qt::LeftButton, {}, QPoint(edit->width() - 4, edit->height() / 2));
  hands->Keys(duration, "5 End 6 Return");
  EXPECT_EQ(duration.text(), "32767 ms") << "a digit was refused";
}

// A key held on a busy machine: release and press of each repetition bear the same time, but come
// apart and look like any others.
void HoldApart(QWidget& control, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  static quint64 time = 1;
  const QString text = key == Qt::Key_Space ? " " : key == Qt::Key_Return ? "\r" : "";
  for (int i = 0; i < 6; ++i) {
    const bool shortcut = qt_sendShortcutOverrideEvent(&control, time, key, modifiers, text);
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(type, key, modifiers, text);
      if (type == QEvent::KeyRelease) time += 30;
      event.setTimestamp(time);
      if (type == QEvent::KeyRelease || !shortcut) QApplication::sendEvent(&control, &event);
    }
  }
  time += 1000;
}

TEST_F(Hands, HeldKeyPressesOnce) {
  Connect();
  const std::tuple<const char*, Qt::Key, Qt::KeyboardModifiers> cases[] = {
      {"CommandRem", Qt::Key_Return, {}},         {"CommandRem", Qt::Key_Space, {}},
      {"CommandRem", Qt::Key_R, Qt::AltModifier}, {"CWButtonMainOnOff", Qt::Key_Return, {}},
      {"CWButtonMainOnOff", Qt::Key_Space, {}},   {"CWButtonMainOnOff", Qt::Key_O, Qt::AltModifier},
  };
  for (const auto& [button, key, modifiers] : cases) {
    for (const bool apart : {false, true}) {
      SCOPED_TRACE(testing::Message() << button << ' ' << key << ' ' << apart);
      while (Lines().size() < 10) Press("CommandAdd");
      (apart ? HoldApart : Operator::Hold)(Focus(button), key, modifiers);
      const bool on = hands->Read("CWButtonMainOnOff") == "On";
      EXPECT_EQ(Lines().size(), on ? 10 : 9);
      if (on) Press("CWButtonMainOnOff");
      ExpectSent(on ? Bytes{1, 0} : Bytes{});
    }
  }
  // What may be repeated is repeated, and two presses of one key are two.
  HoldApart(Focus("CWSlide1_0"), Qt::Key_Up);
  EXPECT_EQ(hands->Read("CWSlide1_0"), "134");
  for (int i = 0; i < 2; ++i) hands->Keys(Focus("CommandRem"), "Space");
  EXPECT_EQ(Lines().size(), 8);
  Operator::Hold(Focus("CommandAdd"), Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(files.requests.size(), 1U);
}

TEST_F(Hands, DoubleClickOnAFlashButtonIsOnePress) {
  Connect();
  hands->ChooseMenu("FreshProg");
  ExpectMessage("Data Flash Erased");
  const auto double_click = [](QWidget& button) {
    QTest::mouseClick(&button, Qt::LeftButton);
    QTest::mouseDClick(&button, Qt::LeftButton);
    QTest::mouseRelease(&button, Qt::LeftButton);
  };
  double_click(hands->Find<QWidget>("CommandErase"));
  ExpectSent({7});
  // Other buttons take a quick second press.
  for (int i = 0; i < 3; ++i) hands->Click("CommandAdd");
  double_click(hands->Find<QWidget>("CommandRem"));
  EXPECT_EQ(Lines().size(), 1);
}

// A key that is pressed next must do nothing that was not meant.
TEST_F(Hands, FocusOfAControlThatGoesComesToTheList) {
  EXPECT_EQ(form->focusWidget(), &List()) << "at the start";
  QWidget other;
  const auto behind_another_window = [&] {
    other.show();
    ASSERT_TRUE(Activate(other));
    Trigger("FreshProg");
    ASSERT_TRUE(Activate(*form));
  };
  const auto by_the_menu = [this] { hands->ChooseMenu("FreshProg"); };
  for (const auto& goes : {std::function<void()>(behind_another_window), {by_the_menu}}) {
    Trigger("FreshProg");
    ASSERT_TRUE(Focus("CommandErase").hasFocus());
    goes();
    EXPECT_TRUE(List().hasFocus());
  }
}

TEST_F(Hands, InterpolationDialogByKeyboard) {
  AddSteps(3);
  Select(1);
  QTest::keyPress(&Focus("CommandInterpolate"), Qt::Key_Return);
  auto& dialog = hands->Find<QDialog>("DialogInterp");
  ASSERT_TRUE(Activate(dialog));
  QTest::simulateEvent(dialog.focusWidget(), true, Qt::Key_Return, {}, "\r", true);
  EXPECT_TRUE(dialog.isVisible()) << "the held key that opened it presses nothing in it";
  // The options are one stop each, also once one is chosen.
  for (const char* option : {"OptionINterp_0", "OptionINterp_1"}) {
    EXPECT_EQ(TabStops(*dialog.focusWidget()),
              "CWNumEditInterp OKButton CancelButton OptionINterp_0 OptionINterp_1")
        << option;
    hands->Click(option);
    Focus("CWNumEditInterp");
  }
}

// With the message boxes and file dialogs of the program itself. Keys and clicks go through the
// windows, as the window system gives them: a modal dialog keeps them from the others there.
class HandsOnMessages : public Hands {
 protected:
  HandsOnMessages() {
    Restart({.message_boxes = true, .file_dialogs = true});
    EXPECT_TRUE(Activate(*form));
  }
  ~HandsOnMessages() override { form->close(); }  // nobody answers a message that comes then

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
class EndBehind : public HandsOnMessages,
                  public testing::WithParamInterface<std::tuple<const char*, bool>> {};

TEST_P(EndBehind, SendsTheStopByte) {
  const QString opener = std::get<0>(GetParam());
  const bool by_key = std::get<1>(GetParam());
  AddSteps(2);
  Connect();
  Sent(0);
  const auto end = [&](QDialog& dialog) {
    by_key ? WindowKeys(dialog, "Ctrl+Q") : void(form->close());
  };
  if (opener == "SaveBuffer") {
    InDialog(end);
    Trigger(opener);
  } else if (opener == "CommandErase") {
    InDialog(end);
    hands->Click(opener);
  } else {
    Press("CommandInterpolate");
    auto& dialog = hands->Find<QDialog>("DialogInterp");
    ASSERT_TRUE(Activate(dialog));
    if (opener == "OKButton") {
      InDialog(end);
      hands->Type("CWNumEditInterp", "100");
    } else {
      end(dialog);
    }
  }
  EXPECT_TRUE(main_loop.Ending());
  Press("CommandErase");  // no message comes any more, nor a dialog
  Trigger("SaveBuffer");
  Bytes sent = by_key ? Bytes{0} : Bytes{0, 0};
  if (opener == "CommandErase") sent.insert(sent.begin(), 7);
  ExpectSent(sent);
}

INSTANTIATE_TEST_SUITE_P(HandsOnMessages, EndBehind,
                         testing::Combine(testing::Values("CommandErase", "SaveBuffer",
                                                          "CommandInterpolate", "OKButton"),
                                          testing::Bool()));

TEST_F(HandsOnMessages, KeepTheKeyboardAndWhatIsBehindGetsNothing) {
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

TEST_F(HandsOnMessages, ThatComeByThemselvesAreNotAnsweredByWhatIsTyped) {
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

TEST_F(HandsOnMessages, ThatComeWhileAMenuIsOpenCloseIt) {
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

TEST_F(HandsOnMessages, GiveUpWhatThePointerIsDoing) {
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
    auto& open = hands->Find<QDialog>("DialogInterp");
    open.close();
    QCoreApplication::sendPostedEvents(&open, QEvent::DeferredDelete);
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
