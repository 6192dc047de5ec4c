// Sequences, and the flash image and the buffer file that hold them. Both are written here from
// their layouts, not by the program's own code, so that the two check each other.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "rig/bytes.h"

namespace rig {

inline constexpr int kMostSteps = 256;  // of a sequence

struct Step {
  std::array<std::uint8_t, 12> positions;
  int ticks;  // of 20 ms

  bool operator==(const Step&) const = default;
};

using Sequences = std::array<std::vector<Step>, 16>;

// The image's 66-byte header, and the step data behind it.
Bytes HeaderOf(const Sequences& sequences);
Bytes StepDataOf(const Sequences& sequences);

// The buffer file. `end` stands at the end of each line.
std::string FileOf(const Sequences& sequences, const std::string& end = "\r\n");

// Three steps, 42 bytes: two in sequence 0 (all channels at 128 for 100 ms, then channel 0 at 255
// for 1000 ms), one in sequence 3 (all at 0 for 5120 ms).
Sequences ExampleSequences();
// Their image and their file, letter for letter; the image has 108 bytes.
Bytes ExampleImage();
std::string ExampleFile(const std::string& end = "\r\n");

// `steps` (up to 4096) random steps, spread at random over the sequences.
Sequences RandomSequences(unsigned seed, int steps);
// The same, but the sequences are filled one after the other, with steps of `ticks`.
Sequences FilledSequences(unsigned seed, int steps, int ticks);

}  // namespace rig
