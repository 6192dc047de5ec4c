#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace simboard {

// Ways for the board to misbehave. They apply to the replies that the board makes from now on, an
// acknowledgement or a whole read reply each being one; a default Faults is a sound board.
struct Faults {
  // Takes bytes and answers nothing. Replies that are still waiting or under way stop at once.
  bool silent = false;
  // Wrong bytes, sent once before each reply.
  std::vector<std::uint8_t> before_reply{};
  // Each reply, with what goes before it, starts this much later.
  std::chrono::milliseconds reply_delay{0};
  // Each acknowledgement is sent 1 + extra_replies times.
  int extra_replies = 0;
  // Only the first bytes of each reply are sent (of a read: header and data counted together).
  std::optional<std::size_t> cut_reply_at{};
  // Sent in a read instead of the true header; the data stay the true ones, in their true number.
  std::optional<std::array<std::uint8_t, 66>> lying_header{};
  // Sent after a read reply, cut short or not.
  std::vector<std::uint8_t> after_reply{};
  // Gives this many acknowledgements from the call of SetFaults on, then none. Reads are answered.
  std::optional<int> silent_after_acks{};
};

}  // namespace simboard
