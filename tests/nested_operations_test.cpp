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
  for (const char* pressed : {"CommandMoreSeq", "CommandAdd", "CommandClearAll", "CommandInBuff"}) {
    SCOPED_TRACE(pressed);
    board.SetFaults({.cut_reply_at = 66 + data.size() - 1});
    WhenBar(static_cast<int>(data.size()) - 1, [&] {
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

// A read that was aborted inside the first one's wait has set the line up for single bytes.
TEST_F(NestedOperations, LessDataThanAnnouncedIsNoSuccess) {
  FillFlash(ExampleSequences());
  Connect();
  board.SetFaults({.cut_reply_at = 80});
  WhenBar(14, [this] {
    board.SetFaults({.silent = true});
    WhenSent(2, [this] { Abort(); });
    ExpectMessage(kReadingErrorText, [this] {
      ExpectMessage(kCorruptedText, [this] {
        hands->When([this] { return hands->Read("Echo") == "Error!"; }, [this] { Abort(); });
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
    const auto end_outer = [&] {
      ExpectMessage(outer_message);
      Abort();
    };
    const auto outer_waits = [this] {
      return Enabled("Command1") && BarShown() && box.Outstanding() == 0;
    };
    WhenSent(sent, [&] {
      WhenSent(sent + 1, [this] { Abort(); });
      ExpectMessage(inner_message);
      board.SetFaults({.silent = true});
      hands->When(outer_waits, end_outer);
      hands->Click(inner);
    });
    hands->Click(outer);
    ExpectAtRest();
    FillFlash({});  // the board gives the unfinished program up
  }
}

// A read inside the wait of an erase, or of the erase that programming begins with. What comes then
// is taken as the erase's answer, and the read has no reply: what an earlier one had counts no
// more. Without an answer both are aborted, which an erase by itself can't be.
TEST_F(NestedOperations, AReadInsideAnEraseGetsNoReply) {
  const Bytes kZeros(66, 0);
  const Bytes kAcknowledgement = {255};
  const struct {
    Bytes waiting;  // here when the read begins, and not looked at yet
    Bytes answer;   // comes to the read
    bool abort_read;
    bool erased;
    bool late = false;  // the erase's answer comes after the read
  } cases[] = {
      {{}, kAcknowledgement + Bytes(65, 0), false, true},
      {kAcknowledgement, Bytes(65, 0), false, true},
      {{}, kAcknowledgement, true, true},
      {kAcknowledgement, {}, true, true},
      {{}, kZeros + kAcknowledgement, true, false},  // another reply
      {{}, {}, true, false},
      {{}, {}, true, true, true},
  };
  const Sequences earlier = RandomSequences(32, 40);
  for (const bool programs : {false, true}) {
    for (const auto& c : cases) {
      SCOPED_TRACE(&c - cases);
      FillFlash(earlier);
      if (!Connected()) Connect();
      board.SetFaults({});
      ReadWell();
      Load(ExampleSequences());
      board.ClearLog();
      board.SetFaults({.silent = true});
      WhenSent(1, [&] {
        EXPECT_FALSE(Enabled("Command1"));
        board.Send(c.waiting);
        QTest::qSleep(30);
        WhenSent(2, [&] {
          board.Send(c.answer);
          if (!c.abort_read) return;
          QTest::qWait(30);
          EXPECT_EQ(hands->Read("Echo"), c.answer.size() > 66 ? "Error!" : "");
          Abort();
        });
        ExpectMessage(c.abort_read ? kReadingErrorText : kNothingText);
        ExpectMessage(c.erased ? kErasedText : kAbortText);
        if (programs && c.erased) {
          WhenSent(3 + 66, [&] { board.Send({255}); });
          ExpectMessage(kProgrammedText);
        }
        if (!c.erased || c.late) {
          const auto erase_waits = [this] { return !Reading() && Enabled("Command1"); };
          hands->When(erase_waits, [this, late = c.late] {
            EXPECT_FALSE(BarShown());
            late ? board.Send({255}) : Abort();
          });
        }
        Press("CommandRead");
      });
      programs ? Program() : Erase();
      EXPECT_EQ(box.Outstanding(), 0U);
      EXPECT_EQ(Table(), Sequences()) << "the read has emptied it";
      ExpectSent(programs && c.erased ? Bytes{7, 6, 2} + Bytes(66, 0) : Bytes{7, 6});
      ExpectAtRest();
    }
  }
}

// The answer of an erase inside a read's wait doesn't come to it; aborted, it leaves the read to
// its reply.
TEST_F(NestedOperations, AnEraseInsideAReadCanBeAbortedAndTheReadGoesOn) {
  const Sequences sequences = RandomSequences(34, 20);
  const Bytes reply = HeaderOf(sequences) + StepDataOf(sequences);
  Connect();
  for (const std::size_t come : {40U, 96U}) {
    for (const char* inner : {"CommandErase", "CommandFlash"}) {
      SCOPED_TRACE(inner);
      FillFlash(sequences);
      board.SetFaults({.cut_reply_at = come});
      const auto cut = [&] { return come < 66 ? board.Log().size() == 1 : Bar() == 30; };
      const auto read_waits = [&] { return !Erasing() && Enabled("Command1") && BarShown(); };
      hands->When(cut, [&] {
        QTest::qWait(30);
        board.SetFaults({.silent = true});
        WhenSent(2, [&] {
          EXPECT_TRUE(Erasing() && Enabled("Command1"));
          Abort();
        });
        ExpectMessage(kAbortText);
        hands->When(read_waits, [&] {
          ExpectMessage(kReadText);
          board.Send({reply.begin() + static_cast<int>(come), reply.end()});
        });
        hands->Click(inner);
      });
      Read();
      EXPECT_EQ(Table(), sequences);
      ExpectSent({6, 7});
      ExpectAtRest();
    }
  }
}

TEST_F(NestedOperations, BytesOfOthersInATransferAreTold) {
  Load(ExampleSequences());
  Connect();
  board.SetFaults({.silent_after_acks = 1});
  WhenSent(68, [this] {
    SetSlider(2, 77);
    board.Send({255});
  });
  ExpectMessage(kErasedText);
  ExpectMessage(kProgrammedText);
  ExpectMessage(kDisturbedText);
  Program();
}

}  // namespace
}  // namespace pelmora
