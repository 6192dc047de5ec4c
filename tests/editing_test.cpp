// Composing steps: fields and sliders, the step list, the choice of the sequence. No port is open.
#include "tests/window_fixture.h"

namespace pelmora {
namespace {

using StepFields = WindowTest;
using StepList = WindowTest;

TEST_F(StepFields, CommitClampsAndShowsOffsetAndAngle) {
  // clang-format off
  const std::tuple<QString, const char*, const char*, const char*> cases[] = {
      {QString(330, '9'), "127", "63.5 °", "255"}, {"-" + QString(330, '9'), "-128", "-64 °", "0"},
      {QString(330, '0') + "5", "5", "2.5 °", "133"},
      {"200", "127", "63.5 °", "255"},           {"-300", "-128", "-64 °", "0"},
      {"", "0", "0 °", "128"},
      {"5", "5", "2.5 °", "133"},                {"-1", "-1", "-0.5 °", "127"},
      {"007", "7", "3.5 °", "135"},              {"-", "7", "3.5 °", "135"},
      {"1-2", "7", "3.5 °", "135"},              {"a b+4.x2", "42", "21 °", "170"}};
  // clang-format on
  for (const auto& [typed, offset, angle, slider] : cases) {
    hands->Type("Text1_3", typed);
    EXPECT_EQ(hands->Read("Text1_3"), offset) << typed.toStdString();
    EXPECT_EQ(hands->Read("Text1_15"), Local(angle)) << typed.toStdString();
    EXPECT_EQ(hands->Read("CWSlide1_3"), slider) << typed.toStdString();
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

TEST_F(StepList, AddInsertsBehindTheSelectedLineAndStores) {
  AddSteps(3);
  EXPECT_EQ(Lines()[2], "2 °" + QString("\t0 °").repeated(11) + "\t140 ms");
  Select(0);
  AddStep(0, 138, 200);
  ExpectSteps("0512", 1);
  Select(-1);
  AddStep(0, 136, 200);
  ExpectSteps("40512", 0);
  EXPECT_EQ(hands->Read("LabelStep"), "Step N° 0");
  EXPECT_EQ(hands->Read("LabelByte"), "70 bytes");
  EXPECT_EQ(Data().SeqTable[0].Duration[2], 200);
}

TEST_F(StepList, RemoveAndReplaceKeepTheSelectionInPlace) {
  AddSteps(5);
  hands->Click("CommandRem");  // the last
  ExpectSteps("0123", 3);
  Select(1);
  hands->Click("CommandRem");
  ExpectSteps("023", 1);
  hands->Type("Text1_0", "12");
  hands->Click("CommandReplace");
  ExpectSteps("063", 1);
  Select(-1);
  for (const char* button : {"CommandReplace", "CommandRem"}) hands->Click(button);
  ExpectSteps("063", -1);
  Select(0);
  for (int i = 0; i < 4; ++i) hands->Click("CommandRem");  // the fourth finds none
  ExpectSteps("", -1);
  EXPECT_EQ(hands->Read("LabelStep"), "Step N° -1");
  EXPECT_EQ(hands->Read("LabelByte"), "0 bytes");
}

TEST_F(StepList, FullListRefusesAnotherLine) {
  Load(FilledSequences(1, 256, 5));
  Select(255);
  hands->Click("CommandBrk");
  const QStringList before = Lines();
  for (const char* button : {"CommandAdd", "CommandReplace"}) {
    ExpectMessage("Impossible add other lines, max # of lines is 256!");
    hands->Click(button);
  }
  EXPECT_EQ(Lines(), before);
}

TEST_F(StepList, ArrowsWrapRoundAndShow) {
  for (const char* button : {"CommandUp", "CommandDwn"}) hands->Click(button);
  AddSteps(3);
  hands->Click("CommandUp");
  ExpectSteps("012", 0);
  EXPECT_EQ(hands->Read("Text1_0"), "0");
  hands->Click("CommandDwn");
  ExpectSteps("012", 2);
  EXPECT_EQ(hands->Read("Text1_0"), "4");
  EXPECT_EQ(hands->Read("CWNumEditTimeStep"), "140 ms");
  Select(-1);
  for (const char* button : {"CommandDwn", "CommandUp"}) hands->Click(button);
  ExpectSteps("012", 0);
}

TEST_F(StepList, DraggingMovesALineWithItsBreakpoint) {
  AddSteps(7);
  Select(1);
  hands->Click("CommandBrk");
  hands->DragLine("ListSequence", 1, 4);
  ExpectSteps("0234156", 4);
  EXPECT_TRUE(Lines()[4].endsWith("\tBREAK!"));
  for (const std::size_t i : {1, 4}) EXPECT_EQ(Data().EditBuffer[i][kBreakColumn], i == 4);
  hands->DragLine("ListSequence", 6, 0);
  ExpectSteps("6023415", 0);
  EXPECT_EQ(Data().SeqTable[0].Position[0][0], 128) << "the next store counts";
}

TEST_F(StepList, StoresTheOutgoingSequenceAndListsTheIncomingOne) {
  AddSteps(3);
  Select(1);
  hands->Click("CommandBrk");
  hands->Click("CommandMoreSeq");
  EXPECT_TRUE(Lines().isEmpty());
  EXPECT_EQ(hands->Read("LabelSeq"), "Sequence N° 1");
  EXPECT_EQ(hands->Read("LabelSeqEmu"), "Sequence N° 1");
  EXPECT_EQ(hands->Read("LabelStep"), "Step N° ...");
  AddStep(5, 0, 60);
  EXPECT_EQ(hands->Read("CommandOffset"), "OffSet Seq. 1");
  EXPECT_EQ(hands->Read("LabelOffset"), "42 bytes");
  hands->Click("CommandLessSeq");
  ExpectSteps("012", -1);
  EXPECT_EQ(Lines()[1], "1 °" + QString("\t0 °").repeated(11) + "\t120  ms\t");
  EXPECT_EQ(Data().EditBuffer[1][kBreakColumn], 0);
}

}  // namespace
}  // namespace pelmora
