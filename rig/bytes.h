// Bytes as tests and tools write them down.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace rig {

using Bytes = std::vector<std::uint8_t>;

// "00 2A FF": two digits a byte, any white space between.
Bytes Hex(const std::string& text);

Bytes operator+(Bytes left, const Bytes& right);

// Appends 16 bits, the high byte first.
void PutWord(Bytes& bytes, std::size_t value);

// 0, 1, 2, ..., beginning anew after 252, so that no block of 256 is like the one before.
Bytes Counting(std::size_t size);

// A text several times in a row.
std::string Repeat(const std::string& text, int times);

}  // namespace rig
