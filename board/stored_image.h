// The program image in the board's flash: a 66-byte header and the step data.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace simboard {

inline constexpr std::size_t kChannels = 12;
inline constexpr std::size_t kSequences = 16;

struct StoredImage {
  static constexpr std::size_t kHeaderSize = 66;
  static constexpr std::size_t kStepSize = 14;
  static constexpr std::size_t kCapacity = 24064;  // bytes of step data

  std::array<std::uint8_t, kHeaderSize> header{};
  std::vector<std::uint8_t> data;  // what has been written so far, at most kCapacity bytes

  // The length of the step data in bytes, as the header gives it.
  std::size_t AnnouncedBytes() const;

  // How many steps of a sequence (0..15) can be played: as many as its count in the header says, as
  // far as the data hold them whole.
  std::size_t Steps(std::size_t sequence) const;

  // The 14 bytes of one step, step < Steps(sequence): twelve positions, then the duration in ticks
  // of 20 ms, high byte first.
  std::span<const std::uint8_t, kStepSize> Step(std::size_t sequence, std::size_t step) const;

  // The header and then as many bytes as it announces. Bytes that were never written read as 0.
  std::vector<std::uint8_t> ReadOut() const;

 private:
  std::size_t Word(std::size_t offset) const;
};

}  // namespace simboard
