#include "link/board_protocol.h"

#include <QByteArray>
#include <algorithm>
#include <span>

#include "core/flash_image.h"
#include "link/board_wait.h"
#include "link/serial_port.h"

namespace pelmora {
namespace {

std::span<const std::uint8_t> Bytes(const QByteArray& bytes) {
  return {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
          static_cast<std::size_t>(bytes.size())};
}

}  // namespace

BoardProtocol::BoardProtocol(Declaration& data, platform::MSComm& comm, platform::Events& events,
                             platform::MessageBox& message_box, platform::TextField& echo,
                             platform::ProgressBar& progress_bar_flash)
    : data_(data),
      comm_(comm),
      events_(events),
      message_box_(message_box),
      echo_(echo),
      progress_bar_flash_(progress_bar_flash) {}

void BoardProtocol::Send(std::uint8_t byte) {
  if (!comm_.PortOpen()) return;
  data_.TxBuffer[0] = byte;
  comm_.Output(data_.TxBuffer);
}

void BoardProtocol::MSComm1_OnComm() {
  if (comm_.CommEvent() != platform::kCommEvReceive) return;
  if (data_.EraseMode || data_.ProgramMode) {
    TakeAcknowledgement();
  } else if (data_.ReadMode) {
    TakeReadReply();
  } else {
    const QByteArray input = comm_.Input();
    if (!input.isEmpty()) echo_.setText(QString::number(Bytes(input)[0]));
  }
}

void BoardProtocol::TakeAcknowledgement() {
  const QByteArray input = comm_.Input();
  if (input.isEmpty()) return;
  if (Bytes(input)[0] == kAcknowledgement) {
    data_.AckReceived = true;
  } else {
    echo_.setText(kErrorWord);
  }
}

void BoardProtocol::TakeReadReply() {
  const QByteArray input = comm_.Input();
  // From here on this handler polls; no event is raised for the step data.
  comm_.SetRThreshold(0);
  // Another receive setting, left by an operation started in between, could give fewer bytes.
  bool intact = input.size() >= kHeaderBytes;
  if (intact) {
    const std::span<const std::uint8_t> header = Bytes(input).first(kHeaderBytes);
    data_.RxCount = AnnouncedBytes(header);
    progress_bar_flash_.SetScaleMaximum(data_.RxCount - 1);
    if (data_.RxCount > kFlashCapacity) {
      data_.RxCount = kFlashCapacity;
      echo_.setText(kOverflowWord);
    }
    data_.TotalBytes = data_.RxCount;
    intact = DecodeHeader(header, data_);
  }
  if (!intact) {
    message_box_.Show(QStringLiteral("Impossible to Load Sequences! Flash memory corrupted."),
                      kProgramTitle);
    echo_.setText(kErrorWord);
    return;
  }
  comm_.SetInputLen(0);
  if (data_.RxCount != 0) {
    if (!CollectStepData()) return;
    const QByteArray received = comm_.Input();
    data_.RxCount = std::min(data_.RxCount, kFlashCapacity);
    // A click into `Echo` may have thrown bytes away since they were counted.
    const auto count = std::min<std::size_t>(static_cast<std::size_t>(data_.RxCount),
                                             static_cast<std::size_t>(received.size()));
    StageStepData(Bytes(received).first(count), data_);
  }
  data_.AckReceived = true;
}

// Waits until the announced step data is in the receive buffer. False when the read was cut short
// and nothing of it is to be kept.
bool BoardProtocol::CollectStepData() {
  BoardWait wait(data_, comm_, events_);
  do {
    // With everything here already, no further event may come: look once, without sleeping.
    const bool complete = comm_.InBufferCount() >= data_.RxCount;
    wait.Turn(complete ? platform::Events::Idle::kReturn : platform::Events::Idle::kSleep);
    progress_bar_flash_.SetValue(comm_.InBufferCount());
    if (wait.Cut()) {
      if (echo_.text() != kOverflowWord) return false;
      data_.RxCount = comm_.InBufferCount();
      return true;
    }
  } while (comm_.InBufferCount() < data_.RxCount);
  return true;
}

}  // namespace pelmora
