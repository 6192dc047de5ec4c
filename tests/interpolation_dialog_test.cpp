// The dialog "Interpolation": what it offers, what it makes of the list, and the main window that
// is locked while it is open.
#include <QRadioButton>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

constexpr char kPrevious[] = "OptionINterp_0";
constexpr char kNext[] = "OptionINterp_1";
constexpr char kNeither[] = "";

class Interpolate : public WindowTest {
 protected:
  // Steps of channel 0 and a duration each: "128/100 148/20".
  void Compose(const QString& steps) {
    for (const QString& step : steps.split(' ')) {
      AddStep(0, step.section('/', 0, 0).toInt(), step.section('/', 1).toInt());
    }
  }
  // Angle of channel 0 and duration of each line: "0/20 2.5/40".
  QString Steps() const {
    QStringList steps;
    for (const QString& line : Lines()) {
      steps.append(line.section(' ', 0, 0) + '/' + line.section('\t', 12, 12).section(' ', 0, 0));
    }
    return steps.join(' ');
  }

  QDialog& Dialog() const { return hands->Find<QDialog>("DialogInterp"); }
  bool IsOpen() const { return form->findChild<QDialog*>("DialogInterp") != nullptr; }
  void ExpectLocked(bool locked) const {
    EXPECT_EQ(IsOpen(), locked);
    EXPECT_EQ(form->isEnabled(), !locked);
    for (const char* name : {"FrameBuffEdit", "FrameMan", "FramePCEmu", "ListSequence"}) {
      EXPECT_EQ(Enabled(name), !locked) << name;
    }
  }
  void Open(int line) {
    Select(line);
    hands->Click("CommandInterpolate");
    ASSERT_TRUE(QTest::qWaitForWindowActive(&Dialog()));
    QApplication::setActiveWindow(&Dialog());  // the main window may have come up again behind it
    ExpectLocked(true);
  }
  void Ask(const char* option, int count) {
    if (*option) hands->Click(option);
    hands->Type("CWNumEditInterp", QString::number(count), false);
    hands->Click("OKButton");
  }
  void ExpectClosed() {
    ASSERT_TRUE(hands->WaitUntil([this] { return !IsOpen(); }));
    ExpectLocked(false);
  }
  // OK shows this message, if any, changes nothing and leaves the dialog open.
  void ExpectRefusal(const char* option, int count, const QString& message) {
    const QStringList before = Lines();
    const int selected = Selected();
    if (!message.isEmpty()) box.Expect("Note", message);
    Ask(option, count);
    EXPECT_EQ(Lines(), before);
    EXPECT_EQ(Selected(), selected);
    ExpectLocked(true);
  }
};

TEST_F(Interpolate, SaysThatAChoiceIsMissing) {
  Compose("128/100 148/100 158/110");
  Open(1);
  auto& missing = hands->Find<QLabel>("LabelMissingChoice");
  Ask("", 3);
  EXPECT_TRUE(missing.isVisible());
  EXPECT_GE(missing.width(), missing.sizeHint().width());
  EXPECT_TRUE(Dialog().rect().contains(missing.geometry()));
  hands->Click(kNext);
  EXPECT_FALSE(missing.isVisible());
}

TEST_F(Interpolate, TheCountKeepsToItsRange) {
  Compose("128/3000 148/100");
  Open(0);
  const std::pair<const char*, const char*> typed[] = {
      {"0", "5"}, {"100", "100"}, {"101", "10"}, {"-3", "3"}, {"2.5", "25"}, {"7", "7"}, {"", "7"}};
  auto& field = hands->Find<QWidget>("CWNumEditInterp");
  QTest::keyClicks(&field, "5");
  EXPECT_EQ(hands->Read("CWNumEditInterp"), "5") << "the first digit replaces what stood there";
  for (const auto& [text, count] : typed) {
    hands->Type("CWNumEditInterp", text, false);
    QTest::keyClick(&field, Qt::Key_Tab);
    EXPECT_EQ(hands->Read("CWNumEditInterp"), count) << text;
  }
  hands->Type("CWNumEditInterp", "42", false);
  QTest::keyClick(&field, Qt::Key_Escape);
  EXPECT_EQ(hands->Read("CWNumEditInterp"), "7");
  EXPECT_TRUE(IsOpen());
  for (const auto key : {Qt::Key_PageUp, Qt::Key_Up}) QTest::keyClick(&field, key);
  EXPECT_EQ(hands->Read("CWNumEditInterp"), "13");
  hands->Type("CWNumEditInterp", "3");  // Enter is OK
  ExpectClosed();
  EXPECT_EQ(Lines().size(), 4);
}

TEST_F(Interpolate, LocksTheMainWindowUntilItCloses) {
  const std::function<void()> ways[] = {
      [this] { hands->Click("OKButton"); },
      [this] { Dialog().close(); },
      [this] { hands->Keys(hands->Find<QWidget>("CWNumEditInterp"), "Escape"); },
      [this] { QTest::keyClick(&Dialog(), Qt::Key_A, Qt::AltModifier); },
      [this] { form->close(); },  // the last: the program ends
  };
  Compose("128/100 148/100");
  const QStringList lines = Lines();
  for (const std::function<void()>& close : ways) {
    Open(0);
    EXPECT_TRUE(Dialog().isEnabled());
    for (const char* button : {"CommandAdd", "CommandInterpolate"}) hands->Click(button);
    hands->ClickLine("ListSequence", 1);
    QTest::keyClick(form.get(), Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(Lines(), lines);
    EXPECT_EQ(Selected(), 0);
    EXPECT_TRUE(files.requests.empty());
    EXPECT_EQ(form->findChildren<QDialog*>("DialogInterp").size(), 1);
    close();
    ExpectClosed();
  }
  EXPECT_TRUE(main_loop.Ending());
}

TEST_F(Interpolate, PlaybackThatMovesTheSelectionIsTakenIntoAccount) {
  Compose("128/100 148/100 158/100");
  Connect();
  Select(0);
  hands->Click("CWButtonEmuPC");
  Open(0);
  for (int ticks = 0; ticks < 2; ++ticks) timer.Elapse();
  ExpectRefusal(kNext, 2, "No step is selected that has a step after it!");
  for (int ticks = 0; ticks < 2; ++ticks) timer.Elapse();
  hands->Click("OKButton");
  ExpectClosed();
  EXPECT_EQ(Steps(), Local("0/100 10/60 12.5/40 15/100"));
  timer.Elapse();
  EXPECT_EQ(Selected(), 2);
  EXPECT_EQ(timer.Wait(), 40);
  EXPECT_FALSE(Enabled("CWButtonRealEmu")) << "unlocked with the window";
}

}  // namespace
}  // namespace pelmora
