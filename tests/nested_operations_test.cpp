// What the operator presses inside the waits of the flash operations: a read shows what the board
// holds all the same, and every wait can be ended.
#include <QFile>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include "tests/flash_fixture.h"

namespace pelmora {
namespace {

using namespace std::chrono_literals;

class NestedOperations : public FlashTest {};

// The announced data is short of its last byte while the operator is at work.
TEST_F(NestedOperations, AReadShowsTheBoardsTableWhateverIsPressedMeanwhile) {
  const Sequences sequences = RandomSequences(31, 120);
  const Bytes data = StepDataOf(sequences);
  FillFlash(sequences);
  Connect();
  const std::function<void()> pressed[] = {
      [this] { hands->Click("CommandMoreSeq"); },  [this] { AddStep(3, 200, 100); },
      [this] { hands->Click("CommandClearAll"); }, [this] { Trigger("SaveBuffer"); },
      [this] { Trigger("LoadBuffer"); },  // cancelled
      [this] { Load(ExampleSequences()); }};
  for (const std::function<void()>& press : pressed) {
    board.SetFaults({.cut_reply_at = 66 + data.size() - 1});
    hands->When([&] { return Reading() && Bar() == static_cast<int>(data.size()) - 1; },
                [&] {
                  press();
                  ExpectMessage(kReadText);
                  board.Send({data.back()});
                });
    Read();
    EXPECT_EQ(Table(), sequences);
    EXPECT_EQ(Lines().size(), static_cast<int>(sequences[0].size()));
    EXPECT_EQ(hands->Read("LabelSeq"), "Sequence N° 0");
    ExpectAtRest();
  }
}

TEST_F(NestedOperations, ASaveDuringAReadWritesNoCountBeyondWhatASequenceHolds) {
  std::array<std::uint8_t, 66> lie{0, 28};
  lie[2 + 4 * 5] = 1;  // 256 + 44 steps in sequence 5
  lie[3 + 4 * 5] = 44;
  const QTemporaryDir folder;
  files.answer = folder.filePath("file");
  Connect();
  board.SetFlash(HeaderFor(28), Bytes(28));
  board.SetFaults({.cut_reply_at = 70, .lying_header = lie});
  hands->When([this] { return Bar() == 4; },
              [&] {
                EXPECT_EQ(Data().SeqSteps[5], 256);
                box.Expect("Save", "Data Saved!");
                Trigger("SaveBuffer");
                ExpectMessage(kReadingErrorText);
                Abort();
              });
  Read();
  QFile file(*files.answer);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll().split('\n')[6], " 256 \r");
  ExpectAtRest();
}

// A read that was aborted inside the first one's wait has set the line up for single bytes.
TEST_F(NestedOperations, LessDataThanAnnouncedIsNoSuccess) {
  FillFlash(ExampleSequences());
  Connect();
  board.SetFaults({.cut_reply_at = 80});
  hands->When([this] { return Bar() == 14; },
              [this] {
                board.SetFaults({.silent = true});
                hands->When([this] { return BytesSent(2); }, [this] { Abort(); });
                ExpectMessage(kReadingErrorText, [this] {
                  ExpectMessage(kCorruptedText, [this] {
                    hands->When([this] { return hands->Read("Echo") == "Error!"; },
                                [this] { Abort(); });
                    ExpectMessage(kReadingErrorText);
                  });
                  board.Send(Bytes(42, 1));
                  QTest::qSleep(50);  // all of it is here before the first read looks again
                });
                Read();
              });
  Read();
  ExpectAtRest();
}

TEST_F(NestedOperations, AProgramPressedInsideAnothersEraseTakesItsPlace) {
  Load(ExampleSequences());
  Connect();
  board.SetFaults({.silent = true});
  hands->When([this] { return BytesSent(1); },
              [this] {
                hands->When([this] { return BytesSent(2); },
                            [this] {
                              board.SetFaults({.silent_after_acks = 1});
                              board.Send({255});
                            });
                ExpectMessage(kErasedText);
                ExpectMessage(kProgrammedText);
                ExpectMessage(kAbortText);
                Program();
              });
  Program();
  ExpectSent(Bytes{7, 7, 2} + HeaderOf(ExampleSequences()) + StepDataOf(ExampleSequences()));
  EXPECT_EQ(board.FlashData(), StepDataOf(ExampleSequences()));
  ExpectAtRest();
}

TEST_F(NestedOperations, AnEraseInsideAnotherIsTheOneThatSpeaks) {
  Connect();
  board.SetFaults({.silent = true});
  hands->When([this] { return BytesSent(1); },
              [this] {
                hands->When([this] { return BytesSent(2); }, [this] { board.Send({255}); });
                ExpectMessage(kErasedText);
                Erase();
              });
  Erase();
  EXPECT_EQ(box.Outstanding(), 0U);
  ExpectAtRest();
}

// Each outer wait is shown again, and can be ended, once the inner operation has.
TEST_F(NestedOperations, TheOuterWaitOffersAbortAgain) {
  struct Case {
    const char* outer;
    int acks;
    std::size_t sent;
    std::vector<const char*> before, after;
  };
  const Case cases[] = {
      {"CommandFlash", 1, 68, {kErasedText}, {kAbortText}},
      {"CommandFlash", 2, 68 + 256, {kErasedText}, {"Operation Aborted!255"}},
      {"CommandRead", 0, 1, {}, {kReadingErrorText}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.outer);
    Load(RandomSequences(33, 40));
    if (Enabled("ComboPort")) Connect();
    board.ClearLog();
    board.SetFaults({.silent = c.acks == 0, .silent_after_acks = c.acks});
    for (const char* message : c.before) ExpectMessage(message);
    hands->When(
        [this, &c] { return BytesSent(c.sent); },
        [this, &c] {
          hands->When([this, &c] { return BytesSent(c.sent + 1); }, [this] { Abort(); });
          ExpectMessage(kReadingErrorText);
          board.SetFaults({.silent = true});
          // An operation of its own kind inside, aborted by the operator.
          hands->When(
              [this] { return Enabled("Command1") && BarShown() && box.Outstanding() == 0; },
              [this, &c] {
                for (const char* message : c.after) ExpectMessage(message);
                Abort();
              });
          Read();
        });
    hands->Click(c.outer);
    ExpectAtRest();
    // The board gives the unfinished program up.
    ExpectLoss();
    board.Unplug();
    EXPECT_TRUE(hands->WaitUntil([this] { return Enabled("ComboPort"); }));
    board.Replug();
  }
}

// The reply to the inner read swallows the erase's answer; by itself an erase can't be aborted.
TEST_F(NestedOperations, AnEraseWhoseAnswerIsGoneCanBeAborted) {
  Connect();
  board.SetFaults({.silent = true});
  hands->When([this] { return BytesSent(1); },
              [this] {
                EXPECT_FALSE(Enabled("Command1"));
                hands->When([this] { return BytesSent(2); }, [this] { Abort(); });
                ExpectMessage(kReadingErrorText, [this] {
                  hands->When([this] { return Enabled("Command1"); },
                              [this] {
                                ExpectMessage(kAbortText);
                                EXPECT_FALSE(BarShown());
                                Abort();
                              });
                });
                Read();
              });
  Erase();
  ExpectAtRest();
}

TEST_F(NestedOperations, BytesOfOthersInATransferAreTold) {
  Load(ExampleSequences());
  Connect();
  for (const bool moved : {true, false}) {
    board.SetFaults({.silent_after_acks = 1});
    hands->When([this] { return BytesSent(68); },
                [this, moved] {
                  if (moved) SetSlider(2, 77);
                  board.Send({255});
                });
    ExpectMessage(kErasedText);
    ExpectMessage(kProgrammedText);
    if (moved) ExpectMessage(kDisturbedText);
    Program();
    EXPECT_EQ(box.Outstanding(), 0U);
    board.SetFaults({});
    board.SetFlash(Bytes(66), {});
    Sent(0);
  }
}

}  // namespace
}  // namespace pelmora
