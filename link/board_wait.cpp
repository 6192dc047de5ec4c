#include "link/board_wait.h"

namespace pelmora {

BoardWait::BoardWait(const Declaration& data, const platform::MSComm& comm,
                     platform::Events& events)
    : data_(data), comm_(comm), events_(events), session_(comm.Session()) {}

bool BoardWait::Turn(platform::Events::Idle idle) {
  // A connection that was lost before this turn may bring no further event to wake up for.
  if (Cut()) return false;
  events_.DoEvents(idle);
  return !Cut();
}

bool BoardWait::Cut() const {
  return data_.AbortRequest || !comm_.PortOpen() || comm_.Session() != session_ ||
         events_.Ending();
}

}  // namespace pelmora
