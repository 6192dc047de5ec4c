// For tests of the flash operations: sequences, the image that the board has to hold for them, and
// the window with the panels of the flash and of the serial line open.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/window_fixture.h"

namespace pelmora {

inline constexpr char kErasedText[] = "Data Flash Erased";
inline constexpr char kProgrammedText[] = "Data Flash Programmed!";
inline constexpr char kReadText[] = "Data Flash Read!";
inline constexpr char kNothingText[] = "Nothing to Read!";
inline constexpr char kReadingErrorText[] = "Reading Error!";
inline constexpr char kAbortText[] = "Operation Aborted!";  // may be followed by a number
inline constexpr char kCorruptedText[] = "Impossible to Load Sequences! Flash memory corrupted.";

struct FlashStep {
  std::array<std::uint8_t, 12> positions;
  int ticks;  // of 20 ms

  bool operator==(const FlashStep&) const = default;
};

using FlashSequences = std::array<std::vector<FlashStep>, 16>;

// "00 2A FF".
Bytes Hex(const std::string& text);
Bytes operator+(Bytes left, const Bytes& right);

// Encoded here from the layout, not by the program's own code.
Bytes HeaderOf(const FlashSequences& sequences);
Bytes StepDataOf(const FlashSequences& sequences);

// `steps` (up to 4096) random steps, spread at random over the sequences.
FlashSequences RandomSequences(unsigned seed, int steps);

// Three steps, 42 bytes: two in sequence 0, one in sequence 3.
FlashSequences ExampleSequences();

class FlashTest : public WindowTest {
 protected:
  FlashTest();

  // Makes the sequences the program's, by a buffer file.
  void Load(const FlashSequences& sequences);
  FlashSequences Table() const;

  // The operator's choice of a menu item, made at once.
  void Trigger(const char* item);
  void Erase() { hands->Click("CommandErase"); }
  void Program() { hands->Click("CommandFlash"); }
  void Read() { hands->Click("CommandRead"); }
  void Abort() { hands->Click("Command1"); }

  // Pulls the adapter; the message that says so is expected.
  void Unplug();
  // After `Unplug`, once its message has come: the board is back and "Comm1" chosen again.
  void ConnectAgain();

  int Bar() const;
  bool BarShown() const;
  bool BytesSent(std::size_t count) const { return board.WaitForBytes(count, {}); }

  // No operation is running and none has left anything behind.
  void ExpectAtRest();

 private:
  bool told_of_loss_ = false;
};

}  // namespace pelmora
