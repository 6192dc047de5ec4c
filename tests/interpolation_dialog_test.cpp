// The dialog "Interpolation": its count, how it closes, and playback while it is open. What it
// makes of the list and what it locks is in tests/effects.txt.
#include "tests/window_fixture.h"

namespace pelmora {
namespace {

class Interpolate : public WindowTest {
 protected:
  QDialog& Dialog() const { return hands->Find<QDialog>("DialogInterp"); }
  void ExpectClosed() {
    EXPECT_TRUE(hands->WaitUntil([this] { return !form->findChild<QDialog*>("DialogInterp"); }));
  }
  void Open(int line) {
    Select(line);
    hands->Click("CommandInterpolate");
    ASSERT_TRUE(QTest::qWaitForWindowActive(&Dialog()));
    QApplication::setActiveWindow(&Dialog());  // the main window may have come up again behind it
  }
};

TEST_F(Interpolate, TheCountKeepsToItsRange) {
  AddStep(0, 128, 3000);
  AddStep(0, 148, 100);
  Open(0);
  auto& field = hands->Find<QWidget>("CWNumEditInterp");
  QTest::keyClicks(&field, "5");
  EXPECT_EQ(hands->Read("CWNumEditInterp"), "5") << "the first digit replaces what stood there";
  const std::tuple<const char*, const char*, const char*> typed[] = {
      {"0", "Tab", "5"},   {"100", "Tab", "100"}, {"101", "Tab", "10"}, {"-3", "Tab", "3"},
      {"7", "Tab", "7"},   {"", "Tab", "7"},      {"2.5", "Tab", "25"}, {"42", "Esc", "25"},
      {"7", "PgUp", "12"}, {"7", "Up", "8"}};
  for (const auto& [text, key, count] : typed) {
    hands->Type("CWNumEditInterp", text, false);
    hands->Keys(field, key);
    EXPECT_EQ(hands->Read("CWNumEditInterp"), count) << text;
  }
  hands->Type("CWNumEditInterp", "3");  // Enter is OK
  ExpectClosed();
  EXPECT_EQ(Lines().size(), 4);
}

TEST_F(Interpolate, SaysInFullThatAChoiceIsMissing) {
  AddSteps(3);
  Open(1);
  hands->Type("CWNumEditInterp", "3");
  const auto& missing = hands->Find<QLabel>("LabelMissingChoice");
  EXPECT_TRUE(missing.isVisible());
  EXPECT_GE(missing.width(), missing.sizeHint().width());
  EXPECT_TRUE(Dialog().rect().contains(missing.geometry()));
}

TEST_F(Interpolate, OpensOnceUntilItOrTheProgramIsClosed) {
  AddSteps(2);
  const std::function<void()> ways[] = {[this] { Dialog().close(); }, [this] { form->close(); }};
  for (const std::function<void()>& close : ways) {
    Open(0);
    hands->Click("CommandInterpolate");
    EXPECT_EQ(form->findChildren<QDialog*>("DialogInterp").size(), 1);
    EXPECT_TRUE(Dialog().isEnabled());
    EXPECT_FALSE(form->isEnabled());
    close();
    ExpectClosed();
    EXPECT_TRUE(form->isEnabled());
  }
  EXPECT_TRUE(main_loop.Ending());
}

TEST_F(Interpolate, PlaybackThatMovesTheSelectionIsTakenIntoAccount) {
  AddSteps(3);
  Connect();
  Select(0);
  hands->Click("CWButtonEmuPC");
  Open(0);
  for (int ticks = 0; ticks < 2; ++ticks) timer.Elapse();
  box.Expect("Note", "No step is selected that has a step after it!");
  hands->Click("OptionINterp_1");
  hands->Type("CWNumEditInterp", "2");
  EXPECT_EQ(Order(), "012");
  for (int ticks = 0; ticks < 2; ++ticks) timer.Elapse();
  hands->Click("OKButton");
  ExpectClosed();
  QStringList steps;
  for (const QString& line : Lines()) {
    steps.append(line.section(' ', 0, 0) + '/' + line.section('\t', 12, 12));
  }
  EXPECT_EQ(steps.join(' '), Local("0/100 ms 1/60 ms 1.5/60 ms 2/140 ms"));
  timer.Elapse();
  EXPECT_EQ(Selected(), 2);
  EXPECT_EQ(timer.Wait(), 60);
  EXPECT_FALSE(Enabled("CWButtonRealEmu")) << "unlocked with the window";
}

}  // namespace
}  // namespace pelmora
