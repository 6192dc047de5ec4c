// The serial control's event: what the received bytes are for, and what came of them.
#pragma once

#include "link/board_operation.h"
#include "platform/serial/ms_comm.h"

namespace pelmora {

class ReceiveHandler {
 public:
  ReceiveHandler(platform::MSComm& comm, BoardLink& link) : comm_(comm), link_(link) {}

  // Decides by the mode flags what the received bytes are: an acknowledgement (erase, program), a
  // read reply, or a byte to show in `Echo`. While a read reply's step data arrives it waits
  // inside, processing events.
  void MSComm1_OnComm();

 private:
  enum class Outcome { kComplete, kAborted, kCorrupted };

  Outcome TakeReadReply();
  bool CollectStepData();

  platform::MSComm& comm_;
  BoardLink& link_;
};

}  // namespace pelmora
