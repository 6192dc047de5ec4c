// The byte image of all sequences in the board's flash: a 66-byte header and 14 bytes for each
// step, every 16-bit field high byte first. See docs/protocol.md for the layout.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/declaration.h"

namespace pelmora {

inline constexpr int kHeaderBytes = 66;
using FlashHeader = std::array<std::uint8_t, kHeaderBytes>;

// A duration in the board's ticks of 20 ms: to the nearest, halves to even, below zero taken as 0.
// 0..1638 for every duration that the table can hold.
int DurationToTicks(int duration_ms);

// Whether every header value fits the board's signed 16-bit fields (a total of at most 32767
// bytes). Programming refuses an image for which this is false.
bool HeaderFits(const Declaration& data);

// The header from `TotalBytes`, `SeqSteps` and `SeqOffset` as they stand. Needs `HeaderFits`.
FlashHeader EncodeHeader(const Declaration& data);

// Fills the rows of `FlashImage` from the sequence table: sequences 0..15, each with its steps in
// order. Rows beyond stay.
void EncodeSteps(Declaration& data);

// The number of step-data bytes that a received header (at least its first two bytes) announces,
// 0..65535, uncut.
std::int32_t AnnouncedBytes(std::span<const std::uint8_t> header);

// Takes `SeqSteps` and `SeqOffset` from a received header of 66 bytes. False at the first value
// that has a high byte of 128 or more; the values before it have been taken. A shorter header is
// false and nothing is taken.
bool DecodeHeader(std::span<const std::uint8_t> header, Declaration& data);

// Stages received step data in `FlashImage`. At most 4097 x 14 bytes.
void StageStepData(std::span<const std::uint8_t> step_data, Declaration& data);

// Rebuilds the sequence table from `FlashImage` by the counts in `SeqSteps`. False at the first
// step that cannot be stored (step number 256 or more, a duration above 1638 ticks); the steps
// before it have been stored, and the positions of the one whose duration is too long.
bool DecodeSteps(Declaration& data);

// Cuts every step count to 256, so that no sequence claims more steps than it can hold.
void LimitStepCounts(Declaration& data);

}  // namespace pelmora
