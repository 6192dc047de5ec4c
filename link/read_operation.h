// The operation that reads the board's flash: it takes the reply when the receive handler reports
// its header.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "link/reply_operation.h"

namespace pelmora {

class ReadOperation : public ReplyOperation {
 public:
  // Asked when the header of a reply has come: whether its counts make sense.
  using HeaderCheck = std::function<bool(const FlashHeader& header)>;

  // Nothing has been read while it runs, until a whole reply has been taken.
  ReadOperation(BoardLink& link, HeaderCheck check);

  // These bytes are the header of a reply. Waits, processing events, for the step data that it
  // announces; then the link has the reply and its step data. The reply is not complete when the
  // wait was aborted or the reply makes no sense.
  bool TakeReply(std::span<const std::uint8_t> received) override;

 private:
  enum class Outcome { kComplete, kEnded, kCorrupted };

  Outcome Collect(std::span<const std::uint8_t> received);
  std::optional<std::int32_t> WaitForStepData(std::int32_t announced);

  const HeaderCheck check_;
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
