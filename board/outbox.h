// What the board has still to send.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "board/line_clock.h"
#include "board/servo_board.h"

namespace simboard {

class Outbox {
 public:
  using TimePoint = LineClock::TimePoint;
  // Writes bytes to the line and says how many it took.
  using Writer = std::function<std::size_t(std::span<const std::uint8_t>)>;

  struct Message {
    std::vector<std::uint8_t> bytes;
    TimePoint not_before{};
    std::optional<ServoBoard::Reply::Kind> reply{};  // empty for what the board sends unasked
    std::size_t sent = 0;
  };

  explicit Outbox(Pace pace) : clock_(pace) {}

  void Add(Message message);
  void DropReplies();
  void Clear();

  // Sends what is due and the line takes; says whether anything went out.
  bool Pump(const Writer& write, TimePoint now);
  // When the next byte is due; empty when there is none, or when it waits for the line.
  std::optional<TimePoint> NextDue() const;
  // The line took less than was due: Pump again when it can be written.
  bool HeldUp() const { return held_up_; }

  // The first reply that is not yet sent whole; null when there is none.
  const Message* FirstReply() const;

 private:
  // How many bytes of the first message have had their time on the line.
  std::size_t DueBytes(const Message& message, TimePoint now) const;

  std::deque<Message> messages_;
  LineClock clock_;
  bool held_up_ = false;
};

}  // namespace simboard
