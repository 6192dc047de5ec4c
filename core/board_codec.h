// The bytes spoken with the board: every command that the program sends, and the reply to a read.
// Nothing here knows a line, a wait or a message. docs/protocol.md describes the protocol and the
// flash image for people who write firmware.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/declaration.h"

namespace pelmora {

using Bytes1 = std::array<std::uint8_t, 1>;
using Bytes2 = std::array<std::uint8_t, 2>;
using FlashHeader = std::array<std::uint8_t, kHeaderBytes>;

// Commands, from the PC to the board.
inline constexpr Bytes1 kPcControlOffCommand = {0};
inline constexpr Bytes1 kPcControlOnCommand = {1};
inline constexpr Bytes1 kStopCommand = {4};
// Answered by the header and the step data.
inline constexpr Bytes1 kReadCommand = {6};
// Answered by an acknowledgement when the flash is erased.
inline constexpr Bytes1 kEraseCommand = {7};
inline constexpr Bytes1 kResetCommand = {17};
// The board plays `sequence` (0..15) from its flash.
[[nodiscard]] Bytes2 PlayCommand(int sequence);
// Sets the position (0..255) of a channel (0..11).
[[nodiscard]] Bytes2 PositionCommand(int channel, int position);
// The command and the header from `TotalBytes`, `SeqSteps` and `SeqOffset` as they stand. The board
// acknowledges it, and then every complete block of `kBlockBytes` of step data. Needs `HeaderFits`.
[[nodiscard]] std::array<std::uint8_t, 1 + kHeaderBytes> ProgramCommand(const SequenceTable& table);

// Step data that the board acknowledges at once; a shorter last block it doesn't acknowledge.
inline constexpr int kBlockBytes = 256;

// Whether received bytes (at least one) begin with the board's acknowledgement.
[[nodiscard]] bool IsAcknowledgement(std::span<const std::uint8_t> received);

// Staging area of the step data: byte i of the stream is row i div 14, column i mod 14. It is never
// cleared.
using FlashRows = std::array<std::array<std::uint8_t, kStepBytes>, kFlashRows>;

// Byte `i` (0 .. 57357) of the staged step data.
std::uint8_t StagedByte(const FlashRows& image, int i);

// A duration in the board's ticks of 20 ms: to the nearest, halves to even, below zero taken as 0.
// 0..1638 for every duration that the table can hold.
int DurationToTicks(int duration_ms);

// Whether every header value fits the board's signed 16-bit fields (a total of at most 32767
// bytes). Programming refuses an image for which this is false.
[[nodiscard]] bool HeaderFits(const SequenceTable& table);

// Stages the step data of the table: sequences 0..15, each with its steps in order. Rows beyond
// stay.
void EncodeSteps(const SequenceTable& table, FlashRows& image);

// The number of step-data bytes that a header announces, 0..65535, uncut.
int AnnouncedBytes(const FlashHeader& header);

// Takes `TotalBytes`, cut to the board's capacity, `SeqSteps` and `SeqOffset` from a received
// header. False at the first value that has a high byte of 128 or more; the values before it have
// been taken. Step counts are taken as they are and may exceed what a sequence holds
// (`LimitStepCounts`).
[[nodiscard]] bool DecodeHeader(const FlashHeader& header, SequenceTable& table);

// Stages received step data. At most 4097 x 14 bytes.
void StageStepData(std::span<const std::uint8_t> step_data, FlashRows& image);

// Rebuilds the table's records from the staged rows by the counts in `SeqSteps`. False at the first
// step that cannot be stored (step number 256 or more, a duration above 1638 ticks); the steps
// before it have been stored, and the positions of the one whose duration is too long.
[[nodiscard]] bool DecodeSteps(const FlashRows& image, SequenceTable& table);

// Cuts every step count to 256, so that no sequence claims more steps than it can hold.
void LimitStepCounts(SequenceTable& table);

}  // namespace pelmora
