#include "link/board_operation.h"

namespace pelmora {

void BoardLink::Form_Load() {
  Set(Mode::kRead, false);
  Set(Mode::kProgram, false);
  abort_request_ = false;
  Set(Mode::kErase, false);
}

void BoardLink::Command1_Click() {
  abort_request_ = true;
  parts_.Command1.setEnabled(false);
}

BoardWait::BoardWait(BoardLink& link, bool transfers)
    : link_(link),
      transfers_(transfers),
      session_(link.parts_.comm.Session()),
      begun_(link.begun_) {}

bool BoardWait::Turn(platform::Events::Idle idle) {
  platform::Events& events = link_.parts_.events;
  // A connection that was lost before this turn may bring no further event to wake up for.
  if (!Aborted()) {
    OfferAbort();
    events.DoEvents(idle);
  }
  if (!Aborted()) return true;
  // A loss is announced from the event queue, and the operator is to read of it first.
  if (!link_.Port().Connected()) events.DoEvents(platform::Events::Idle::kReturn);
  return false;
}

bool BoardWait::Aborted() const {
  return link_.abort_request_ || !link_.Port().Connected() ||
         link_.parts_.comm.Session() != session_ || link_.parts_.events.Ending();
}

// An operation that ran inside the wait has disabled "Abort" and hidden the bar, and it may have
// taken the answer that the wait is for: without "Abort" the wait would go on for ever.
void BoardWait::OfferAbort() {
  if (!transfers_ && link_.begun_ == begun_) return;
  offered_ = true;
  link_.parts_.Command1.setEnabled(true);
  if (transfers_) link_.parts_.ProgressBarFlash.show();
}

BoardOperation::BoardOperation(BoardLink& link, Mode mode)
    : link_(link), mode_(mode), wait_((++link.begun_, link), false) {
  ++link.in_progress_;
  if (mode == Mode::kRead) link.Port().SetReadReceive();
  link.Set(mode, true);
  link.ack_received_ = false;
  link.abort_request_ = false;
}

BoardOperation::~BoardOperation() {
  const bool erased = mode_ == Mode::kErase && !wait_.Aborted();
  link_.Set(mode_, false);
  if (mode_ == Mode::kRead) link_.Port().SetIdleReceive();
  // Whoever waits around an erase keeps what it shows and was asked.
  if (!erased) {
    link_.abort_request_ = false;
    link_.parts_.ProgressBarFlash.hide();
  }
  if (!erased || wait_.Offered()) link_.parts_.Command1.setEnabled(false);
  --link_.in_progress_;
}

void BoardOperation::BeginTransfer(int scale_maximum) {
  link_.abort_request_ = false;
  wait_.SetTransfers(true);
  link_.parts_.ProgressBarFlash.SetValue(0);
  link_.parts_.ProgressBarFlash.SetScaleMaximum(scale_maximum);
  link_.parts_.Command1.setEnabled(true);
  link_.parts_.ProgressBarFlash.show();
}

void BoardOperation::Send(std::span<const std::uint8_t> bytes) {
  SerialPort& port = link_.Port();
  if (own_bytes_ == 0) bytes_before_ = port.BytesSent();
  link_.ack_received_ = false;
  const std::uint64_t before = port.BytesSent();
  port.Send(bytes);
  own_bytes_ += port.BytesSent() - before;
}

BoardOperation::Answer BoardOperation::WaitForAck() {
  do {
    // Another operation inside this wait may have ended the mode.
    if (mode_ == Mode::kErase && !link_.EraseMode()) return Answer::kTakenOver;
    if (link_.ack_received_) {
      link_.ack_received_ = mode_ == Mode::kRead;
      return Answer::kReceived;
    }
  } while (wait_.Turn());
  return Answer::kAborted;
}

bool BoardOperation::Aborted() {
  if (!wait_.Aborted()) return false;
  wait_.Turn(platform::Events::Idle::kReturn);
  return true;
}

bool BoardOperation::Disturbed() const {
  return own_bytes_ > 0 && link_.Port().BytesSent() - bytes_before_ != own_bytes_;
}

}  // namespace pelmora
