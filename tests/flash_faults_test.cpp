// Each flash operation against each fault of the board and of the line, and against the operator
// who ends a wait: the messages, what is left, and that the next operation works.
#include <QElapsedTimer>
#include <ostream>
#include <span>

#include "tests/flash_fixture.h"

namespace pelmora {
namespace {

using simboard::Faults;
using namespace std::chrono_literals;

enum class Operation { kErase, kProgram, kRead };

// What happens in the wait.
enum class Then {
  kNothing,
  kAnswer,         // the board acknowledges after all
  kAnswerAndMore,  // with a wrong byte right behind
  kAbort,
  kUnplug,
  kReconnect,  // the adapter is pulled, put back and chosen again, all within the wait
};

struct Fault {
  const char* name;
  Operation operation;
  Faults faults;
  Then then;
  std::size_t sent;  // bytes on the line when it happens
  int waiting;       // step data shown by the bar when it happens
  std::vector<QString> messages;
  const char* echo;  // null when it depends on how far apart two bytes arrive
};

void PrintTo(const Fault& fault, std::ostream* out) {
  *out << fault.name;
}

using Changes = std::initializer_list<std::pair<std::size_t, int>>;

// The example's header with some bytes changed.
std::array<std::uint8_t, 66> Lie(Changes changes) {
  const Bytes header = HeaderOf(ExampleSequences());
  std::array<std::uint8_t, 66> lie{};
  std::ranges::copy(header, lie.begin());
  for (const auto& [offset, value] : changes) lie[offset] = static_cast<std::uint8_t>(value);
  return lie;
}

class FlashFaults : public FlashTest, public testing::WithParamInterface<Fault> {
 protected:
  // The program holds 560 bytes of steps: two blocks and a rest.
  static Sequences Loaded() { return RandomSequences(20, 40); }

  void Start(Operation operation) {
    operation == Operation::kErase     ? Erase()
    : operation == Operation::kProgram ? Program()
                                       : Read();
  }

  // `message` is what the operation says of a lost connection, after the loss itself.
  void Do(Then then, const QString& message) {
    if (then == Then::kAnswer) board.Send({255});
    if (then == Then::kAnswerAndMore) board.Send({255, 3});
    if (then == Then::kAbort) Abort();
    if (then != Then::kUnplug && then != Then::kReconnect) return;
    Unplug();
    ExpectMessage(message);
    if (then == Then::kReconnect) ConnectAgain();
  }

