// The dialog "Interpolation": what it offers, what it makes of the list, and the main window that
// is locked while it is open.
#include <QRadioButton>

#include "platform/push_button.h"
#include "tests/window_fixture.h"

namespace pelmora {
namespace {

constexpr char kPrevious[] = "OptionINterp_0";
constexpr char kNext[] = "OptionINterp_1";

class Interpolate : public WindowTest {
 protected:
  // Steps of channel 0 and a duration each: "128/100 148/20".
  void Compose(const QString& steps) {
    for (const QString& step : steps.split(' ')) {
      AddStep(0, step.section('/', 0, 0).toInt(), step.section('/', 1).toInt());
    }
  }

  void Open(int line) {
    Select(line);
    hands->Click("CommandInterpolate");
    ASSERT_TRUE(hands->WaitUntil([this] { return IsOpen(); }));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&hands->Find<QDialog>("DialogInterp")));
    ASSERT_TRUE(QTest::qWaitForWindowActive(&hands->Find<QDialog>("DialogInterp")));
  }
  bool IsOpen() const { return form->findChild<QDialog*>("DialogInterp") != nullptr; }
  bool Closes() {
    return hands->WaitUntil([this] { return !IsOpen(); });
  }

  void Ask(const char* option, int count) {
    hands->Click(option);
    hands->Type("CWNumEditInterp", QString::number(count), false);
    hands->Click("OKButton");
  }

  // Angle of channel 0 and duration of each line: "0/20 2.5/40".
  QString Steps() const {
    QStringList steps;
    for (const QString& line : Lines()) {
      const QStringList fields = line.split('\t');
      steps.append(fields[0].section(' ', 0, 0) + '/' + fields[12].section(' ', 0, 0));
    }
    return steps.join(' ');
  }

  void ExpectLocked(bool locked) const {
    for (const char* name : {"FrameBuffEdit", "FrameMan", "FramePCEmu", "ListSequence"}) {
      EXPECT_EQ(Enabled(name), !locked) << name;
    }
    EXPECT_EQ(form->isEnabled(), !locked);
  }
};

TEST_F(Interpolate, WorkedCases) {
  struct Case {
    const char* steps;
    int line;
    const char* option;
    int count;
    const char* result;
    int selected;
  };
  constexpr Case cases[] = {
      {"128/100 148/5000", 0, kNext, 4, "0/20 2.5/40 5/20 7.5/20 10/5000", 0},
      {"128/100 148/5000", 1, kPrevious, 4, "0/20 2.5/40 5/20 7.5/20 10/5000", 0},
      {"0/100 128/80 0/120", 1, kNext, 2, "-64/100 0/40 -32/40 -64/120", 1},
      {"0/100 128/80 0/120", 1, kPrevious, 2, "-64/60 -32/40 0/80 -64/120", 0},
      {"0/100 128/80 0/120", 2, kPrevious, 2, "-64/100 0/40 -32/40 -64/120", 1},
      {"0/100 128/80 0/120", 1, kNext, 1, "-64/100 0/80 -64/120", 1},
  };
  for (const Case& c : cases) {
    hands->Click("CommandClearAll");
    Compose(c.steps);
    Open(c.line);
    const QString before = hands->Read("LabelStep");
    Ask(c.option, c.count);
    ASSERT_TRUE(Closes());
    EXPECT_EQ(Steps(), Local(c.result)) << c.steps;
    EXPECT_EQ(Selected(), c.selected) << c.steps;
    const QString label = c.count > 1 ? QString("Step N° %1").arg(c.selected) : before;
    EXPECT_EQ(hands->Read("LabelStep"), label) << c.steps;
  }
}

TEST_F(Interpolate, BreakpointsStayWithTheirLinesAndNothingIsStored) {
  Compose("128/100 148/200 128/300 148/300");
  for (const int line : {1, 3}) {
    Select(line);
    hands->Click("CommandBrk");
  }
  Open(1);
  Ask(kNext, 3);
  ASSERT_TRUE(Closes());
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(Data().EditBuffer[static_cast<std::size_t>(i)][kBreakColumn], i == 5 ? 1 : 0);
  }
  EXPECT_EQ(Lines().filter("BREAK!"), QStringList{Lines()[5]});
  EXPECT_EQ(Data().SeqSteps[0], 4);
  hands->Click("CommandMoreSeq");
  EXPECT_EQ(Data().SeqSteps[0], 6);
}

TEST_F(Interpolate, OffersTheNeighboursThatThereAre) {
  struct Case {
    int line;
    bool previous, next;  // enabled
    int chosen;           // option, -1 for none
  };
  Compose("128/100 148/100 158/100");
  for (const Case& c : {Case{0, false, true, 1}, {1, true, true, -1}, {2, true, false, 0}}) {
    Open(c.line);
    EXPECT_EQ(Enabled(kPrevious), c.previous);
    EXPECT_EQ(Enabled(kNext), c.next);
    EXPECT_EQ(hands->Find<QRadioButton>(kPrevious).isChecked(), c.chosen == 0);
    EXPECT_EQ(hands->Find<QRadioButton>(kNext).isChecked(), c.chosen == 1);
    EXPECT_EQ(hands->Read("CWNumEditInterp"), "1");
    hands->Click("CancelButton");
    ASSERT_TRUE(Closes());
  }
}

