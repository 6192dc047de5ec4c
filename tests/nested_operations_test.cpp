// What the operator presses inside the waits of the flash operations: a read shows what the board
// holds all the same, and every wait can be ended.
#include "tests/flash_fixture.h"

namespace pelmora {
namespace {

class NestedOperations : public FlashTest {};

// The announced data is short of its last byte while the operator is at work.
TEST_F(NestedOperations, AReadShowsTheBoardsTableWhateverIsPressedMeanwhile) {
  const Sequences sequences = RandomSequences(31, 120);
  const Bytes data = StepDataOf(sequences);
  FillFlash(sequences);
  Connect();
  for (const char* pressed : {"CommandMoreSeq", "CommandAdd", "CommandClearAll"}) {
    SCOPED_TRACE(pressed);
    board.SetFaults({.cut_reply_at = 66 + data.size() - 1});
    hands->When([&] { return Reading() && Bar() == static_cast<int>(data.size()) - 1; },
                [&] {
                  hands->Click(pressed);
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
  Bytes header = {0, 28};
  header.resize(66);
  header[2 + 4 * 5] = 1;  // 256 steps and some in sequence 5
  header[3 + 4 * 5] = 44;
  const QTemporaryDir folder;
  files.answer = folder.filePath("file");
  Connect();
  board.SetFlash(header, Bytes(28));
  board.SetFaults({.cut_reply_at = 70});
  hands->When([this] { return Bar() == 4; },
              [this] {
                box.Expect("Save", "Data Saved!");
                Trigger("SaveBuffer");
                ExpectMessage(kReadingErrorText);
                Abort();
              });
  Read();
  EXPECT_EQ(ReadFile(*files.answer).split('\n')[6], " 256 \r");
}

// A read that was aborted inside the first one's wait has set the line up for single bytes.
TEST_F(NestedOperations, LessDataThanAnnouncedIsNoSuccess) {
  FillFlash(ExampleSequences());
  Connect();
  board.SetFaults({.cut_reply_at = 80});
  hands->When([this] { return Bar() == 14; },
              [this] {
                board.SetFaults({.silent = true});
                WhenSent(2, [this] { Abort(); });
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
}

// The inner operation's erase takes the outer one's place, and is the one that speaks.
TEST_F(NestedOperations, AnEraseInsideAnotherTakesItsPlace) {
  Load(ExampleSequences());
  Connect();
  for (const auto& [outer_programs, inner_programs] :
       {std::pair(false, false), {true, false}, {true, true}}) {
    board.SetFaults({.silent = true});
    WhenSent(1, [&] {
      WhenSent(2, [this] {
        board.SetFaults({.silent_after_acks = 1});
        board.Send({255});
      });
      ExpectMessage(kErasedText);
      if (inner_programs) ExpectMessage(kProgrammedText);
      if (outer_programs) ExpectMessage(kAbortText);
      inner_programs ? Program() : Erase();
    });
    outer_programs ? Program() : Erase();
    EXPECT_EQ(box.Outstanding(), 0U);
    ExpectSent(inner_programs ? Bytes{7} + ProgramBytes(ExampleSequences()) : Bytes{7, 7});
    ExpectAtRest();
  }
}

// Each outer wait is shown again, and can be ended, once the inner operation has.
TEST_F(NestedOperations, TheOuterWaitOffersAbortAgain) {
  using Text = const char*;
  const std::tuple<Text, Text, int, std::size_t, Text, Text> cases[] = {
      {"CommandFlash", "CommandRead", 1, 68, kReadingErrorText, kAbortText},
      {"CommandFlash", "CommandErase", 2, 68 + 256, kAbortText, "Operation Aborted!255"},
      {"CommandRead", "CommandRead", 0, 1, kReadingErrorText, kReadingErrorText},
  };
  Connect();
  for (const auto& [outer, inner, acks, sent, inner_message, outer_message] : cases) {
    SCOPED_TRACE(inner);
    Load(RandomSequences(33, 40));
    board.ClearLog();
    board.SetFaults({.silent = acks == 0, .silent_after_acks = acks});
    if (acks > 0) ExpectMessage(kErasedText);
    WhenSent(sent, [&] {
      WhenSent(sent + 1, [this] { Abort(); });
      ExpectMessage(inner_message);
      board.SetFaults({.silent = true});
      hands->When([this] { return Enabled("Command1") && BarShown() && box.Outstanding() == 0; },
                  [&] {
                    ExpectMessage(outer_message);
                    Abort();
                  });
      hands->Click(inner);
    });
    hands->Click(outer);
    ExpectAtRest();
    FillFlash({});  // the board gives the unfinished program up
  }
}

// The reply to the inner read swallows the erase's answer; by itself an erase can't be aborted.
TEST_F(NestedOperations, AnEraseWhoseAnswerIsGoneCanBeAborted) {
  Connect();
  for (const bool answered : {false, true}) {
    board.ClearLog();
    board.SetFaults({.silent = true});
    WhenSent(1, [this, answered] {
      EXPECT_FALSE(Enabled("Command1"));
      WhenSent(2, [this] { Abort(); });
      ExpectMessage(kReadingErrorText, [this, answered] {
        hands->When([this] { return Enabled("Command1"); },
                    [this, answered] {
                      EXPECT_FALSE(BarShown());
                      ExpectMessage(answered ? kErasedText : kAbortText);
                      answered ? board.Send({255}) : Abort();
                    });
      });
      Read();
    });
    Erase();
    ExpectAtRest();
  }
}

TEST_F(NestedOperations, BytesOfOthersInATransferAreTold) {
  Load(ExampleSequences());
  Connect();
  for (const bool moved : {true, false}) {
    board.SetFaults({.silent_after_acks = 1});
    WhenSent(68, [this, moved] {
      if (moved) SetSlider(2, 77);
      board.Send({255});
    });
    ExpectMessage(kErasedText);
    ExpectMessage(kProgrammedText);
    if (moved) ExpectMessage(kDisturbedText);
    Program();
    board.SetFaults({});
    board.SetFlash(Bytes(66), {});
    Sent(0);
  }
}

}  // namespace
}  // namespace pelmora
