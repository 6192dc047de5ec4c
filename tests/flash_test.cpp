// Programming and reading back: the bytes on the line, the waits and what the window shows in them.
// How each operation ends, and what may happen inside its waits, is in effects.txt.
#include "platform/controls/text_field.h"
#include "rig/processor_time.h"
#include "tests/flash_fixture.h"

namespace pelmora {
namespace {

// 128 steps: seven whole blocks, the last one acknowledged like the others.
Sequences SevenBlocks() {
  return RandomSequences(7, 128);
}

class Flash : public FlashTest {
 protected:
  // What is said of a sequence that is not stored; empty when nothing is.
  QString Warning() const {
    const auto& label = hands->Find<QLabel>("LabelNotStored");
    return label.isVisible() ? label.text() : QString();
  }
};

TEST_F(Flash, SixteenSequencesSurviveAPowerCycle) {
  Connect();
  std::vector<int> bar;
  WatchBar([&](int value) { bar.push_back(value); });
  for (const int steps : {1718, 700, 18, 1}) {
    SCOPED_TRACE(steps);
    const int bytes = 14 * steps;
    const Sequences sequences = RandomSequences(static_cast<unsigned>(steps), steps);
    Load(sequences);
    bar.clear();
    ProgramWell();
    ExpectSent(ProgramBytes(sequences));
    EXPECT_LE(bar.size(), 101U) << "redrawn more often than anybody sees";
    EXPECT_GE(bar.back(), bytes * 98 / 100);
    Unplug();
    ConnectAgain();
    hands->Click("CommandClearAll");
    bar.clear();
    ReadWell();
    EXPECT_EQ(Table(), sequences);
    EXPECT_EQ(bar.back(), bytes - 1);
    EXPECT_TRUE(std::ranges::is_sorted(bar));
    ExpectSent({6});
  }
}

TEST_F(Flash, SaysHowASequenceIsStored) {
  const QString not_stored = "Sequence N° %1 is not stored: press %2";
  for (const auto& [sequence, keys] : {std::pair(0, "+ and -"), {7, "+ and -"}, {15, "- and +"}}) {
    while (Data().CurSeq < sequence) Press("CommandMoreSeq");
    AddSteps(3);
    ListKeys("Ctrl+Up");
    EXPECT_EQ(Warning(), not_stored.arg(sequence).arg(keys));
    ListKeys("Ctrl+Down");
    EXPECT_EQ(Warning(), "") << "as it was stored";
  }
}

// What stands on the line and in the window in each wait, with acknowledgements given by hand.
TEST_F(Flash, ProgrammingWaitsForEveryWholeBlock) {
  FillFlash(SevenBlocks());
  Connect();
  ReadWell();  // leaves the bar full
  Select(0);
  ListKeys("Ctrl+Down");  // the warning stands where the bar comes
  board.ClearLog();
  board.SetFaults({.silent = true});
  QStringList waits;
  for (const std::size_t sent : {1, 68, 324, 580, 836, 1092, 1348, 1604, 1860}) {
    WhenSent(sent, [&] {
      waits.append(QString("%1 %2").arg(board.Log().size()).arg(Bar()));
      if (ShowsErasing()) waits.back() += " erasing";
      if (Enabled("Command1")) waits.back() += " abort";
      if (BarShown()) waits.back() += " bar";
      if (!Warning().isEmpty()) waits.back() += " warning";
      board.Send({255});
    });
  }
  ExpectMessage(kErasedText, [this] {
    EXPECT_FALSE(ShowsErasing());
    EXPECT_NE(Warning(), "");
  });
  ExpectMessage(kProgrammedText, [this] {
    ExpectAtRest();
    EXPECT_NE(Warning(), "");
  });
  Program();
  // The bar moves once in 18 bytes.
  EXPECT_EQ(waits.join(", "),
            "1 1791 erasing, 68 0 abort bar, 324 252 abort bar, 580 504 abort bar, "
            "836 756 abort bar, 1092 1008 abort bar, 1348 1278 abort bar, 1604 1530 abort bar, "
            "1860 1782 abort bar");
}

TEST_F(Flash, ASilentBoardCostsNoProcessorTime) {
  Connect();
  board.SetFaults({.silent = true});
  QTimer::singleShot(400, form.get(), [this] { Abort(); });
  const double before = ProcessorMilliseconds();
  ExpectMessage(kReadingErrorText);
  Read();
  EXPECT_LT(ProcessorMilliseconds() - before, 100.0);
}

TEST_F(Flash, EditingIsSentUntilTheErasesEndOnly) {
  Connect();
  for (const auto& [acks, sent] : {std::pair{0, 1U}, {1, 68U}, {2, 68U + 256U}}) {
    SCOPED_TRACE(acks);
    Load(SevenBlocks());
    board.SetFaults({.silent_after_acks = acks});
    WhenSent(sent, [this] {
      Trigger("FreshProg");
      hands->Click("CommandClearAll");
      AddStep(0, 128, 200);
      Trigger("FreshProg");
      board.SetFaults({});
      board.Send({255});
    });
    ProgramWell();
    EXPECT_EQ(Lines().size(), 1);
    EXPECT_EQ(Data().TotalBytes, 14);
    ExpectSent(ProgramBytes(acks == 0 ? Table() : SevenBlocks()));
    ExpectAtRest();
  }
}

// Bytes that nobody asked for, here already but not looked at yet.
TEST_F(Flash, StrayBytesAreDroppedBeforeARead) {
  FillFlash(ExampleSequences());
  Connect();
  const Bytes stray = {1, 2, 7};
  Arrive(board, stray);
  ExpectMessage(kReadText);
  Press("CommandRead");
  EXPECT_EQ(Table(), ExampleSequences());
  Arrive(board, stray);
  Press("CommandInBuff");
  EXPECT_EQ(hands->Read("Echo"), "3");
  EXPECT_TRUE(hands->WaitUntil([this] { return hands->Read("Echo") == "7"; })) << "still there";
  Arrive(board, stray);
  emit hands->Find<platform::TextField>("Echo").Click();
  QTest::qWait(30);
  EXPECT_EQ(hands->Read("Echo"), "");
}

// More has come than the board holds when an overflow is aborted: it is cut once more.
TEST_F(Flash, AnAbortedOverflowKeepsNoMoreThanTheBoardHolds) {
  Bytes header = HeaderOf(ExampleSequences());
  header[0] = 0x7F;
  Connect();
  board.SetFaults({.silent = true});
  WhenSent(1, [&] { board.Send(header + StepDataOf(ExampleSequences())); });
  hands->When([this] { return Bar() == 42; },
              [this] {
                // All of it comes before the read looks again.
                for (int part = 0; part < 25; ++part) {
                  Arrive(board, Bytes(1000, 7));
                  QCoreApplication::processEvents();
                }
                Abort();
              });
  ExpectMessage(kReadText);
  Read();
  EXPECT_EQ(form->Link().Reply().RxCount, 24064);
}

TEST_F(Flash, AnAdapterPulledInTheLastShortBlockIsNoSuccess) {
  Load(RandomSequences(20, 40));
  Connect();
  WatchBar([this](int value) {
    if (value < 516 || board.DevicePath().empty()) return;
    Unplug();
    ExpectMessage("Operation Aborted!559");
  });
  ExpectMessage(kErasedText);
  Program();
}

}  // namespace
}  // namespace pelmora