TEST_F(Interpolate, RefusalsChangeNothingAndLeaveTheDialogOpen) {
  Compose("128/100 148/100 158/110");
  const QStringList before = Lines();
  Open(1);
  hands->Type("CWNumEditInterp", "3", false);
  hands->Click("OKButton");  // no option is chosen
  const auto refused = [&] {
    EXPECT_EQ(Lines(), before);
    EXPECT_EQ(Selected(), 1);
    EXPECT_TRUE(IsOpen());
    ExpectLocked(true);
    EXPECT_EQ(box.Outstanding(), 0U);
  };
  refused();
  for (const char* option : {kNext, kPrevious}) {
    box.Expect("Note", "Number of Steps too high for selected Step Time!");
    Ask(option, 6);
    refused();
  }
  Ask(kPrevious, 5);
  ASSERT_TRUE(Closes());
  EXPECT_EQ(Lines().size(), 7);
}

TEST_F(Interpolate, NeverMakesMoreLinesThanASequenceHolds) {
  hands->Type("CWNumEditTimeStep", "3000");
  for (int i = 0; i < 200; ++i) hands->Find<platform::PushButton>("CommandAdd").click();
  const QStringList before = Lines();
  Open(150);
  for (const char* option : {kPrevious, kNext}) {
    box.Expect("Note", "Impossible add other lines, max # of lines is 256!");
    Ask(option, 58);
    EXPECT_EQ(Lines(), before);
    EXPECT_EQ(Selected(), 150);
  }
  Ask(kPrevious, 57);
  ASSERT_TRUE(Closes());
  EXPECT_EQ(Lines().size(), 256);
  EXPECT_EQ(Selected(), 149);
}

TEST_F(Interpolate, TheCountKeepsToItsRange) {
  Compose("128/3000 148/100");
  Open(0);
  struct Case {
    const char* typed;
    const char* count;
  };
  for (const Case& c : {Case{"0", "1"},
                        {"100", "100"},
                        {"101", "10"},
                        {"-3", "3"},
                        {"2.5", "25"},
                        {"7", "7"},
                        {"", "7"}}) {
    hands->Type("CWNumEditInterp", c.typed, false);
    QTest::keyClick(&hands->Find<QWidget>("CWNumEditInterp"), Qt::Key_Tab);
    EXPECT_EQ(hands->Read("CWNumEditInterp"), c.count) << c.typed;
  }
  QTest::keyClick(&hands->Find<QWidget>("CWNumEditInterp"), Qt::Key_PageUp);
  QTest::keyClick(&hands->Find<QWidget>("CWNumEditInterp"), Qt::Key_Up);
  EXPECT_EQ(hands->Read("CWNumEditInterp"), "13");
  hands->Type("CWNumEditInterp", "3");  // Enter is OK
  ASSERT_TRUE(Closes());
  EXPECT_EQ(Lines().size(), 4);
}

TEST_F(Interpolate, LocksTheMainWindowUntilItCloses) {
  const std::function<void()> ways[] = {
      [this] { hands->Click("OKButton"); },
      [this] { Ask(kNext, 2); },
      [this] { hands->Click("CancelButton"); },
      [this] { hands->Find<QDialog>("DialogInterp").close(); },
      [this] { QTest::keyClick(&hands->Find<QDialog>("DialogInterp"), Qt::Key_Escape); },
      [this] {
        QTest::keyClick(&hands->Find<QDialog>("DialogInterp"), Qt::Key_A, Qt::AltModifier);
      },
      [this] { form->close(); },  // the last: the program ends
  };
  Compose("128/100 148/100");
  for (const std::function<void()>& close : ways) {
    Open(0);
    ExpectLocked(true);
    EXPECT_TRUE(hands->Find<QDialog>("DialogInterp").isEnabled());
    const QStringList lines = Lines();
    hands->Click("CommandAdd");
    hands->Click("CommandInterpolate");
    hands->ClickLine("ListSequence", 1);
    QTest::keyClick(form.get(), Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(Lines(), lines);
    EXPECT_EQ(Selected(), 0);
    EXPECT_TRUE(files.requests.empty());
    EXPECT_EQ(form->findChildren<QDialog*>("DialogInterp").size(), 1);
    close();
    EXPECT_TRUE(Closes());
    ExpectLocked(false);
  }
  EXPECT_TRUE(events.Ending());
}

TEST_F(Interpolate, PlaybackThatMovesTheSelectionIsTakenIntoAccount) {
  Compose("128/100 148/100 158/100");
  Connect();
  Select(0);
  hands->Click("CWButtonEmuPC");
  Open(0);
  timer.Elapse();
  timer.Elapse();
  EXPECT_EQ(Selected(), 2);
  box.Expect("Note", "No step is selected that has a step after it!");
  Ask(kNext, 2);
  EXPECT_EQ(Lines().size(), 3);
  timer.Elapse();
  timer.Elapse();
  hands->Click("OKButton");
  ASSERT_TRUE(Closes());
  EXPECT_EQ(Steps(), Local("0/100 10/60 12.5/40 15/100"));
  EXPECT_EQ(Selected(), 1);
  timer.Elapse();
  EXPECT_EQ(Selected(), 2);
  EXPECT_EQ(timer.Wait(), 40);
  EXPECT_EQ(hands->Read("CWButtonEmuPC"), "On");
  EXPECT_FALSE(Enabled("CWButtonRealEmu"));
}

}  // namespace
}  // namespace pelmora
