#include "link/receive_handler.h"

#include <QByteArray>
#include <algorithm>
#include <span>

#include "core/board_codec.h"

namespace pelmora {
namespace {

std::span<const std::uint8_t> Bytes(const QByteArray& bytes) {
  return {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
          static_cast<std::size_t>(bytes.size())};
}

}  // namespace

void ReceiveHandler::MSComm1_OnComm() {
  if (comm_.CommEvent() != platform::kCommEvReceive) return;
  if (!link_.TakesAcknowledgements() && link_.ReadMode()) {
    switch (TakeReadReply()) {
      case Outcome::kComplete:
        return link_.Acknowledge();
      case Outcome::kAborted:
        return;
      case Outcome::kCorrupted:
        // The read goes on waiting, without further events, until it is aborted.
        link_.Port().PollReceive();
        link_.Say(QStringLiteral("Impossible to Load Sequences! Flash memory corrupted."));
        return link_.Echo().setText(kErrorWord);
    }
  }
  const QByteArray input = comm_.Input();
  if (input.isEmpty()) return;
  if (!link_.TakesAcknowledgements()) {
    link_.Echo().setText(QString::number(Bytes(input)[0]));
  } else if (IsAcknowledgement(Bytes(input))) {
    link_.Acknowledge();
  } else {
    link_.Echo().setText(kErrorWord);
  }
}

ReceiveHandler::Outcome ReceiveHandler::TakeReadReply() {
  ReadReply& reply = link_.Reply();
  const QByteArray header = comm_.Input();
  // From here on this handler polls; no event is raised for the step data.
  link_.Port().PollReceive();
  // Another receive setting, left by an operation inside the wait, could give fewer bytes.
  if (header.size() < kHeaderBytes) return Outcome::kCorrupted;
  std::ranges::copy(Bytes(header).first(kHeaderBytes), reply.Header.begin());
  reply.RxCount = AnnouncedBytes(reply.Header);
  link_.Bar().SetScaleMaximum(reply.RxCount - 1);
  if (reply.RxCount > kFlashCapacity) {
    reply.RxCount = kFlashCapacity;
    link_.Echo().setText(kOverflowWord);
  }
  if (!link_.HeaderTaken()) return Outcome::kCorrupted;
  if (reply.RxCount == 0) return Outcome::kComplete;
  if (!CollectStepData()) return Outcome::kAborted;
  const QByteArray step_data = comm_.Input();
  if (step_data.size() < reply.RxCount) return Outcome::kCorrupted;
  StageStepData(Bytes(step_data).first(static_cast<std::size_t>(reply.RxCount)),
                link_.FlashImage());
  return Outcome::kComplete;
}

// Waits until the announced step data is in the receive buffer. False when the read was aborted and
// nothing of it is to be kept.
bool ReceiveHandler::CollectStepData() {
  ReadReply& reply = link_.Reply();
  BoardWait wait(link_, true);
  do {
    // With everything here already, no further event may come: look once, without sleeping.
    const bool complete = comm_.InBufferCount() >= reply.RxCount;
    wait.Turn(complete ? platform::Events::Idle::kReturn : platform::Events::Idle::kSleep);
    link_.Bar().SetValue(comm_.InBufferCount());
    if (wait.Aborted()) {
      if (link_.Echo().text() != kOverflowWord) return false;
      reply.RxCount = comm_.InBufferCount();
      return true;
    }
  } while (comm_.InBufferCount() < reply.RxCount);
  return true;
}

}  // namespace pelmora
