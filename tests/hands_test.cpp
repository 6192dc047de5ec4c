// The operator's hands: keys that are held or pressed with others, the wheel, double clicks and
// presses that take the focus from an entry.
#include <QAccessible>
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

TEST_F(Hands, KeysHeldWithALetterLeaveTheEntryAlone) {
  hands->Type("Text1_3", "4", false);
  auto& field = hands->Find<QWidget>("Text1_3");
  for (const QString chord : {"Alt+", "Meta+", "Ctrl+Alt+", "Alt+Shift+"}) {
    for (const char* letter : {"Z", "7", "Space", "."}) hands->Keys(field, chord + letter);
  }
  EXPECT_EQ(hands->Read("Text1_3"), "4");
  hands->Keys(field, "2 Return");
  EXPECT_EQ(hands->Read("CWSlide1_3"), "170");
  hands->Keys(field, "- 7 Return");  // Enter has selected the text
  EXPECT_EQ(hands->Read("CWSlide1_3"), "121");
}

TEST_F(Hands, WheelMovesTheFaderThatHasTheFocusOnly) {
  auto& fader = hands->Find<platform::CWSlide>("CWSlide1_3");
  Focus("CommandAdd");
  Wheel(fader, 1);
  Wheel(hands->Find<QWidget>("CWNumEditTimeStep"), 1);
  EXPECT_EQ(fader.value(), 128);
  EXPECT_EQ(hands->Read("CWNumEditTimeStep"), "1000 ms");
  EXPECT_FALSE(fader.hasFocus());
  fader.setFocus();
  Wheel(fader, 1);
  EXPECT_EQ(fader.value(), 129);
  Wheel(fader, -3);
  EXPECT_EQ(fader.value(), 126);
  for (int i = 0; i < 5; ++i) Wheel(fader, -0.4);
  EXPECT_EQ(fader.value(), 124) << "a fine wheel";
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
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"1000.6", "Return", "1001 ms"},  {"1000.5", "Return", "1000 ms"},
      {"1001.50", "Return", "1002 ms"}, {"1200.", "Return", "1200 ms"},
      {"-50x.0", "Return", "50 ms"},    {".6", "Return", "20 ms"},
      {"30", "Down", "20 ms"},          {"150", "PgDown", "20 ms"},
      {"32760", "Up", "32767 ms"},      {"32600", "PgUp", "32767 ms"},
      {"1000", "Up", "1020 ms"},        {"1000", "PgUp", "1200 ms"},
      {"19", "Return", "20 ms"},        {"40000", "Return", "32767 ms"},
  };
  auto& duration = hands->Find<QSpinBox>("CWNumEditTimeStep");
  for (const auto& [typed, key, shown] : cases) {
    hands->Type("CWNumEditTimeStep", typed, false);
    hands->Keys(duration, key);
    EXPECT_EQ(duration.text(), shown) << typed;
  }
  hands->Type("CWNumEditTimeStep", "70");
  hands->Type("CWNumEditTimeStep", QString("9").repeated(400));
  EXPECT_EQ(duration.text(), "32767 ms");
  hands->Type("CWNumEditTimeStep", "70");
  Wheel(duration, -5);
  EXPECT_EQ(duration.text(), "20 ms");

  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  hands->Type("CWNumEditTimeStep", "40,6");
  EXPECT_EQ(duration.text(), "41 ms");
  hands->Type("CWNumEditTimeStep", "40.6");
  EXPECT_EQ(duration.text(), "41 ms");
  QLocale::setDefault(QLocale::c());
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

TEST_F(Hands, EchoShowsTheLastByteAndIsEmptiedByAClickOrBySpace) {
  Trigger("Serial");
  Connect();
  QStringList seen;
  QObject::connect(&hands->Find<QLineEdit>("Echo"), &QLineEdit::textChanged, form.get(),
                   [&](const QString& text) { seen.append(text); });
  for (const bool clicked : {true, false}) {
    board.Send({1, 2, 255, 65});
    ASSERT_TRUE(hands->WaitUntil([this] { return hands->Read("Echo") == "65"; }));
    if (clicked) hands->Click("Echo");
  }
  EXPECT_EQ(seen.join(' '), "1 2 255 65  1 2 255 65");
  hands->Keys(Focus("CWButtonMainOnOff"), "Tab");
  auto& echo = hands->Find<QWidget>("Echo");
  EXPECT_TRUE(echo.hasFocus());
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&echo);
  EXPECT_EQ(spoken->text(QAccessible::Name), "Last received");
  EXPECT_EQ(spoken->text(QAccessible::Value), "65");
  QTest::keyClick(&echo, Qt::Key_Space);
  EXPECT_EQ(hands->Read("Echo"), "");
}

