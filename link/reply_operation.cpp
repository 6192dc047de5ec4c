#include "link/reply_operation.h"

#include <QByteArray>

namespace pelmora {

ReplyOperation::ReplyOperation(BoardLink& link, int event_bytes)
    : BoardOperation(link, Mode::kRead), answers_before_(link.answers_) {
  link.reply_operation_ = this;
  // Not while an erase or a program around this one waits for its answer: it may be among them.
  if (!link.TakesAcknowledgements()) link.comm_.ClearInBuffer();
  link.serial_port_.SetReplyReceive(event_bytes);
}

ReplyOperation::~ReplyOperation() {
  // The answer to an erase or program around this operation may have come meanwhile: by itself it
  // can be too short for a receive event. The board answers in order, so it is the first byte since
  // this operation began or none.
  link_.comm_.Fetch();
  link_.comm_.SetInputLen(0);
  const QByteArray waiting = link_.comm_.Input();
  if (link_.TakesAcknowledgements() && link_.answers_ == answers_before_ && !waiting.isEmpty() &&
      IsAcknowledgement(BoardLink::Bytes(waiting))) {
    link_.ack_received_ = true;
  }
  link_.serial_port_.SetIdleReceive();
  link_.reply_operation_ = nullptr;
}

}  // namespace pelmora
