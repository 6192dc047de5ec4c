// Composing steps: fields and sliders, the step list, the choice of the sequence. No port is open.
#include "platform/push_button.h"
#include "tests/window_fixture.h"

namespace pelmora {
namespace {

class StepFields : public WindowTest {};

TEST_F(StepFields, CommitClampsAndShowsOffsetAndAngle) {
  struct Case {
    const char* typed;
    const char* offset;
    const char* angle;
    const char* slider;
  };
  constexpr Case cases[] = {
      {"200", "127", "63.5 °", "255"},
      {"-300", "-128", "-64 °", "0"},
      {"5", "5", "2.5 °", "133"},
      {"", "0", "0 °", "128"},
      {"007", "7", "3.5 °", "135"},
      {"-", "7", "3.5 °", "135"},
      {"1-2", "7", "3.5 °", "135"},
      {"a b+4.x2", "42", "21 °", "170"},
      {"999999999999", "127", "63.5 °", "255"},
      {"-1", "-1", "-0.5 °", "127"},
      {"--1", "-1", "-0.5 °", "127"},
      {"99999999999999999999999999999999", "127", "63.5 °", "255"},
  };
  for (const Case& c : cases) {
    hands->Type("Text1_3", c.typed);
    EXPECT_EQ(hands->Read("Text1_3"), c.offset) << c.typed;
    EXPECT_EQ(hands->Read("Text1_15"), Local(c.angle)) << c.typed;
    EXPECT_EQ(hands->Read("CWSlide1_3"), c.slider) << c.typed;
  }
}

TEST_F(StepFields, LeavingAFieldCommitsBeforeTheButtonThatTakesTheFocusActs) {
  hands->Type("Text1_0", "10", false);
  hands->Click("CommandAdd");
  hands->Type("Text1_1", "-20", false);
  QTest::keyClick(&hands->Find<QWidget>("Text1_1"), Qt::Key_A, Qt::AltModifier);
  ASSERT_EQ(Lines().size(), 2);
  EXPECT_TRUE(Lines()[0].startsWith("5 °\t0 °\t"));
  EXPECT_TRUE(Lines()[1].startsWith("5 °\t-10 °\t"));
}

class StepList : public WindowTest {
 protected:
  // Steps told apart by channel 0: positions 128, 130, 132, ... read "0 °", "1 °", "2 °", ...
  void AddSteps(int count) {
    for (int i = 0; i < count; ++i) AddStep(0, 128 + 2 * i, 100 + 20 * i);
  }
  // Every line's number, as its first angle says.
  QString Order() const {
    QString order;
    for (const QString& line : Lines()) order += line.section(' ', 0, 0);
    return order;
  }
  void ExpectRowsMatchLines() const {
    for (int i = 0; i < Lines().size(); ++i) {
      EXPECT_EQ(Data().EditBuffer[static_cast<std::size_t>(i)][0],
                128 + 2 * QString(Order()[i]).toInt());
    }
  }
};

TEST_F(StepList, AddInsertsBehindTheSelectedLineAndStores) {
  AddSteps(3);
  EXPECT_EQ(Lines()[2], "2 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t140 ms");
  Select(0);
  AddStep(0, 138, 200);
  EXPECT_EQ(Order(), "0512");
  EXPECT_EQ(Selected(), 1);
  Select(-1);
  AddStep(0, 136, 200);
  EXPECT_EQ(Order(), "40512");
  EXPECT_EQ(Selected(), 0);
  EXPECT_EQ(hands->Read("LabelStep"), "Step N° 0");
  EXPECT_EQ(hands->Read("LabelByte"), "70 bytes");
  EXPECT_EQ(Data().SeqSteps[0], 5);
  EXPECT_EQ(Data().SeqTable[0].Position[1][0], 128);
  EXPECT_EQ(Data().SeqTable[0].Duration[2], 200);
  ExpectRowsMatchLines();
}

TEST_F(StepList, RemoveAndReplaceKeepTheSelectionInPlace) {
  AddSteps(5);
  hands->Click("CommandRem");  // the last
  EXPECT_EQ(Order(), "0123");
  EXPECT_EQ(Selected(), 3);
  Select(1);
  hands->Click("CommandRem");
  EXPECT_EQ(Order(), "023");
  EXPECT_EQ(Selected(), 1);
  hands->Type("Text1_0", "12");
  hands->Click("CommandReplace");
  EXPECT_EQ(Order(), "063");
  EXPECT_EQ(Selected(), 1);
  EXPECT_EQ(Data().SeqSteps[0], 3);
  ExpectRowsMatchLines();
  Select(-1);
  hands->Click("CommandReplace");
  hands->Click("CommandRem");
  EXPECT_EQ(Order(), "063");
  for (int i = 0; i < 3; ++i) {
    Select(0);
    hands->Click("CommandRem");
  }
  EXPECT_EQ(hands->Read("LabelStep"), "Step N° -1");
  EXPECT_EQ(hands->Read("LabelByte"), "0 bytes");
  hands->Click("CommandRem");
  EXPECT_TRUE(Lines().isEmpty());
}

TEST_F(StepList, FullListRefusesAnotherLine) {
  for (int i = 0; i < 256; ++i) hands->Click("CommandAdd");
  hands->Click("CommandBrk");
  const QStringList before = Lines();
  ExpectMessage("Impossible add other lines, max # of lines is 256!");
  hands->Click("CommandAdd");
  ExpectMessage("Impossible add other lines, max # of lines is 256!");
  hands->Click("CommandReplace");
  EXPECT_EQ(Lines(), before);
  EXPECT_EQ(hands->Read("LabelByte"), "3584 bytes");
}

TEST_F(StepList, ArrowsWrapRoundAndShow) {
  hands->Click("CommandUp");
  hands->Click("CommandDwn");
  AddSteps(3);
  hands->Click("CommandUp");
  EXPECT_EQ(Selected(), 0);
  EXPECT_EQ(hands->Read("Text1_0"), "0");
  hands->Click("CommandDwn");
  EXPECT_EQ(Selected(), 2);
  EXPECT_EQ(hands->Read("Text1_0"), "4");
  EXPECT_EQ(hands->Read("CWNumEditTimeStep"), "140 ms");
  Select(-1);
  hands->Click("CommandDwn");
  EXPECT_EQ(Selected(), -1);
  hands->Click("CommandUp");
  EXPECT_EQ(Selected(), 0);
}

TEST_F(StepList, DraggingMovesALineWithItsBreakpoint) {
  AddSteps(7);
  Select(1);
  hands->Click("CommandBrk");
  hands->DragLine("ListSequence", 1, 4);
  EXPECT_EQ(Order(), "0234156");
  EXPECT_EQ(Selected(), 4);
  EXPECT_TRUE(Lines()[4].endsWith("\tBREAK!"));
  EXPECT_EQ(Data().EditBuffer[4][13], 1);
  EXPECT_EQ(Data().EditBuffer[1][13], 0);
  ExpectRowsMatchLines();
  hands->DragLine("ListSequence", 4, 1);
  EXPECT_EQ(Order(), "0123456");
  EXPECT_EQ(Data().EditBuffer[1][13], 1);
  // The table catches up at the next store only.
  hands->DragLine("ListSequence", 0, 6);
  EXPECT_EQ(Data().SeqTable[0].Position[0][0], 128);
  EXPECT_EQ(Data().EditBuffer[0][0], 130);
}

class Navigation : public StepList {};

TEST_F(Navigation, StoresTheOutgoingSequenceAndListsTheIncomingOne) {
  AddSteps(3);
  Select(1);
  hands->Click("CommandBrk");
  hands->Click("CommandMoreSeq");
  EXPECT_EQ(Data().EditBuffer[1][13], 0);
  EXPECT_TRUE(Lines().isEmpty());
  EXPECT_EQ(hands->Read("LabelSeq"), "Sequence N° 1");
  EXPECT_EQ(hands->Read("LabelSeqEmu"), "Sequence N° 1");
  EXPECT_EQ(hands->Read("LabelStep"), "Step N° ...");
  AddStep(5, 0, 60);
  EXPECT_EQ(hands->Read("CommandOffset"), "OffSet Seq. 1");
  EXPECT_EQ(hands->Read("LabelOffset"), "42 bytes");
  hands->Click("CommandLessSeq");
  EXPECT_EQ(Order(), "012");
  EXPECT_EQ(Selected(), -1);
  EXPECT_EQ(Lines()[1], "1 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t120  ms\t");
  for (const EditRow& row : Data().EditBuffer) EXPECT_EQ(row[13], 0);
}

TEST_F(Navigation, WarnsEveryTimeTheCapacityIsExceeded) {
  // 6 x 256 + 182 = 1718 steps fit, one more does not.
  for (int sequence = 0; sequence < 6; ++sequence) {
    for (int i = 0; i < 256; ++i) hands->Find<platform::PushButton>("CommandAdd").click();
    hands->Click("CommandMoreSeq");
  }
  for (int i = 0; i < 182; ++i) hands->Find<platform::PushButton>("CommandAdd").click();
  EXPECT_EQ(hands->Read("LabelByte"), "24052 bytes");
  const QString warning = "Out of memory: too many steps. Max # of bytes is 24064!";
  ExpectMessage(warning);
  hands->Click("CommandAdd");
  EXPECT_EQ(hands->Read("LabelByte"), "24066 bytes");
  ExpectMessage(warning);
  hands->Click("CommandMoreSeq");
}

}  // namespace
}  // namespace pelmora
