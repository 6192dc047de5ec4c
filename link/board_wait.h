// Waiting for the board inside a handler, with the window live meanwhile.
#pragma once

#include "core/declaration.h"
#include "platform/events.h"
#include "platform/ms_comm.h"

namespace pelmora {

// The waits of one board operation. Made when the operation begins, with the port open: it belongs
// to the connection of that moment.
class BoardWait {
 public:
  BoardWait(const Declaration& data, const platform::MSComm& comm, platform::Events& events);

  // One turn of a waiting loop: processes events, sleeping until there is one unless told
  // otherwise. False when the wait has to end as an aborted one; a lost connection has been
  // announced by then.
  bool Turn(platform::Events::Idle idle = platform::Events::Idle::kSleep);

  // Whether the wait has to end: "Abort" was pressed, the connection is gone (even if another has
  // been made since), or the program is ending.
  bool Cut() const;

 private:
  const Declaration& data_;
  const platform::MSComm& comm_;
  platform::Events& events_;
  const int session_;
};

}  // namespace pelmora
