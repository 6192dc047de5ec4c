// For tests of the flash operations: the window with the panels of the flash and of the serial line
// open.
#pragma once

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
inline constexpr char kDisturbedText[] =
    "Something else was sent to the board while its flash was written: a slider moved, or a "
    "playback or a switch was used. The flash is not what the sequences are. Program again.";
inline constexpr char kCorruptedText[] = "Impossible to Load Sequences! Flash memory corrupted.";

class FlashTest : public WindowTest {
 protected:
  FlashTest() {
    Trigger("FreshProg");
    Trigger("Serial");
  }
  ~FlashTest() override { ExpectAtRest(); }

  void Erase() { hands->Click("CommandErase"); }
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

  // Does `action` once the bar shows so much step data.
  void WhenBar(int bytes, std::function<void()> action) {
    hands->When([this, bytes] { return Bar() == bytes; }, std::move(action));
  }

  bool Connected() const { return form->Link().Port().Connected(); }

  // What the button shows of the receive buffer.
  QString InBuff() const {
    hands->Click("CommandInBuff");
    return hands->Read("Echo");
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