  void ExpectAllOperationsToWork() {
    if (Enabled("ComboPort")) ConnectAgain();
    while (board.WaitForBytes(board.Log().size() + 1, 20ms)) continue;
    board.SetFaults({});
    FillFlash(ExampleSequences());  // ends a program that the board is still waiting for, too
    board.Send({65});
    EXPECT_TRUE(hands->WaitUntil([this] { return hands->Read("Echo") == "65"; }));
    ExpectMessage(kReadText);
    Read();
    EXPECT_EQ(Table(), ExampleSequences());
    board.SetFaults({.reply_delay = 15ms});
    QElapsedTimer clock;
    clock.start();
    ExpectMessage(kErasedText, [&] { EXPECT_GE(clock.elapsed(), 15) << "not yet answered"; });
    Erase();
    board.SetFaults({});
    ExpectMessage(kErasedText);
    ExpectMessage(kProgrammedText);
    Program();
    board.ClearLog();
    EXPECT_TRUE(
        hands->WaitUntil([this] { return board.FlashData() == StepDataOf(ExampleSequences()); }));
    ExpectAtRest();
  }
};

TEST_P(FlashFaults, EndAsTheOperatorIsToldAndLeaveNothingBehind) {
  const Fault& fault = GetParam();
  FillFlash(ExampleSequences());
  Load(Loaded());
  Connect();
  board.SetFaults(fault.faults);
  bool done = fault.then == Then::kNothing;
  if (!done) {
    hands->When([&] { return BytesSent(fault.sent) && Bar() >= fault.waiting; },
                [&] {
                  EXPECT_EQ(board.Log().size(), fault.sent) << "more was sent than answered";
                  Do(fault.then, fault.messages.back());
                  done = true;
                });
  }
  const bool lost = fault.then == Then::kUnplug || fault.then == Then::kReconnect;
  for (const QString& message : fault.messages) {
    if (!lost || &message != &fault.messages.back()) ExpectMessage(message);
  }
  Start(fault.operation);
  EXPECT_TRUE(done);
  EXPECT_TRUE(hands->WaitUntil([this] { return box.Outstanding() == 0; }));
  EXPECT_TRUE(hands->WaitUntil([&] { return !fault.echo || hands->Read("Echo") == fault.echo; }))
      << hands->Read("Echo").toStdString();
  ExpectAtRest();
  if (fault.operation != Operation::kRead) {
    EXPECT_EQ(Table(), Loaded());
  }
  ExpectAllOperationsToWork();
}

const Faults kSilent{.silent = true};
const Faults kLate{.reply_delay = 20ms};
const Faults kDoubled{.extra_replies = 1};
Faults WrongFirst(Bytes bytes) {
  return {.before_reply = std::move(bytes)};
}
Faults Acks(int count) {
  return {.silent_after_acks = count};
}
Faults CutAt(std::size_t bytes) {
  return {.cut_reply_at = bytes};
}
Faults Lies(Changes changes) {
  return {.lying_header = Lie(changes)};
}

// Bytes on the line in each wait of an erase and of programming.
constexpr std::size_t kSent7 = 1;
constexpr std::size_t kSentHead = 68;
constexpr std::size_t kSentBlock = 68 + 256;
constexpr std::size_t kSent2Blocks = 68 + 512;

const auto kErase = Operation::kErase;
const auto kProg = Operation::kProgram;
const auto kRead = Operation::kRead;
const auto kNone = Then::kNothing;
const auto kOk = kProgrammedText;
const auto kCut255 = "Operation Aborted!255";
const auto kCut511 = "Operation Aborted!511";

// A case on each line. A wrong byte before a read reply shifts it by a byte: no data is announced,
// and the counts are far too large.
// clang-format off
const Fault kFaults[] = {
    {"erase_late", kErase, kLate, kNone, 0, 0, {kErasedText}, ""},
    {"erase_wrong", kErase, WrongFirst({0, 254}), kNone, 0, 0, {kErasedText}, "Error!"},
    {"erase_doubled", kErase, kDoubled, kNone, 0, 0, {kErasedText}, nullptr},
    {"erase_answered", kErase, kSilent, Then::kAnswer, kSent7, 0, {kErasedText}, ""},
    {"erase_answered_and_more", kErase, kSilent, Then::kAnswerAndMore, kSent7, 0, {kErasedText}, nullptr},
    {"erase_unplugged", kErase, kSilent, Then::kUnplug, kSent7, 0, {kAbortText}, ""},
    {"erase_reconnected", kErase, kSilent, Then::kReconnect, kSent7, 0, {kAbortText}, ""},
    {"program_late", kProg, kLate, kNone, 0, 0, {kErasedText, kOk}, ""},
    {"program_wrong", kProg, WrongFirst({0}), kNone, 0, 0, {kErasedText, kOk}, "Error!"},
    {"program_doubled", kProg, kDoubled, kNone, 0, 0, {kErasedText, kOk}, nullptr},
    {"program_unplugged_0", kProg, kSilent, Then::kUnplug, kSent7, 0, {kAbortText}, ""},
    {"program_reconnected_0", kProg, kSilent, Then::kReconnect, kSent7, 0, {kAbortText}, ""},
    {"program_aborted_1", kProg, Acks(1), Then::kAbort, kSentHead, 0, {kErasedText, kAbortText}, ""},
    {"program_reconnected_1", kProg, Acks(1), Then::kReconnect, kSentHead, 0, {kErasedText, kAbortText}, ""},
    {"program_aborted_2", kProg, Acks(2), Then::kAbort, kSentBlock, 0, {kErasedText, kCut255}, ""},
    {"program_unplugged_2", kProg, Acks(2), Then::kUnplug, kSentBlock, 0, {kErasedText, kCut255}, ""},
    {"program_answered_3", kProg, Acks(3), Then::kAnswer, kSent2Blocks, 0, {kErasedText, kOk}, ""},
    {"program_reconnected_3", kProg, Acks(3), Then::kReconnect, kSent2Blocks, 0, {kErasedText, kCut511}, ""},
    {"read_late", kRead, kLate, kNone, 0, 0, {kReadText}, ""},
    {"read_wrong", kRead, WrongFirst({0}), kNone, 0, 0, {kNothingText}, ""},
    {"read_too_much", kRead, {.after_reply = Bytes(500, 7)}, kNone, 0, 0, {kReadText}, ""},
    {"read_silent_aborted", kRead, kSilent, Then::kAbort, 1, 0, {kReadingErrorText}, ""},
    {"read_silent_reconnected", kRead, kSilent, Then::kReconnect, 1, 0, {kReadingErrorText}, ""},
    {"read_header_cut", kRead, CutAt(65), Then::kAbort, 1, 0, {kReadingErrorText}, ""},
    {"read_cut_aborted", kRead, CutAt(107), Then::kAbort, 1, 41, {kReadingErrorText}, ""},
    {"read_cut_unplugged", kRead, CutAt(107), Then::kUnplug, 1, 41, {kReadingErrorText}, ""},
    {"read_cut_reconnected", kRead, CutAt(107), Then::kReconnect, 1, 41, {kReadingErrorText}, ""},
    {"read_none_announced", kRead, Lies({{1, 0}}), kNone, 0, 0, {kNothingText}, ""},
    {"read_13_announced", kRead, Lies({{1, 13}}), kNone, 0, 0, {kNothingText}, ""},
    {"read_257_steps", kRead, Lies({{2, 1}, {3, 1}}), kNone, 0, 0, {kReadingErrorText}, ""},
    {"read_overflow_kept", kRead, Lies({{0, 0x5E}, {1, 1}}), Then::kAbort, 1, 42, {kReadText}, "Overflow!"},
    {"read_overflow_unplugged", kRead, Lies({{0, 0xFF}}), Then::kUnplug, 1, 42, {kReadText}, "Overflow!"},
    {"read_overflow_of_little", kRead, {.cut_reply_at = 79, .lying_header = Lie({{0, 0x75}})}, Then::kAbort, 1, 13, {kNothingText}, "Overflow!"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(, FlashFaults, testing::ValuesIn(kFaults),
                         [](const auto& test) { return std::string(test.param.name); });

// A header value that doesn't fit 16 bits stalls the read, after its message, until the operator
// or the line ends it. What stands behind the header is thrown away then.
TEST_F(FlashFaults, ACorruptedHeaderStallsUntilTheWaitIsEnded) {
  FillFlash(ExampleSequences());
  Connect();
  std::array<std::uint8_t, 66> ones{};
  ones.fill(255);
  for (const auto& [lie, then] : {std::pair{Lie({{14, 0x80}}), Then::kAbort},
                                  {Lie({{64, 0xFF}}), Then::kUnplug},
                                  {ones, Then::kAbort}}) {
    board.SetFaults({.lying_header = lie});
    ExpectMessage(kCorruptedText, [&, then = then] {
      hands->When([this] { return hands->Read("Echo") == "Error!"; },
                  [this, then] {
                    EXPECT_TRUE(Reading());
                    Do(then, kReadingErrorText);
                  });
    });
    if (then == Then::kAbort) ExpectMessage(kReadingErrorText);
    Read();
    EXPECT_TRUE(hands->WaitUntil([this] { return box.Outstanding() == 0; }));
    EXPECT_EQ(hands->Read("Echo"), "Error!");
    hands->Click("CommandInBuff");
    EXPECT_EQ(hands->Read("Echo"), "0") << "bytes of the old reply";
    ExpectAtRest();
    ExpectAllOperationsToWork();
  }
}

TEST_F(FlashFaults, WhatADamagedReplyLeavesInTheTable) {
  Connect();
  FillFlash(ExampleSequences());
  // Counts beyond the table are cut, however the read fails.
  for (const auto& [lie, message] : {std::pair{Lie({{2, 1}, {3, 1}}), kReadingErrorText},
                                     {Lie({{1, 0}, {6, 0x7F}, {7, 0xFF}}), kNothingText}}) {
    board.SetFaults({.lying_header = lie});
    ExpectMessage(message);
    Read();
    EXPECT_EQ(std::ranges::max(Data().SeqSteps), 256);
    hands->Click("CommandMoreSeq");
    hands->Click("CommandLessSeq");
    EXPECT_EQ(Lines().size(), Data().SeqSteps[0]);
  }
  // The longest duration that a step can have is 1638 ticks; decoding ends at a longer one.
  board.SetFaults({});
  Sequences sequences = RandomSequences(21, 50);
  sequences[5] = {{{1, 2, 3}, 1638}, {{4, 5, 6}, 1639}, {{7, 8, 9}, 5}};
  FillFlash(sequences);
  ExpectMessage(kReadingErrorText);
  Read();
  EXPECT_EQ(Table()[4], sequences[4]);
  EXPECT_EQ(Table()[5][0], sequences[5][0]);
  EXPECT_EQ(Table()[5][2], (Step{{}, 0}));
  EXPECT_TRUE(Lines().isEmpty());
}

// What the board says before it is asked counts for nothing.
TEST_F(FlashFaults, AnAcknowledgementBeforeItsTimeEndsNoWait) {
  FillFlash(ExampleSequences());
  Connect();
  ExpectMessage(kReadText);
  Read();
  board.SetFaults(kSilent);
  hands->When([this] { return BytesSent(2); },
              [this] {
                hands->Wait(20);
                EXPECT_TRUE(Erasing()) << "the read's answer has ended the erase";
                ExpectMessage(kErasedText, [this] {
                  board.Send({255});
                  EXPECT_TRUE(hands->WaitUntil([this] { return Acknowledged(); }));
                });
                board.Send({255});
              });
  hands->When([this] { return BytesSent(69); },
              [this] {
                hands->Wait(20);
                EXPECT_EQ(board.Log().size(), 69U) << "the erase's answer counted for the header";
                ExpectMessage(kAbortText);
                Abort();
              });
  Program();
  ExpectAtRest();
}

TEST_F(FlashFaults, AnAdapterPulledInTheLastShortBlockIsNoSuccess) {
  Load(Loaded());
  Connect();
  WatchBar([this](int value) {
    if (value < 516 || board.DevicePath().empty()) return;
    Unplug();
    ExpectMessage("Operation Aborted!559");
  });
  ExpectMessage(kErasedText);
  Program();
  ExpectAtRest();
}

}  // namespace
}  // namespace pelmora
