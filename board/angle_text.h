#pragma once

#include <cstdint>
#include <string>

namespace simboard {

// The angle of a servo whose position byte is given, in words: 128 is "0°", 255 is "63.5°" and 0 is
// "-64°". UTF-8.
std::string AngleText(std::uint8_t position);

}  // namespace simboard
