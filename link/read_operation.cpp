#include "link/read_operation.h"

#include <QByteArray>
#include <algorithm>
#include <utility>

namespace pelmora {

ReadOperation::ReadOperation(BoardLink& link, HeaderCheck check)
    : ReplyOperation(link, kHeaderBytes), check_(std::move(check)) {
  link.reply_ = {};
}

bool ReadOperation::TakeReply(std::span<const std::uint8_t> received) {
  // From here on this operation polls; no event is raised for the step data.
  link_.serial_port_.PollReceive();
  const Outcome outcome = Collect(received);
  if (outcome == Outcome::kCorrupted) {
    // The read goes on waiting, without further events, until it is aborted. A read inside it may
    // have set the port back.
    link_.serial_port_.PollReceive();
    link_.Say(QStringLiteral("Impossible to Load Sequences! Flash memory corrupted."));
    link_.debug_panel_.SetEcho(kErrorWord);
  }
  return outcome == Outcome::kComplete;
}

ReadOperation::Outcome ReadOperation::Collect(std::span<const std::uint8_t> received) {
  // Another receive setting, left by an operation inside the wait, could give fewer bytes.
  if (received.size() < kHeaderBytes) return Outcome::kCorrupted;
  ReadReply reply;
  std::ranges::copy(received.first(kHeaderBytes), reply.Header.begin());
  reply.RxCount = AnnouncedBytes(reply.Header);
  emit link_.BarScaled(reply.RxCount - 1);
  if (reply.RxCount > kFlashCapacity) {
    reply.RxCount = kFlashCapacity;
    link_.debug_panel_.SetEcho(kOverflowWord);
  }
  if (!check_(reply.Header)) return Outcome::kCorrupted;
  if (reply.RxCount > 0) {
    const std::optional<std::int32_t> waiting = WaitForStepData(reply.RxCount);
    if (!waiting) return Outcome::kEnded;
    reply.RxCount = *waiting;
    const QByteArray step_data = link_.comm_.Input();
    if (step_data.size() < reply.RxCount) return Outcome::kCorrupted;
    StageStepData(BoardLink::Bytes(step_data).first(static_cast<std::size_t>(reply.RxCount)),
                  link_.flash_image_);
  }
  link_.reply_ = reply;
  return Outcome::kComplete;
}

// Waits until the announced bytes are in the receive buffer. Returns how many of them to take: all,
// or those that had arrived when a read with an overflow was aborted; nothing when the wait has
// ended otherwise.
std::optional<std::int32_t> ReadOperation::WaitForStepData(std::int32_t announced) {
  const platform::MSComm& comm = link_.comm_;
  do {
    // When everything is here already, no further event may come to end a sleep.
    const bool complete = comm.InBufferCount() >= announced;
    Turn(complete ? platform::MainLoop::Idle::kReturn : platform::MainLoop::Idle::kSleep);
    // A read inside this wait has taken a whole reply; what this one waits for is gone.
    if (link_.ack_received_) return std::nullopt;
    MoveBar(comm.InBufferCount());
    if (MustEnd()) {
      if (link_.debug_panel_.Echo() != kOverflowWord) return std::nullopt;
      return std::min<std::int32_t>(comm.InBufferCount(), kFlashCapacity);
    }
  } while (comm.InBufferCount() < announced);
  return announced;
}

SequencesEmptiedByRead::~SequencesEmptiedByRead() {
  // The loss that has ended the read, or kept it from beginning, may not have been announced yet.
  if (link_.comm_.LossPending()) link_.main_loop_.DoEvents(platform::MainLoop::Idle::kReturn);
  --link_.emptied_;
}

}  // namespace pelmora
