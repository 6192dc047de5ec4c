#include "link/board_wait.h"

namespace pelmora {

BoardWait::BoardWait(const Declaration& data, const platform::MSComm& comm,
                     platform::Events& events)
    : data_(data), comm_(comm), events_(events), session_(comm.Session()) {}

bool BoardWait::Turn(platform::Events::Idle idle) {
  // A connection that was lost before this turn may bring no further event to wake up for.
  if (!Cut()) events_.DoEvents(idle);
  if (!Cut()) return true;
  // A loss is announced from the event queue, and the operator is to read of it first.
  if (!comm_.PortOpen()) events_.DoEvents(platform::Events::Idle::kReturn);
  return false;
}

bool BoardWait::Cut() const {
  return data_.AbortRequest || !comm_.PortOpen() || comm_.Session() != session_ || events_.Ending();
}

}  // namespace pelmora
