// Each flash operation against each fault of the board, of the line, and each way for the operator
// to end a wait: the messages, what is left, and that the next operation works.
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
  kAnswer,  // the board acknowledges after all
  kAbort,
  kUnplug,
  kReconnect,  // the adapter is pulled, put back and chosen again, all within the wait
  kQuit,
  kClose,
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

std::string NameOf(const testing::TestParamInfo<Fault>& test) {
  return test.param.name;
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

std::array<std::uint8_t, 66> AllOnes() {
  std::array<std::uint8_t, 66> lie{};
  lie.fill(255);
  return lie;
}

// The program holds 600 bytes of steps, less the 12 that are no whole step: two blocks and a rest.
Sequences Loaded() {
  return RandomSequences(20, 42);
}

class FaultTest : public FlashTest {
 protected:
  void Start(Operation operation) {
    switch (operation) {
      case Operation::kErase:
        return Erase();
      case Operation::kProgram:
        return Program();
      case Operation::kRead:
        return Read();
    }
  }

  // `message` is what the operation says of a lost connection, after the loss itself.
  void Do(Then then, const QString& message) {
    switch (then) {
      case Then::kNothing:
        return;
      case Then::kAnswer:
        return board.Send({255});
      case Then::kAbort:
        return Abort();
      case Then::kUnplug:
        Unplug();
        return ExpectMessage(message);
      case Then::kReconnect:
        Unplug();
        ExpectMessage(message);
        return ConnectAgain();
      case Then::kQuit:
        return Trigger("Quit");
      case Then::kClose:
        form->close();
        return;
    }
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
    ExpectMessage(kErasedText);
    Erase();
    ExpectMessage(kErasedText);
    ExpectMessage(kProgrammedText);
    Program();
    board.ClearLog();
    EXPECT_TRUE(
        hands->WaitUntil([this] { return board.FlashData() == StepDataOf(ExampleSequences()); }));
    ExpectAtRest();
  }
};

class FlashFaults : public FaultTest, public testing::WithParamInterface<Fault> {};

TEST_P(FlashFaults, EndAsTheOperatorIsToldAndLeaveNothingBehind) {
  const Fault& fault = GetParam();
  FillFlash(ExampleSequences());
  Load(Loaded());
  Connect();
  board.SetFaults(fault.faults);
  const bool ends = fault.then == Then::kQuit || fault.then == Then::kClose;
  bool done = fault.then == Then::kNothing;
  if (!done) {
    hands->When([&] { return BytesSent(fault.sent) && Bar() >= fault.waiting; },
                [&] {
                  Do(fault.then, fault.messages.empty() ? QString() : fault.messages.back());
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
  EXPECT_EQ(events.Ending(), ends);
  if (fault.operation != Operation::kRead) {
    EXPECT_EQ(Table(), Loaded());
  }
  if (ends) {
    const Bytes sent = Sent(fault.sent + 1);
    const Bytes stop(fault.then == Then::kQuit ? 1 : 2, 0);
    EXPECT_EQ(Bytes(sent.begin() + static_cast<std::ptrdiff_t>(fault.sent), sent.end()), stop);
  } else {
    ExpectAllOperationsToWork();
  }
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
constexpr std::size_t kSentHeader = 68;
constexpr std::size_t kSentBlock = 68 + 256;
constexpr std::size_t kSent2Blocks = 68 + 512;

const auto kErase = Operation::kErase;
const auto kProgram = Operation::kProgram;
const auto kRead = Operation::kRead;
const auto kNone = Then::kNothing;
const auto kOk = kProgrammedText;
const auto kCut255 = "Operation Aborted!255";
const auto kCut511 = "Operation Aborted!511";

// clang-format off: a case on each line.
INSTANTIATE_TEST_SUITE_P(
    Erasing, FlashFaults,
    testing::Values(
        Fault{"late", kErase, kLate, kNone, 0, 0, {kErasedText}, ""},
        Fault{"wrong", kErase, WrongFirst({0, 254}), kNone, 0, 0, {kErasedText}, "Error!"},
        Fault{"doubled", kErase, kDoubled, kNone, 0, 0, {kErasedText}, nullptr},
        Fault{"answered", kErase, kSilent, Then::kAnswer, kSent7, 0, {kErasedText}, ""},
        Fault{"unplugged", kErase, kSilent, Then::kUnplug, kSent7, 0, {kAbortText}, ""},
        Fault{"reconnected", kErase, kSilent, Then::kReconnect, kSent7, 0, {kAbortText}, ""},
        Fault{"quit", kErase, kSilent, Then::kQuit, kSent7, 0, {}, ""},
        Fault{"closed", kErase, kSilent, Then::kClose, kSent7, 0, {}, ""}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Programming, FlashFaults,
    testing::Values(
        Fault{"late", kProgram, kLate, kNone, 0, 0, {kErasedText, kOk}, ""},
        Fault{"wrong", kProgram, WrongFirst({0}), kNone, 0, 0, {kErasedText, kOk}, "Error!"},
        Fault{"doubled", kProgram, kDoubled, kNone, 0, 0, {kErasedText, kOk}, nullptr},
        Fault{"unplugged_0", kProgram, kSilent, Then::kUnplug, kSent7, 0, {kAbortText}, ""},
        Fault{"reconnected_0", kProgram, kSilent, Then::kReconnect, kSent7, 0, {kAbortText}, ""},
        Fault{"quit_0", kProgram, kSilent, Then::kQuit, kSent7, 0, {}, ""},
        Fault{"closed_0", kProgram, kSilent, Then::kClose, kSent7, 0, {}, ""},
        Fault{"aborted_1",
              kProgram,
              Acks(1),
              Then::kAbort,
              kSentHeader,
              0,
              {kErasedText, kAbortText},
              ""},
        Fault{"unplugged_1",
              kProgram,
              Acks(1),
              Then::kUnplug,
              kSentHeader,
              0,
              {kErasedText, kAbortText},
              ""},
        Fault{"reconnected_1",
              kProgram,
              Acks(1),
              Then::kReconnect,
              kSentHeader,
              0,
              {kErasedText, kAbortText},
              ""},
        Fault{"quit_1", kProgram, Acks(1), Then::kQuit, kSentHeader, 0, {kErasedText}, ""},
        Fault{"closed_1", kProgram, Acks(1), Then::kClose, kSentHeader, 0, {kErasedText}, ""},
        Fault{"aborted_2",
              kProgram,
              Acks(2),
              Then::kAbort,
              kSentBlock,
              0,
              {kErasedText, kCut255},
              ""},
        Fault{"unplugged_2",
              kProgram,
              Acks(2),
              Then::kUnplug,
              kSentBlock,
              0,
              {kErasedText, kCut255},
              ""},
        Fault{"answered_3",
              kProgram,
              Acks(3),
              Then::kAnswer,
              kSent2Blocks,
              0,
              {kErasedText, kOk},
              ""},
        Fault{"aborted_3",
              kProgram,
              Acks(3),
              Then::kAbort,
              kSent2Blocks,
              0,
              {kErasedText, kCut511},
              ""},
        Fault{"reconnected_3",
              kProgram,
              Acks(3),
              Then::kReconnect,
              kSent2Blocks,
              0,
              {kErasedText, kCut511},
              ""},
        Fault{"quit_3", kProgram, Acks(3), Then::kQuit, kSent2Blocks, 0, {kErasedText}, ""},
        Fault{"closed_3", kProgram, Acks(3), Then::kClose, kSent2Blocks, 0, {kErasedText}, ""}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Reading, FlashFaults,
    testing::Values(
        Fault{"late", kRead, kLate, kNone, 0, 0, {kReadText}, ""},
        // Everything is shifted by a byte: no data announced, counts far too large.
        Fault{"wrong", kRead, WrongFirst({0}), kNone, 0, 0, {kNothingText}, ""},
        Fault{"too_much", kRead, {.after_reply = Bytes(500, 7)}, kNone, 0, 0, {kReadText}, ""},
        Fault{"silent_aborted", kRead, kSilent, Then::kAbort, 1, 0, {kReadingErrorText}, ""},
        Fault{"silent_unplugged", kRead, kSilent, Then::kUnplug, 1, 0, {kReadingErrorText}, ""},
        Fault{
            "silent_reconnected", kRead, kSilent, Then::kReconnect, 1, 0, {kReadingErrorText}, ""},
        Fault{"silent_quit", kRead, kSilent, Then::kQuit, 1, 0, {}, ""},
        Fault{"silent_closed", kRead, kSilent, Then::kClose, 1, 0, {}, ""},
        Fault{"header_cut", kRead, CutAt(65), Then::kAbort, 1, 0, {kReadingErrorText}, ""},
        Fault{"cut_aborted", kRead, CutAt(107), Then::kAbort, 1, 41, {kReadingErrorText}, ""},
        Fault{"cut_unplugged", kRead, CutAt(107), Then::kUnplug, 1, 41, {kReadingErrorText}, ""},
        Fault{
            "cut_reconnected", kRead, CutAt(107), Then::kReconnect, 1, 41, {kReadingErrorText}, ""},
        Fault{"cut_quit", kRead, CutAt(107), Then::kQuit, 1, 41, {}, ""},
        Fault{"cut_closed", kRead, CutAt(107), Then::kClose, 1, 41, {}, ""},
        Fault{"none_announced", kRead, Lies({{1, 0}}), kNone, 0, 0, {kNothingText}, ""},
        Fault{"thirteen_announced", kRead, Lies({{1, 13}}), kNone, 0, 0, {kNothingText}, ""},
        Fault{"257_steps", kRead, Lies({{2, 1}, {3, 1}}), kNone, 0, 0, {kReadingErrorText}, ""},
        Fault{"overflow_kept",
              kRead,
              Lies({{0, 0x5E}, {1, 1}}),
              Then::kAbort,
              1,
              42,
              {kReadText},
              "Overflow!"},
        Fault{"overflow_unplugged",
              kRead,
              Lies({{0, 0xFF}}),
              Then::kUnplug,
              1,
              42,
              {kReadText},
              "Overflow!"},
        Fault{"overflow_of_little",
              kRead,
              {.cut_reply_at = 79, .lying_header = Lie({{0, 0x75}})},
              Then::kAbort,
              1,
              13,
              {kNothingText},
              "Overflow!"},
        Fault{"overflow_quit", kRead, Lies({{0, 0x75}}), Then::kQuit, 1, 42, {}, "Overflow!"}),
    NameOf);
// clang-format on

// A header value that doesn't fit 16 bits stalls the read, after its message, until the operator
// or the line ends it.
class CorruptedHeader : public FaultTest, public testing::WithParamInterface<Then> {};

TEST_P(CorruptedHeader, StallsUntilTheWaitIsCut) {
  FillFlash(ExampleSequences());
  for (const auto& lie : {Lie({{14, 0x80}}), Lie({{64, 0xFF}}), AllOnes()}) {
    if (!hands || events.Ending()) break;
    if (Enabled("ComboPort")) Connect();
    board.SetFaults({.lying_header = lie});
    bool stalled = false;
    ExpectMessage(kCorruptedText, [&] {
      stalled = true;
      hands->When([this] { return hands->Read("Echo") == "Error!"; },
                  [this] {
                    EXPECT_TRUE(Reading());
                    Do(GetParam(), kReadingErrorText);
                  });
    });
    if (GetParam() == Then::kAbort) ExpectMessage(kReadingErrorText);
    Read();
    EXPECT_TRUE(stalled);
    EXPECT_TRUE(hands->WaitUntil([this] { return box.Outstanding() == 0; }));
    EXPECT_EQ(hands->Read("Echo"), "Error!");
    ExpectAtRest();
    if (!events.Ending()) ExpectAllOperationsToWork();
  }
}

INSTANTIATE_TEST_SUITE_P(Reading, CorruptedHeader,
                         testing::Values(Then::kAbort, Then::kUnplug, Then::kQuit, Then::kClose));

class FlashData : public FaultTest {};

TEST_F(FlashData, StepCountsBeyondTheTableAreCutHoweverTheReadFails) {
  Connect();
  FillFlash(ExampleSequences());
  for (const auto& [changes, steps] :
       {std::pair{Lie({{2, 1}, {3, 1}}), 256}, {Lie({{1, 0}, {6, 0x7F}, {7, 0xFF}}), 256}}) {
    board.SetFaults({.lying_header = changes});
    ExpectMessage(changes[1] == 0 ? kNothingText : kReadingErrorText);
    Read();
    EXPECT_EQ(std::ranges::max(Data().SeqSteps), steps);
    hands->Click("CommandMoreSeq");
    hands->Click("CommandLessSeq");
    EXPECT_EQ(Lines().size(), Data().SeqSteps[0]);
  }
}

// The longest duration that a step can have is 1638 ticks.
TEST_F(FlashData, ADurationTooLongEndsTheDecodingThere) {
  Connect();
  Sequences sequences = RandomSequences(21, 50);
  const std::vector<Step> before = sequences[4];
  sequences[5] = {{{1, 2, 3}, 1638}, {{4, 5, 6}, 1639}, {{7, 8, 9}, 5}};
  FillFlash(sequences);
  ExpectMessage(kReadingErrorText);
  Read();
  EXPECT_EQ(Table()[4], before);
  EXPECT_EQ(Table()[5][0], sequences[5][0]);
  EXPECT_EQ(Table()[5][1].ticks, 0);
  EXPECT_EQ(Table()[5][2], (Step{{}, 0}));
  EXPECT_TRUE(Lines().isEmpty());
}

TEST_F(FlashData, RowsThatDidNotComeAreThoseOfTheImageBefore) {
  Connect();
  const Sequences former = RandomSequences(22, 10);
  FillFlash(former);
  ExpectMessage(kReadText);
  Read();
  FillFlash(ExampleSequences());
  board.SetFaults({.lying_header = Lie({{3, 4}})});
  ExpectMessage(kReadText);
  Read();
  // Sequence 0 claims four steps: the third is the last one that came, the fourth an old one; and
  // sequence 3 goes on from there.
  const Bytes old = StepDataOf(former);
  ASSERT_EQ(Table()[0].size(), 4U);
  EXPECT_EQ(Table()[0][2], ExampleSequences()[3][0]);
  EXPECT_TRUE(std::ranges::equal(Table()[0][3].positions, std::span(old).subspan(3 * 14, 12)));
  EXPECT_TRUE(std::ranges::equal(Table()[3][0].positions, std::span(old).subspan(4 * 14, 12)));
}

struct Ending {
  const char* name;
  Operation operation;
  Faults faults;
  const char* message;
};

void PrintTo(const Ending& ending, std::ostream* out) {
  *out << ending.name;
}

// The operator ends the program while a message of an operation is open.
class EndsInAMessage : public FaultTest, public testing::WithParamInterface<Ending> {};

TEST_P(EndsInAMessage, NothingMoreIsSentOrSaid) {
  FillFlash(ExampleSequences());
  board.SetFaults(GetParam().faults);
  Connect();
  ExpectMessage(GetParam().message, [this] { Trigger("Quit"); });
  Start(GetParam().operation);
  EXPECT_TRUE(events.Ending());
  EXPECT_EQ(Sent(2).size(), 2U);
  ExpectAtRest();
}

INSTANTIATE_TEST_SUITE_P(
    , EndsInAMessage,
    testing::Values(Ending{"erased", kErase, {}, kErasedText},
                    Ending{"erased_to_program", kProgram, {}, kErasedText},
                    Ending{"read", kRead, {}, kReadText},
                    Ending{"corrupted", kRead, {.lying_header = AllOnes()}, kCorruptedText},
                    Ending{"nothing", kRead, Lies({{1, 0}}), kNothingText}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace pelmora
