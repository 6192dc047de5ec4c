// An operation whose answer is more than an acknowledgement: it sets the port up for the reply,
// takes the bytes that the receive handler hands it, and sets the port back.
#pragma once

#include <cstdint>
#include <span>

#include "link/board_operation.h"

namespace pelmora {

class ReplyOperation : public BoardOperation {
 public:
  // Throws away what is waiting. From now on one receive event brings `event_bytes` bytes of what
  // the board sends.
  ReplyOperation(BoardLink& link, int event_bytes);
  virtual ~ReplyOperation();

  // The receive handler's report: the bytes of one receive event. True when they complete the
  // reply, which ends the wait. May wait for more itself, processing events.
  //
  // A wait inside an erase's or a program's, and one with another reply operation inside, can end
  // as answered without such a report: who has waited looks whether the reply is there.
  virtual bool TakeReply(std::span<const std::uint8_t> received) = 0;

 private:
  const unsigned answers_before_;  // `answers_` when this operation began
};

}  // namespace pelmora
