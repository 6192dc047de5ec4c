// The faults that are switched on, as they change one reply after the other.
#pragma once

#include <cstdint>
#include <vector>

#include "board/faults.h"
#include "board/servo_board.h"

namespace simboard {

class ReplyFaults {
 public:
  void Set(const Faults& faults);
  std::chrono::milliseconds Delay() const { return faults_.reply_delay; }

  // The bytes that go out instead of a reply, none when it is swallowed.
  std::vector<std::uint8_t> Distort(ServoBoard::Reply reply);

 private:
  bool SwallowsAcknowledgement();

  Faults faults_;
};

}  // namespace simboard