// A key that is pressed next must do nothing that was not meant.
TEST_F(Hands, FocusOfAControlThatGoesComesToTheList) {
  EXPECT_EQ(form->focusWidget(), &List()) << "at the start";
  Trigger("FreshProg");
  Trigger("Serial");
  board.SetFaults({.silent = true});
  const auto abort_a_read = [this] {
    hands->When([this] { return Enabled("Command1"); },
                [this] { hands->Keys(Focus("Command1"), "Return"); });
    ExpectMessage("Reading Error!");
    Press("CommandRead");
  };
  const std::tuple<const char*, const char*, std::function<void()>> cases[] = {
      {"port chosen", "ComboPort", [this] { Connect(); }},
      {"transfer aborted", "CommandRead", abort_a_read},
      {"panel hidden", "CommandErase", [this] { Trigger("FreshProg"); }},
      {"panels hidden by the menu", "CommandInBuff", [this] { hands->ChooseMenu("Serial"); }},
      {"panel hidden behind another window", "CommandErase",
       [this] {
         QWidget other;
         other.show();
         ASSERT_TRUE(Activate(other));
         Trigger("FreshProg");
         ASSERT_TRUE(Activate(*form));
       }},
      {"dialog closed", "CommandInterpolate",
       [this] {
         for (int i = 0; i < 2; ++i) Press("CommandAdd");
         Press("CommandInterpolate");
         hands->Keys(hands->Find<QDialog>("DialogInterp"), "Escape");
         ASSERT_TRUE(Activate(*form));
       }},
  };
  for (const auto& [name, control, goes] : cases) {
    if (control == QString("CommandErase") && !hands->Find<QWidget>(control).isVisible()) {
      Trigger("FreshProg");
    }
    ASSERT_TRUE(Focus(control).hasFocus()) << name;
    goes();
    const QWidget* focus = QApplication::focusWidget();
    EXPECT_EQ(focus ? focus->objectName() : "", "ListSequence") << name;
  }
}

TEST_F(Hands, InterpolationDialogByKeyboard) {
  for (int i = 0; i < 3; ++i) Press("CommandAdd");
  Select(1);
  QTest::keyPress(&Focus("CommandInterpolate"), Qt::Key_Return);
  auto& dialog = hands->Find<QDialog>("DialogInterp");
  ASSERT_TRUE(Activate(dialog));
  QTest::simulateEvent(dialog.focusWidget(), true, Qt::Key_Return, {}, "\r", true);
  EXPECT_TRUE(dialog.isVisible()) << "the held key that opened it presses nothing in it";
  const QStringList stops = {"OKButton", "CancelButton", "OptionINterp_0", "OptionINterp_1",
                             "CWNumEditInterp"};
  // Also once an option is chosen.
  for (const char* option : {"", "OptionINterp_0", "OptionINterp_1"}) {
    if (*option) hands->Click(option);
    Focus("OKButton");
    for (const QString& stop : stops) {
      EXPECT_EQ(dialog.focusWidget()->objectName(), stop) << option;
      QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(dialog.focusWidget()->objectName(), "OKButton");
  }
  auto& label = *dialog.findChild<QLabel*>("Label1");
  EXPECT_GE(label.width(), label.sizeHint().width());
}

// With the message boxes of the program itself.
class HandsOnMessages : public Hands {
 protected:
  HandsOnMessages() {
    Restart({.message_boxes = true});
    EXPECT_TRUE(Activate(*form));
  }
  // Does `work` in the message box that opens next.
  void InBox(std::function<void(QMessageBox&)> work) {
    hands->When([this] { return form->findChild<QMessageBox*>() != nullptr; },
                [this, work = std::move(work)] {
                  auto* message = form->findChild<QMessageBox*>();
                  ASSERT_TRUE(Activate(*message));
                  work(*message);
                });
  }
};

TEST_F(HandsOnMessages, CtrlQEndsTheProgram) {
  Connect();
  InBox([](QMessageBox& message) {
    EXPECT_EQ(message.text(), "Data Flash Erased");
    EXPECT_EQ(message.textFormat(), Qt::PlainText);
    EXPECT_EQ(message.icon(), QMessageBox::Information);
    EXPECT_EQ(message.standardButtons(), QMessageBox::Ok);
    // The window gets no input meanwhile, but the toolkit would let it be closed.
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    QTest::keyClick(&message, Qt::Key_Q, Qt::ControlModifier);
  });
  hands->Find<QPushButton>("CommandErase").click();
  EXPECT_TRUE(events.Ending());
  Press("CommandErase");  // no message comes any more
  ExpectSent({7, 0});
}

TEST_F(HandsOnMessages, KeysAndClicksDoNotReachTheWindowBehind) {
  for (int i = 0; i < 3; ++i) Press("CommandAdd");
  const QStringList lines = Lines();
  InBox([&](QMessageBox& message) {
    hands->Keys(List(), "Up");
    hands->Keys(hands->Find<QWidget>("CWSlide1_0"), "Up");
    hands->Keys(*form, "Alt+A Alt+R Alt+Right Ctrl+S Ctrl+L");
    hands->Click("CommandAdd");
    hands->ClickLine("ListSequence", 0);
    EXPECT_TRUE(message.isVisible());
    QTest::keyClick(&message, Qt::Key_Return);
  });
  hands->Click("CWButtonMainOnOff");
  EXPECT_EQ(Lines(), lines);
  EXPECT_EQ(Selected(), 2);
  EXPECT_EQ(hands->Read("CWSlide1_0"), "128");
  EXPECT_TRUE(files.requests.empty());
}

TEST_F(HandsOnMessages, HeldKeyDoesNotCloseTheMessageUnread) {
  InBox([](QMessageBox& message) {
    QWidget* button = message.button(QMessageBox::Ok);
    QTest::simulateEvent(button, true, Qt::Key_Return, {}, "\r", true);
    EXPECT_TRUE(message.isVisible());
    QTest::keyClick(button, Qt::Key_Return);
    EXPECT_FALSE(message.isVisible());
  });
  hands->Click("CWButtonMainOnOff");
}

}  // namespace
}  // namespace pelmora
