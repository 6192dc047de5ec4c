// The shared data of the program: the sequence table, the edit buffer and the flags by which a
// waiting operation and the receive handler talk to each other. It holds data only; the window owns
// the one instance and hands references to the handlers that work on it. Everything is read and
// written on the user-interface thread.
#pragma once

#include <array>
#include <cstdint>

namespace pelmora {

inline constexpr int kSequences = 16;  // numbered 0..15
inline constexpr int kSteps = 256;     // of one sequence, numbered 0..255
inline constexpr int kChannels = 12;   // servo channels 0..11
inline constexpr int kCentre = 128;    // the position byte of a servo's centre

// Columns of an edit buffer row behind the positions.
inline constexpr int kDurationColumn = kChannels;   // the duration in ms
inline constexpr int kBreakColumn = kChannels + 1;  // 1 = breakpoint, 0 = none
inline constexpr int kEditColumns = kChannels + 2;

inline constexpr int kBoardTickMs = 20;       // the board's unit of time
inline constexpr int kStepBytes = 14;         // one step in the flash image
inline constexpr int kFlashCapacity = 24064;  // bytes of step data that the board holds
inline constexpr int kFlashRows = 4097;       // rows of `FlashImage`

// One sequence as it is stored. Rows at and beyond its step count hold leftovers.
struct SequenceRecord {
  std::array<std::array<std::uint8_t, kChannels>, kSteps> Position{};  // [step][channel], 0..255
  std::array<std::int16_t, kSteps> Duration{};                         // [step], ms
};

// One row of the edit buffer: twelve positions (0..255), the duration in ms, the breakpoint flag.
using EditRow = std::array<std::int32_t, kEditColumns>;

struct Declaration {
  // The sequence being edited, 0..15.
  std::uint8_t CurSeq = 0;
  // Number of steps of each sequence, 0..256 (a read-back may bring more until it is checked).
  std::array<std::int16_t, kSequences> SeqSteps{};
  // Byte offset of each sequence in the flash image's step data; 0 for an empty one. 32 bits: 16
  // full sequences need 57344 bytes.
  std::array<std::int32_t, kSequences> SeqOffset{};
  // Length of the flash image's step data in bytes.
  std::int32_t TotalBytes = 0;
  // The store of record of all sequences.
  std::array<SequenceRecord, kSequences> SeqTable{};
  // Working copy of the current sequence; rows beyond the step list's last line hold leftovers.
  std::array<EditRow, kSteps> EditBuffer{};

  // The one byte being written to the board.
  std::array<std::uint8_t, 1> TxBuffer{};
  // Staging area of the step data: byte i of the stream is row i div 14, column i mod 14. Never
  // cleared.
  std::array<std::array<std::uint8_t, kStepBytes>, kFlashRows> FlashImage{};
  // Step-data bytes that a read reply announces, cut to the board's capacity.
  std::int32_t RxCount = 0;
  bool ReadMode = false;      // a read is in progress
  bool ProgramMode = false;   // programming is in progress: incoming bytes are acknowledgements
  bool EraseMode = false;     // an erase is in progress: incoming bytes are acknowledgements
  bool AckReceived = false;   // set by the receive handler, cleared by the waiting operation
  bool AbortRequest = false;  // set by "Abort", polled by every wait

  // Number proposed in the name of the next saved file, less one; counts the saves of this run.
  std::int16_t SaveCounter = 0;
  // The line on which a mouse button was last pressed in the step list, -1 when on none.
  std::int16_t DragFromIndex = -1;
};

}  // namespace pelmora
