// One operation that waits for the board (erase, program, read), from its beginning to its end.
//
// Any handler of the window can run inside its waits, another operation included: that one runs to
// its end there, and the first goes on with the flags as the second left them.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>

#include "core/board_codec.h"
#include "link/board_link.h"
#include "platform/system/main_loop.h"

namespace pelmora {

// Made with the port open, it belongs to the connection of that moment. The destructor puts
// everything back: mode flag, abort request, "Abort" and the bar. An operation's last message comes
// after it.
class BoardOperation {
 public:
  enum class Answer {
    kReceived,
    kAborted,
    kTakenOver,  // only of an erase: another one, inside its wait, has taken the answer
    kTimedOut,   // only from a wait with a limit
  };

  // Sets the mode flag.
  BoardOperation(BoardLink& link, Mode mode);
  ~BoardOperation();
  BoardOperation(const BoardOperation&) = delete;
  BoardOperation& operator=(const BoardOperation&) = delete;

  // Shows the bar, empty, and enables "Abort"; from now on both are shown again when another
  // operation inside a wait has ended. The bar is full at `scale_maximum`.
  void BeginTransfer(int scale_maximum);
  // So many bytes of step data have been transferred.
  void MoveBar(int value) { emit link_.BarMoved(value); }

  // Makes the steps of the table the link's `FlashImage`.
  void Stage(const SequenceTable& table) { EncodeSteps(table, link_.flash_image_); }

  // Sends bytes. An acknowledgement that came before them counts no more; none can be taken between
  // the last of them and the wait that follows.
  void Send(std::span<const std::uint8_t> bytes);

  // Waits for the answer to what was sent. A read inside the wait of another answers both. Without
  // a limit the board may take as long as it likes; what runs inside the wait counts against one,
  // but an answer that is here by then is taken.
  [[nodiscard]] Answer WaitForAck(std::optional<std::chrono::milliseconds> within = {});

  // Whether the operation has to end: "Abort" was pressed, the connection is gone (even if another
  // has been made since), or the program is ending. A connection that was lost is announced before
  // this returns true.
  [[nodiscard]] bool Aborted();

  // Whether others have sent bytes since the first `Send` of this operation.
  [[nodiscard]] bool Disturbed() const;

 protected:
  // One turn of a waiting loop: processes events, sleeping until there is one unless told
  // otherwise. False when the wait has to end as an aborted one; a lost connection has been
  // announced by then.
  bool Turn(platform::MainLoop::Idle idle = platform::MainLoop::Idle::kSleep);
  // `Aborted` without the announcement.
  bool MustEnd() const;

  BoardLink& link_;

 private:
  void OfferAbort();

  const Mode mode_;
  const int session_;
  const unsigned begun_;  // operations begun in this run, this one included
  bool transfers_ = false;
  bool offered_ = false;            // this operation has enabled "Abort"
  std::uint64_t bytes_before_ = 0;  // that the port had sent before the first of its own
  std::uint64_t own_bytes_ = 0;
};

}  // namespace pelmora
