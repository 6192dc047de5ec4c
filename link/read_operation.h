// The operation that reads the board's flash: it sets the port up for the reply, takes the reply
// when the receive handler reports its header, and sets the port back.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "link/board_operation.h"

namespace pelmora {

class ReadOperation : public BoardOperation {
 public:
  // Asked when the header of a reply has come: whether its counts make sense.
  using HeaderCheck = std::function<bool(const FlashHeader& header)>;

  // Nothing has been read while it runs, until a whole reply has been taken.
  ReadOperation(BoardLink& link, HeaderCheck check);
  ~ReadOperation();

  // The receive handler's report: these bytes have come, the header of a reply. Waits, processing
  // events, for the step data that it announces; then the link has the reply and its step data, and
  // the read is acknowledged. It is not when the wait was aborted or the reply makes no sense.
  void TakeReply(std::span<const std::uint8_t> received);

 private:
  enum class Outcome { kComplete, kAnswered, kAborted, kCorrupted };

  Outcome Collect(std::span<const std::uint8_t> received);
  Outcome WaitForStepData(std::int32_t& rx_count);

  const HeaderCheck check_;
  ReadOperation* const outer_;     // the read around this one
  const unsigned answers_before_;  // `answers_` when this read began
};

// Held by a read from the moment at which it empties the sequences until it has replaced them or
// said that it failed. The message about a loss of the line says so meanwhile.
class SequencesEmptiedByRead {
 public:
  explicit SequencesEmptiedByRead(BoardLink& link) : link_(link) { ++link.emptied_; }
  ~SequencesEmptiedByRead();
  SequencesEmptiedByRead(const SequencesEmptiedByRead&) = delete;
  SequencesEmptiedByRead& operator=(const SequencesEmptiedByRead&) = delete;

 private:
  BoardLink& link_;
};

}  // namespace pelmora
