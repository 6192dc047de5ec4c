// Erasing, programming and reading back with a sound board: the bytes on the line, the waits and
// what the window shows in them, and what the operator may do meanwhile.
#include "rig/processor_time.h"
#include "tests/flash_fixture.h"

namespace pelmora {
namespace {

using simboard::Faults;

// 128 steps: seven whole blocks, the last one acknowledged like the others.
Sequences SevenBlocks() {
  return RandomSequences(7, 128);
}

class Flash : public FlashTest {};

TEST_F(Flash, WithoutAPortOnlyTheReadClears) {
  AddStep(0, 200, 100);
  for (const char* button : {"CommandErase", "CommandFlash", "CommandRead"}) {
    EXPECT_EQ(Lines().size(), 1) << button;
    ExpectMessage("No Connection Available!");
    hands->Click(button);
  }
  EXPECT_TRUE(Lines().isEmpty());
  ExpectAtRest();
}

TEST_F(Flash, EraseLooksBusyUntilTheBoardAnswers) {
  Connect();
  for (const bool programs : {false, true}) {
    board.SetFaults({.silent = true});
    hands->When([this] { return BytesSent(1); },
                [this] {
                  EXPECT_TRUE(ShowsErasing());
                  EXPECT_FALSE(Enabled("Command1"));
                  EXPECT_FALSE(BarShown());
                  board.SetFaults({});
                  board.Send({255});
                });
    ExpectMessage(kErasedText, [this] { EXPECT_FALSE(ShowsErasing()); });
    if (programs) ExpectMessage(kProgrammedText);
    programs ? Program() : Erase();
    ExpectAtRest();
    board.ClearLog();
  }
}

TEST_F(Flash, ExampleGoesOverTheLineAndComesBack) {
  const Bytes image = ExampleImage();
  Load(ExampleSequences());
  Connect();
  board.Send({77});
  EXPECT_TRUE(hands->WaitUntil([&] { return hands->Read("Echo") == "77"; }));
  ExpectMessage(kErasedText, [&] { EXPECT_EQ(Sent(1), Bytes{7}); });
  ExpectMessage(kProgrammedText);
  Program();
  ExpectSent(Bytes{2} + image);
  EXPECT_EQ(board.FlashHeader() + board.FlashData(), image);
  EXPECT_EQ(hands->Read("Echo"), "");

  hands->Click("CommandMoreSeq");
  AddStep(5, 1, 40);
  ExpectSent({13, 1});
  ExpectMessage(kReadText);
  Read();
  ExpectSent({6});
  EXPECT_EQ(Table(), ExampleSequences());
  EXPECT_EQ(Lines().size(), 2);
  EXPECT_TRUE(Lines()[1].startsWith("63.5 °\t0 °\t")) << Lines()[1].toStdString();
  EXPECT_EQ(hands->Read("LabelSeq"), "Sequence N° 0");
  EXPECT_EQ(hands->Read("LabelStep"), "Step N° ...");
  EXPECT_EQ(Data().TotalBytes, 42);
  ExpectAtRest();
}

TEST_F(Flash, SixteenSequencesSurviveAPowerCycle) {
  constexpr struct {
    unsigned seed;
    int steps;
  } kCases[] = {{1, 1718}, {2, 1718}, {3, 700}, {4, 18}, {5, 1}};
  Connect();
  for (const auto& [seed, steps] : kCases) {
    SCOPED_TRACE(seed);
    const Sequences sequences = RandomSequences(seed, steps);
    Load(sequences);
    ExpectMessage(kErasedText);
    ExpectMessage(kProgrammedText);
    Program();
    ExpectSent(Bytes{7, 2} + HeaderOf(sequences) + StepDataOf(sequences));
    Unplug();
    ConnectAgain();
    hands->Click("CommandClearAll");
    ExpectMessage(kReadText);
    Read();
    EXPECT_EQ(Table(), sequences);
    ExpectSent({6});
  }
}

TEST_F(Flash, AnImageThatTheHeaderCannotHoldIsRefused) {
  const QString warning = "Out of memory: too many steps. Max # of bytes is 24064!";
  const Sequences kept = RandomSequences(8, 3);
  FillFlash(kept);
  Connect();
  for (const int steps : {2341, 2340}) {
    ExpectMessage(warning);
    Load(RandomSequences(9, steps));
    ExpectMessage(warning);
    if (steps == 2340) {  // 32760 bytes are the board's affair, but they grow during the erase
      hands->When([this] { return BytesSent(1); }, [this] { hands->Click("CommandAdd"); });
      board.SetFaults({.reply_delay = std::chrono::milliseconds(200)});
      ExpectMessage(kErasedText);
      ExpectMessage(warning);
    }
    Program();
    EXPECT_EQ(board.FlashData(), steps == 2341 ? StepDataOf(kept) : Bytes{});
    ExpectSent(steps == 2341 ? Bytes{} : Bytes{7});
    ExpectAtRest();
  }
}

// What stands on the line and in the window in each wait, with acknowledgements given by hand.
TEST_F(Flash, ProgrammingWaitsForEveryWholeBlock) {
  const Sequences sequences = SevenBlocks();
  Load(sequences);
  Connect();
  board.SetFaults({.silent = true});
  QStringList waits;
  const auto wait_for = [&](std::size_t sent) {
    hands->When([this, sent] { return BytesSent(sent); },
                [&] {
                  waits.append(QString("%1 %2%3 %4 %5 %6")
                                   .arg(board.Log().size())
                                   .arg(Erasing() ? "E" : "")
                                   .arg(Programming() ? "P" : "")
                                   .arg(Enabled("Command1") ? "abort" : "-")
                                   .arg(BarShown() ? "bar" : "-")
                                   .arg(Bar()));
                  board.Send({255});
                });
  };
  wait_for(1);
  wait_for(68);
  for (std::size_t block = 1; block <= 7; ++block) wait_for(68 + 256 * block);
  ExpectMessage(kErasedText);
  ExpectMessage(kProgrammedText, [&] { EXPECT_EQ(waits.size(), 9); });
  Program();
  // The bar moves once in 18 bytes.
  EXPECT_EQ(waits.join(", "),
            "1 EP - - 0, 68 P abort bar 0, 324 P abort bar 252, 580 P abort bar 504, "
            "836 P abort bar 756, 1092 P abort bar 1008, 1348 P abort bar 1278, "
            "1604 P abort bar 1530, 1860 P abort bar 1782");
  ExpectAtRest();
}

TEST_F(Flash, TheBarMovesAHundredTimesInAFullTransfer) {
  Load(RandomSequences(10, 1718));
  Connect();
  std::vector<int> values;
  WatchBar([&](int value) { values.push_back(value); });
  ExpectMessage(kErasedText);
  ExpectMessage(kProgrammedText);
  Program();
  std::vector<int> expected;
  for (int value = 241; value < 24052; value += 241) expected.push_back(value);
  EXPECT_EQ(values, expected);
  Sent(24052 + 68);
  values.clear();
  ExpectMessage(kReadText);
  Read();
  EXPECT_EQ(values.back(), 24051);
  EXPECT_TRUE(std::ranges::is_sorted(values.begin() + 1, values.end()));
}

TEST_F(Flash, ASilentBoardCostsNoProcessorTime) {
  Connect();
  board.SetFaults({.silent = true});
  double before = 0;
  QElapsedTimer clock;
  hands->When([this] { return BytesSent(1); },
              [&] {
                before = ProcessorMilliseconds();
                clock.start();
              });
  hands->When([&] { return clock.isValid() && clock.elapsed() >= 400; },
              [&] {
                // The operator's own looking every 3 ms is in it.
                EXPECT_LT(ProcessorMilliseconds() - before, 100.0);
                Abort();
              });
  ExpectMessage(kReadingErrorText);
  Read();
}

class InsideAWait : public FlashTest {
 protected:
  // For programming with a board that acknowledges `acks` times; `meanwhile` is done
  // in the wait after that, `sent` bytes being on the line.
  void ProgramUntil(int acks, std::size_t sent, std::function<void()> meanwhile) {
    board.SetFaults({.silent_after_acks = acks});
    hands->When([this, sent] { return BytesSent(sent); }, std::move(meanwhile));
    ExpectMessage(kErasedText);
  }
};

TEST_F(InsideAWait, EditingIsSentUntilTheErasesEndOnly) {
  const Sequences sequences = SevenBlocks();
  Connect();
  for (const auto& [acks, sent] : {std::pair{0, 1U}, {1, 68U}, {2, 68U + 256U}}) {
    SCOPED_TRACE(acks);
    Load(sequences);
    ProgramUntil(acks, sent, [this] {
      Trigger("FreshProg");
      hands->Click("CommandClearAll");
      AddStep(0, 128, 200);
      Trigger("FreshProg");
      board.SetFaults({});
      board.Send({255});
    });
    ExpectMessage(kProgrammedText);
    Program();
    EXPECT_EQ(Lines().size(), 1);
    EXPECT_EQ(Data().TotalBytes, 14);
    const Sequences& image = acks == 0 ? Table() : sequences;
    ExpectSent(Bytes{7, 2} + HeaderOf(image) + StepDataOf(image));
    ExpectAtRest();
  }
}

TEST_F(InsideAWait, AnAbortEndsTheInnerOperationOnly) {
  Load(ExampleSequences());
  Connect();
  ProgramUntil(1, 68, [this] {
    hands->When([this] { return BytesSent(69) && Erasing(); }, [this] { Abort(); });
    ExpectMessage(kAbortText);
    Erase();
    EXPECT_FALSE(Erasing());
    EXPECT_TRUE(Programming());
    EXPECT_FALSE(Enabled("Command1"));
    ExpectMessage(kProgrammedText);
    ExpectMessage(kDisturbedText);
    board.Send({255});
  });
  Program();
  ExpectSent(Bytes{7, 2} + HeaderOf(ExampleSequences()) + Bytes{7} +
             StepDataOf(ExampleSequences()));
  ExpectAtRest();
}

TEST_F(InsideAWait, AReadInsideAReadServesBoth) {
  const Sequences sequences = RandomSequences(11, 40);
  FillFlash(sequences);
  Connect();
  board.SetFaults({.cut_reply_at = 40});
  hands->When(
      [this] {
        hands->Click("CommandInBuff");
        return hands->Read("Echo") == "40";
      },
      [this] {
        AddStep(0, 128, 100);
        board.SetFaults({});
        ExpectMessage(kReadText);
        Read();
        EXPECT_FALSE(Reading());
        ExpectMessage(kReadText);
      });
  Read();
  EXPECT_EQ(Table(), sequences);
  EXPECT_EQ(Lines().size(), static_cast<int>(sequences[0].size()));
  ExpectSent({6, 6});
  ExpectAtRest();
}

TEST_F(InsideAWait, InBuffCountsAndEchoThrowsAwayWhatAHeaderWaitsFor) {
  const Bytes header = HeaderOf(ExampleSequences());
  Connect();
  board.SetFaults({.silent = true});
  hands->When([this] { return BytesSent(1); },
              [&] {
                board.Send({1, 2, 3, 4, 5});
                EXPECT_TRUE(hands->WaitUntil([this] {
                  hands->Click("CommandInBuff");
                  return hands->Read("Echo") == "5";
                }));
                hands->Click("Echo");
                EXPECT_EQ(hands->Read("Echo"), "");
                hands->Click("CommandInBuff");
                EXPECT_EQ(hands->Read("Echo"), "0");
                board.Send(header + StepDataOf(ExampleSequences()));
              });
  ExpectMessage(kReadText);
  Read();
  EXPECT_EQ(Table(), ExampleSequences());
}

TEST_F(InsideAWait, AConnectionMadeAnewBeforeTheHeaderGetsNothing) {
  Load(ExampleSequences());
  Connect();
  ExpectMessage(kErasedText, [this] {
    EXPECT_EQ(Sent(1), Bytes{7});
    Unplug();
    ConnectAgain();
    ExpectMessage(kAbortText);
  });
  Program();
  ExpectSent({});
  ExpectAtRest();
}

}  // namespace
}  // namespace pelmora
