// For tests of the flash operations: the window with the panels of the flash and of the serial line
// open.
#pragma once

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
  FlashTest();
  ~FlashTest() override;

  void Erase() { hands->Click("CommandErase"); }
  void Program() { hands->Click("CommandFlash"); }
  void Read() { hands->Click("CommandRead"); }
  void Abort() { hands->Click("Command1"); }

  // The operation, with the messages of its success.
  void ProgramWell();
  void ReadWell();

  // What programming these sequences sends.
  static Bytes ProgramBytes(const Sequences& sequences);

  // Puts sequences into the board's flash.
  void FillFlash(const Sequences& sequences);

  // Pulls the adapter; the message that says so is expected.
  void Unplug();
  // After `Unplug`, once its message has come: the board is back and "Comm1" chosen again.
  void ConnectAgain();

  // Does `action` once so many bytes are on the line.
  void WhenSent(std::size_t count, std::function<void()> action);

  // What the button shows of the receive buffer.
  QString InBuff() const;

  // The word at the bar's place and the busy pointer over the window.
  bool ShowsErasing() const;

  // No operation is running and none has left anything behind. Holds at the end of each test.
  void ExpectAtRest();
};

}  // namespace pelmora
