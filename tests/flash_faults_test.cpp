// Each flash operation against each fault of the board and of the line, and against the operator
// who ends a wait: the messages, what is left, and that the next operation works.
#include <QElapsedTimer>

#include "tests/flash_fixture.h"

namespace pelmora {
namespace {

using simboard::Faults;
using namespace std::chrono_literals;

// What happens in the wait.
enum Then {
  kNothing,
  kAnswerAndMore,  // the board acknowledges after all, with a wrong byte right behind
  kAbort,
  kUnplug,
  kReconnect,  // the adapter is pulled, put back and chosen again, all within the wait
};

struct Fault {
  const char* name;
  QString button;
  Faults faults;
  QStringList messages;
  const char* echo;  // null when it depends on how far apart two bytes arrive
  Then then = kNothing;
  std::size_t sent = 0;  // bytes on the line when it happens
  int waiting = 0;       // step data shown by the bar when it happens
  int total = -1;        // `TotalBytes` at the end, where it isn't that of the sequences
};

const Faults kSilent{.silent = true};

// The example's header with some bytes changed.
std::array<std::uint8_t, 66> Lie(std::initializer_list<std::pair<std::size_t, int>> changes) {
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

  // `message` is what the operation says of a lost connection, after the loss itself.
  void Do(Then then, const QString& message) {
    if (then == kAnswerAndMore) board.Send({255, 3});
    if (then == kAbort) Abort();
    if (then != kUnplug && then != kReconnect) return;
    Unplug();
    ExpectMessage(message);
    if (then == kReconnect) ConnectAgain();
  }

  void ExpectAllOperationsToWork() {
    if (Enabled("ComboPort")) ConnectAgain();
    while (board.WaitForBytes(board.Log().size() + 1, 20ms)) continue;
    FillFlash(ExampleSequences());  // ends a program that the board is still waiting for, too
    board.ClearLog();
    board.SetFaults(kSilent);
    WhenSent(1, [this] { Abort(); });
    ExpectMessage(kReadingErrorText);
    Read();
    board.SetFaults({});
    board.Send({65});
    EXPECT_TRUE(hands->WaitUntil([this] { return hands->Read("Echo") == "65"; }));
    ReadWell();
    EXPECT_EQ(Table(), ExampleSequences());
    board.SetFaults({.reply_delay = 15ms});
    QElapsedTimer clock;
    clock.start();
    ExpectMessage(kErasedText, [&] { EXPECT_GE(clock.elapsed(), 15) << "not yet answered"; });
    ExpectMessage(kProgrammedText);
    Program();
    EXPECT_TRUE(
        hands->WaitUntil([this] { return board.FlashData() == StepDataOf(ExampleSequences()); }));
    board.SetFaults({});
  }
};

TEST_P(FlashFaults, EndAsTheOperatorIsToldAndLeaveNothingBehind) {
  const Fault& fault = GetParam();
  FillFlash(ExampleSequences());
  Load(Loaded());
  Connect();
  board.SetFaults(fault.faults);
  QStringList messages = fault.messages;
  if (fault.then == kUnplug || fault.then == kReconnect) messages.removeLast();
  for (const QString& message : messages) ExpectMessage(message);
  if (fault.then != kNothing) {
    const auto time = [&] { return board.WaitForBytes(fault.sent, {}) && Bar() >= fault.waiting; };
    hands->When(time, [&] {
      EXPECT_EQ(board.Log().size(), fault.sent) << "more was sent than answered";
      Do(fault.then, fault.messages.back());
    });
  }
  hands->Click(fault.button);
  EXPECT_TRUE(hands->WaitUntil([this] { return box.Outstanding() == 0; }));
  EXPECT_TRUE(hands->WaitUntil([&] { return !fault.echo || hands->Read("Echo") == fault.echo; }))
      << hands->Read("Echo").toStdString();
  ExpectAtRest();
  if (fault.button != "CommandRead") {
    EXPECT_EQ(Table(), Loaded());
  } else if (fault.total >= 0) {
    EXPECT_EQ(Data().TotalBytes, fault.total);
  }
  ExpectAllOperationsToWork();
}

constexpr char kErase[] = "CommandErase";
constexpr char kProgram[] = "CommandFlash";
constexpr char kRead[] = "CommandRead";
// A case on each line. An erase waits with 1 byte on the line; programming with 1, with 68 (command
// and header), and with 256 more after each block. A wrong byte before a read reply shifts it by a
// byte: no data is announced, and the counts are far too large.
// clang-format off
const Fault kFaults[] = {
    {"erase_answered_and_more", kErase, kSilent, {kErasedText}, nullptr, kAnswerAndMore, 1},
    {"erase_unplugged", kErase, kSilent, {kAbortText}, "", kUnplug, 1},
    {"program_doubled", kProgram, {.extra_replies = 1}, {kErasedText, kProgrammedText}, nullptr},
    {"program_reconnected_0", kProgram, kSilent, {kAbortText}, "", kReconnect, 1},
    {"program_reconnected_1", kProgram, {.silent_after_acks = 1}, {kErasedText, kAbortText}, "", kReconnect, 68},
    {"program_aborted_2", kProgram, {.silent_after_acks = 2}, {kErasedText, "Operation Aborted!255"}, "", kAbort, 324},
    {"program_unplugged_2", kProgram, {.silent_after_acks = 2}, {kErasedText, "Operation Aborted!255"}, "", kUnplug, 324},
    {"program_reconnected_3", kProgram, {.silent_after_acks = 3}, {kErasedText, "Operation Aborted!511"}, "", kReconnect, 580},
    {"read_late", kRead, {.reply_delay = 20ms}, {kReadText}, ""},
    {"read_wrong", kRead, {.before_reply = {0}}, {kNothingText}, ""},
    {"read_too_much", kRead, {.after_reply = Bytes(500, 7)}, {kReadText}, ""},
    {"read_silent_reconnected", kRead, kSilent, {kReadingErrorText}, "", kReconnect, 1},
    {"read_header_cut", kRead, {.cut_reply_at = 65}, {kReadingErrorText}, "", kAbort, 1},
    {"read_cut_aborted", kRead, {.cut_reply_at = 107}, {kReadingErrorText}, "", kAbort, 1, 41, 42},
    {"read_cut_unplugged", kRead, {.cut_reply_at = 107}, {kReadingErrorText}, "", kUnplug, 1, 41},
    {"read_cut_reconnected", kRead, {.cut_reply_at = 107}, {kReadingErrorText}, "", kReconnect, 1, 41},
    {"read_13_announced", kRead, {.lying_header = Lie({{1, 13}})}, {kNothingText}, ""},
    {"read_counts_only", kRead, {.lying_header = Lie({{1, 0}, {6, 0x7F}, {7, 0xFF}})}, {kNothingText}, ""},
    {"read_overflow_kept", kRead, {.lying_header = Lie({{0, 0x5E}, {1, 1}})}, {kReadText}, "Overflow!", kAbort, 1, 42, 24064},
    {"read_overflow_filled", kRead, {.lying_header = Lie({{0, 0x7F}}), .after_reply = Bytes(24064 - 42, 7)}, {kReadText}, "Overflow!"},
    {"read_overflow_unplugged", kRead, {.lying_header = Lie({{0, 0xFF}})}, {kReadText}, "Overflow!", kUnplug, 1, 42, 24064},
    {"read_overflow_of_little", kRead, {.cut_reply_at = 79, .lying_header = Lie({{0, 0x75}})}, {kNothingText}, "Overflow!", kAbort, 1, 13, 24064},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(, FlashFaults, testing::ValuesIn(kFaults),
                         [](const auto& test) { return std::string(test.param.name); });

// A header value that doesn't fit 16 bits stalls the read, after its message, until the operator
// or the line ends it. What stands behind the header is thrown away then.
TEST_F(FlashFaults, ACorruptedHeaderStallsUntilTheWaitIsEnded) {
  FillFlash(ExampleSequences());
  Connect();
  for (const auto& [lie, then] : {std::pair{Lie({{14, 0x80}}), kAbort},
                                  {Lie({{64, 0xFF}}), kUnplug},
                                  {Lie({{0, 0xFF}, {14, 0xFF}}), kAbort}}) {
    board.SetFaults({.lying_header = lie});
    ExpectMessage(kCorruptedText, [&, then = then] {
      EXPECT_NE(hands->Read("Echo"), "Error!") << "before the message has been read";
      hands->When([this] { return hands->Read("Echo") == "Error!"; },
                  [this, then] { Do(then, kReadingErrorText); });
    });
    if (then == kAbort) ExpectMessage(kReadingErrorText);
    Read();
    EXPECT_TRUE(hands->WaitUntil([this] { return box.Outstanding() == 0; }));
    EXPECT_EQ(hands->Read("Echo"), "Error!");
    EXPECT_EQ(InBuff(), "0") << "bytes of the old reply";
    ExpectAllOperationsToWork();
  }
}

// More has come than the board holds when an overflow is aborted: it is cut once more. With another
// word in the box nothing is kept.
TEST_F(FlashFaults, AnAbortedOverflowKeepsNoMoreThanTheBoardHolds) {
  FillFlash(ExampleSequences());
  Connect();
  for (const bool counted : {false, true}) {
    board.SetFaults({.lying_header = Lie({{0, 0x7F}})});
    WhenBar(42, [this, counted] {
      board.Send(Bytes(24100 - 42, 7));
      QTest::qWait(200);
      EXPECT_EQ(BarMaximum(), 0x7F * 256 + 42 - 1);
      if (counted) hands->Click("CommandInBuff");
      ExpectMessage(counted ? kReadingErrorText : kReadText);
      Abort();
    });
    Read();
    EXPECT_EQ(form->Link().Reply().RxCount, counted ? 0 : 24064);
    ExpectAllOperationsToWork();
  }
}

// What is said of the sequences when the line is lost in and around reads.
TEST_F(FlashFaults, ALossSaysWhetherAReadHasEmptiedTheSequences) {
  constexpr char kUntouched[] = "Your sequences are untouched.";
  constexpr char kEmptied[] =
      "Your sequences were cleared when the read began; undo (Ctrl+Z) brings them back.";
  const auto expect_loss = [this](const char* sequences) {
    ExpectMessage("The connection on Comm1 (" + QString::fromStdString(board.DevicePath()) +
                  ") is lost: the adapter was pulled or the line hung up.\n\n" + sequences +
                  " Choose a port to connect again.");
  };
  const auto unplug = [&](const char* sequences) {
    expect_loss(sequences);
    board.Unplug();
    EXPECT_TRUE(hands->WaitUntil([this] { return Enabled("ComboPort"); }));
  };
  FillFlash(ExampleSequences());
  Connect();
  // While a read that has succeeded says so, and while one that has failed does.
  ExpectMessage(kReadText, [&] { unplug(kUntouched); });
  Read();
  ConnectAgain();
  board.SetFaults(kSilent);
  WhenSent(1, [this] { Abort(); });
  ExpectMessage(kReadingErrorText, [&] { unplug(kEmptied); });
  Read();
  ConnectAgain();
  unplug(kUntouched);
  ConnectAgain();
  // A read inside it has ended, aborted.
  WhenSent(1, [&] {
    WhenSent(2, [this] { Abort(); });
    ExpectMessage(kReadingErrorText);
    Read();
    expect_loss(kEmptied);
    ExpectMessage(kReadingErrorText);
    board.Unplug();
  });
  board.ClearLog();
  Read();
  ConnectAgain();
  // A write has found the loss in this very turn.
  expect_loss(kEmptied);
  board.Unplug();
  SetSlider(0, 77);
  EXPECT_FALSE(form->Link().Port().Connected());
  Press("CommandRead");
  EXPECT_TRUE(hands->WaitUntil([this] { return Enabled("ComboPort"); }));
}

// What the board says before it is asked counts for nothing.
TEST_F(FlashFaults, AnAcknowledgementBeforeItsTimeEndsNoWait) {
  Load(ExampleSequences());
  Connect();
  board.SetFaults({.silent_after_acks = 1});
  ExpectMessage(kErasedText, [this] {
    board.Send({255});
    EXPECT_TRUE(hands->WaitUntil([this] { return Acknowledged(); }));
  });
  WhenSent(68, [this] {
    EXPECT_EQ(board.Log().size(), 68U) << "the erase's answer counted for the header";
    ExpectMessage(kAbortText);
    Abort();
  });
  Program();
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
}

}  // namespace
}  // namespace pelmora
