#include "link/board_operation.h"

#include "platform/system/alarm.h"

namespace pelmora {

// An acknowledgement or an abort request that was meant for an operation around this one is
// forgotten, by a read, too: it must not end this one's wait. The outer wait offers "Abort" again.
BoardOperation::BoardOperation(BoardLink& link, Mode mode)
    : link_(link), mode_(mode), session_(link.comm_.Session()), begun_(++link.begun_) {
  ++link.in_progress_;
  link.Set(mode, true);
  link.ack_received_ = false;
  link.abort_request_ = false;
}

BoardOperation::~BoardOperation() {
  const bool erased = mode_ == Mode::kErase && !MustEnd();
  link_.Set(mode_, false);
  // A confirmed erase leaves the abort request and the bar to the operation around it.
  if (!erased) {
    link_.abort_request_ = false;
    emit link_.BarShown(false);
  }
  if (!erased || offered_) emit link_.AbortOffered(false);
  --link_.in_progress_;
}

// The bar starts at 0, also for a read: it would show how far the transfer before it came.
void BoardOperation::BeginTransfer(int scale_maximum) {
  link_.abort_request_ = false;
  transfers_ = true;
  emit link_.BarMoved(0);
  emit link_.BarScaled(scale_maximum);
}

void BoardOperation::Send(std::span<const std::uint8_t> bytes) {
  SerialPort& port = link_.serial_port_;
  if (own_bytes_ == 0) bytes_before_ = port.BytesSent();
  link_.ack_received_ = false;
  const std::uint64_t before = port.BytesSent();
  port.Send(bytes);
  own_bytes_ += port.BytesSent() - before;
}

BoardOperation::Answer BoardOperation::WaitForAck(std::optional<std::chrono::milliseconds> within) {
  std::optional<platform::Alarm> limit;
  if (within) limit.emplace().SetFor(platform::Alarm::Clock::now() + *within);
  Answer answer = Answer::kAborted;
  do {
    const bool time_is_up = limit && !limit->Active();
    if (time_is_up) {
      // The answer may be here already, on a busy machine, and not have been looked at.
      link_.comm_.Fetch();
      if (!Turn(platform::MainLoop::Idle::kReturn)) break;
    }
    // Another erase inside this wait has ended the mode. This one must not take the next
    // acknowledgement, which would answer something else.
    if (mode_ == Mode::kErase && !link_.EraseMode())
      answer = Answer::kTakenOver;
    else if (link_.ack_received_)
      answer = Answer::kReceived;
    else if (time_is_up)
      answer = Answer::kTimedOut;
  } while (answer == Answer::kAborted && Turn());
  // An acknowledgement that ends a read also ends the operation around it, whose answer it may be.
  // Any other is used up.
  if (mode_ != Mode::kRead) link_.ack_received_ = false;
  return answer;
}

bool BoardOperation::Aborted() {
  if (!MustEnd()) return false;
  Turn(platform::MainLoop::Idle::kReturn);
  return true;
}

bool BoardOperation::Disturbed() const {
  return own_bytes_ > 0 && link_.Port().BytesSent() - bytes_before_ != own_bytes_;
}

bool BoardOperation::Turn(platform::MainLoop::Idle idle) {
  // A connection that was lost before this turn may bring no further event to wake up for.
  if (!MustEnd()) {
    OfferAbort();
    link_.main_loop_.DoEvents(idle);
  }
  if (!MustEnd()) return true;
  // A loss is announced from the event queue, and the operator is to read of it first.
  if (!link_.Port().Connected()) link_.main_loop_.DoEvents(platform::MainLoop::Idle::kReturn);
  return false;
}

bool BoardOperation::MustEnd() const {
  return link_.abort_request_ || !link_.Port().Connected() || link_.comm_.Session() != session_ ||
         link_.main_loop_.Ending();
}

// An operation that ran inside the wait has disabled "Abort" and hidden the bar, and it may have
// taken the answer that the wait is for: without "Abort" the wait would go on for ever.
void BoardOperation::OfferAbort() {
  if (!transfers_ && link_.begun_ == begun_) return;
  offered_ = true;
  emit link_.AbortOffered(true);
  if (transfers_) emit link_.BarShown(true);
}

}  // namespace pelmora
