// For tests of the flash operations: the window with the panels of the flash and of the serial line
// open.
#pragma once

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <QRegularExpression>

#include "rig/program_state.h"
#include "tests/window_fixture.h"

namespace pelmora {

inline constexpr char kErasedText[] = "Data Flash Erased";
inline constexpr char kProgrammedText[] = "Data Flash Programmed!";
inline constexpr char kReadText[] = "Data Flash Read!";
inline constexpr char kNothingText[] = "Nothing to Read!";
inline constexpr char kReadingErrorText[] = "Reading Error!";
inline constexpr char kAbortText[] = "Operation Aborted!";  // may be followed by a number

// Sends bytes from the board and returns when they are here, without looking at events.
inline void Arrive(simboard::SimulatedBoard& board, const Bytes& bytes) {
  const int line = open(board.DevicePath().c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK);
  int before = 0;
  ioctl(line, FIONREAD, &before);
  board.Send(bytes);
  int here = before;
  for (int turn = 0; turn < 5000 && here < before + static_cast<int>(bytes.size()); ++turn) {
    QTest::qSleep(1);
    ioctl(line, FIONREAD, &here);
  }
  EXPECT_EQ(here - before, bytes.size());
  close(line);
}

class FlashTest : public WindowTest {
 protected:
  FlashTest() {
    Trigger("FreshProg");
    Trigger("Serial");
  }
  ~FlashTest() override { ExpectAtRest(); }

  void Program() { hands->Click("CommandFlash"); }
  void Read() { hands->Click("CommandRead"); }
  void Abort() { hands->Click("Command1"); }

  // The operation, with the messages of its success.
  void ProgramWell() {
    ExpectMessage(kErasedText);
    ExpectMessage(kProgrammedText);
    Program();
  }
  void ReadWell() {
    ExpectMessage(kReadText);
    Read();
  }

  // What programming these sequences sends.
  static Bytes ProgramBytes(const Sequences& sequences) {
    return Bytes{7, 2} + HeaderOf(sequences) + StepDataOf(sequences);
  }

  // Puts sequences into the board's flash.
  void FillFlash(const Sequences& sequences) {
    board.SetFlash(HeaderOf(sequences), StepDataOf(sequences));
  }

  // Pulls the adapter; the message that says so is expected.
  void Unplug() {
    ExpectLoss();
    board.Unplug();
  }
  // After `Unplug`, once its message has come: the board is back and "Comm1" chosen again.
  void ConnectAgain() {
    ASSERT_TRUE(hands->WaitUntil([this] { return Enabled("ComboPort"); }));
    board.Replug();
    Connect();
  }

  // Does `action` once so many bytes are on the line.
  void WhenSent(std::size_t count, std::function<void()> action) {
    hands->When([this, count] { return board.WaitForBytes(count, {}); }, std::move(action));
  }

  // The word at the bar's place and the busy pointer over the window.
  bool ShowsErasing() const {
    const bool shown = hands->Find<QWidget>("LabelErase").isVisible();
    const bool busy = hands->Find<QWidget>("CommandAdd").cursor().shape() == Qt::BusyCursor;
    EXPECT_EQ(shown, busy);
    return shown;
  }

  // Everything is as it was then, but for what can be undone and redone now, for the focus, and for
  // what the window "Movement" says of the pointer.
  void ExpectAsIn(const ProgramState& then) {
    const QRegularExpression wanted("^(?!undo|redo|focus|Movement)");
    const QStringList differing = Difference(then, StateOf(*this)).filter(wanted);
    EXPECT_EQ(differing.join(" · ").toStdString(), "");
  }
  // The change that "Undo" or "Redo" would name; "none" where it is disabled.
  QString NameOf(const char* command) const { return StateOf(*this).values[command]; }

  // No operation is running and none has left anything behind. Holds at the end of each test.
  void ExpectAtRest() {
    EXPECT_FALSE(Waiting());
    EXPECT_FALSE(AbortRequested());
    EXPECT_FALSE(Enabled("Command1"));
    EXPECT_FALSE(BarShown());
    EXPECT_FALSE(ShowsErasing());
    EXPECT_LE(std::ranges::max(Data().SeqSteps), kMostSteps);
  }
};

}  // namespace pelmora
