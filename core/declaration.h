// The data that the program works on, and the constants that give it its shape. Everything is read
// and written on the user-interface thread.
#pragma once

#include <array>
#include <cstdint>

namespace pelmora {

inline constexpr int kSequences = 16;  // numbered 0..15
inline constexpr int kSteps = 256;     // of one sequence, numbered 0..255
inline constexpr int kChannels = 12;   // servo channels 0..11
inline constexpr int kCentre = 128;    // the position byte of a servo's centre
inline constexpr int kHighestPosition = 255;

// Columns of an edit buffer row behind the positions.
inline constexpr int kDurationColumn = kChannels;   // the duration in ms
inline constexpr int kBreakColumn = kChannels + 1;  // 1 = breakpoint, 0 = none
inline constexpr int kEditColumns = kChannels + 2;

// What the editor takes as a step's duration, in ms; the table can't hold a longer one.
inline constexpr int kShortestDuration = 20;
inline constexpr int kLongestDuration = 32767;

inline constexpr int kBoardTickMs = 20;                  // the board's unit of time
inline constexpr int kStepBytes = kChannels + 2;         // one step in the flash image
inline constexpr int kHeaderBytes = 2 + 4 * kSequences;  // of the flash image
inline constexpr int kFlashCapacity = 24064;             // bytes of step data that the board holds
inline constexpr int kFlashRows = kSequences * kSteps + 1;  // of `FlashImage`

// One sequence as it is stored. Rows at and beyond its step count hold leftovers.
struct SequenceRecord {
  std::array<std::array<std::uint8_t, kChannels>, kSteps> Position{};  // [step][channel], 0..255
  std::array<std::int16_t, kSteps> Duration{};                         // [step], ms

  bool operator==(const SequenceRecord&) const = default;
};

// The figures of all 16 sequences in the flash image. The functions of core/ write them, on a table
// that its owner hands in.
struct FlashFigures {
  // Number of steps of each sequence, 0..256.
  std::array<std::int16_t, kSequences> SeqSteps{};
  // Byte offset of each sequence in the flash image's step data; 0 for an empty one. 32 bits: 16
  // full sequences need 57344 bytes.
  std::array<std::int32_t, kSequences> SeqOffset{};
  // Length of the flash image's step data in bytes.
  std::int32_t TotalBytes = 0;

  bool operator==(const FlashFigures&) const = default;
};

// All 16 sequences.
struct SequenceTable : FlashFigures {
  std::array<SequenceRecord, kSequences> SeqTable{};

  bool operator==(const SequenceTable&) const = default;
};

// One row of the edit buffer: twelve positions (0..255), the duration in ms, the breakpoint flag.
using EditRow = std::array<std::int32_t, kEditColumns>;
using EditRows = std::array<EditRow, kSteps>;

// The table, and the sequence that is being edited.
struct Declaration : SequenceTable {
  // The sequence being edited, 0..15.
  std::uint8_t CurSeq = 0;
  // Working copy of the current sequence; rows beyond the step list's last line hold leftovers.
  EditRows EditBuffer{};

  bool operator==(const Declaration&) const = default;
};

}  // namespace pelmora
