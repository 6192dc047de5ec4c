// The operations that wait for the board (erase, program, read): the one owner of the flags by
// which they and the receive handler talk to each other, of the receive settings, "Abort" and the
// bar.
//
// An operation makes a `BoardOperation` for as long as it runs. Any handler of the window can run
// inside its waits, another operation included: that one runs to its end there, and the first goes
// on with the flags as the second left them.
#pragma once

#include <QPushButton>
#include <QString>
#include <array>
#include <cstdint>
#include <functional>
#include <span>

#include "core/board_codec.h"
#include "link/serial_port.h"
#include "platform/controls/progress_bar.h"
#include "platform/controls/text_field.h"
#include "platform/serial/ms_comm.h"
#include "platform/system/events.h"
#include "platform/system/message_box.h"

namespace pelmora {

// Status words in `Echo`; an aborted read looks for the second.
inline constexpr char kErrorWord[] = "Error!";
inline constexpr char kOverflowWord[] = "Overflow!";

enum class Mode { kErase, kProgram, kRead };

// The reply to the last read, as far as it has come. The counts that place its step data are those
// of its header, whatever happens to the sequence table while the data arrives.
struct ReadReply {
  FlashHeader Header{};
  // Step-data bytes announced, cut to the board's capacity; what came, when an overflow was
  // aborted.
  std::int32_t RxCount = 0;
};

// What the board operations have in common. It lives as long as the window.
class BoardLink {
 public:
  struct Parts {
    platform::MSComm& comm;
    SerialPort& serial_port;
    platform::Events& events;
    platform::MessageBox& message_box;
    QPushButton& Command1;  // "Abort"
    platform::ProgressBar& ProgressBarFlash;
    platform::TextField& Echo;
  };

  explicit BoardLink(const Parts& parts) : parts_(parts) {}

  // Start-up: clears the mode flags and the abort request.
  void Form_Load();
  // "Abort": ends the wait that is running. The board is not told.
  void Command1_Click();

  // The mode flags. One inside another's wait leaves several set.
  bool Is(Mode mode) const { return modes_[static_cast<std::size_t>(mode)]; }
  bool EraseMode() const { return Is(Mode::kErase); }
  bool ProgramMode() const { return Is(Mode::kProgram); }
  bool ReadMode() const { return Is(Mode::kRead); }
  // Whether received bytes are acknowledgements: an erase or a program is in progress.
  bool TakesAcknowledgements() const { return EraseMode() || ProgramMode(); }
  // Whether any operation is in progress, from its beginning to its end.
  bool Busy() const { return in_progress_ > 0; }
  // Called when a mode flag has been set or cleared, for the window to show it.
  std::function<void()> ModeChanged;
  bool AbortRequest() const { return abort_request_; }
  bool AckReceived() const { return ack_received_; }

  // The receive handler's side: the answer that the innermost wait is for has come.
  void Acknowledge() { ack_received_ = true; }
  ReadReply& Reply() { return reply_; }
  // Called when the header of a reply has come, with the reply's `Header` and `RxCount` set. False:
  // its counts make no sense.
  std::function<bool()> HeaderTaken;

  // The step data of the last program or reply. Rows that a transfer doesn't reach keep what they
  // held.
  FlashRows& FlashImage() { return flash_image_; }

  SerialPort& Port() const { return parts_.serial_port; }
  platform::TextField& Echo() const { return parts_.Echo; }
  platform::ProgressBar& Bar() const { return parts_.ProgressBarFlash; }
  void Say(const QString& text) const { parts_.message_box.Show(text, kProgramTitle); }

 private:
  friend class BoardWait;
  friend class BoardOperation;

  void Set(Mode mode, bool on) {
    modes_[static_cast<std::size_t>(mode)] = on;
    if (ModeChanged) ModeChanged();
  }

  const Parts parts_;
  std::array<bool, 3> modes_{};
  bool ack_received_ = false;
  bool abort_request_ = false;
  ReadReply reply_;
  FlashRows flash_image_{};
  unsigned begun_ = 0;        // operations in this run
  unsigned in_progress_ = 0;  // one inside the other
};

// The waits of one operation, with the window live meanwhile. Made when the operation begins, with
// the port open: it belongs to the connection of that moment.
class BoardWait {
 public:
  // `transfers`: "Abort" is enabled and the bar shown while the wait runs, also after another
  // operation inside it has ended.
  BoardWait(BoardLink& link, bool transfers);

  // One turn of a waiting loop: processes events, sleeping until there is one unless told
  // otherwise. False when the wait has to end as an aborted one; a lost connection has been
  // announced by then.
  bool Turn(platform::Events::Idle idle = platform::Events::Idle::kSleep);

  // Whether the wait has to end: "Abort" was pressed, the connection is gone (even if another has
  // been made since), or the program is ending.
  bool Aborted() const;

  void SetTransfers(bool transfers) { transfers_ = transfers; }
  // Whether the wait has enabled "Abort".
  bool Offered() const { return offered_; }

 private:
  void OfferAbort();

  BoardLink& link_;
  bool transfers_;
  bool offered_ = false;
  const int session_;
  const unsigned begun_;
};

// One operation, from its beginning to its end. The destructor puts everything back: mode flag,
// abort request, receive settings, "Abort" and the bar. An operation's last message comes after it.
class BoardOperation {
 public:
  enum class Answer {
    kReceived,
    kAborted,
    kTakenOver,  // an erase whose mode another operation has ended
  };

  // Sets the mode flag. Needs an open port.
  BoardOperation(BoardLink& link, Mode mode);
  ~BoardOperation();
  BoardOperation(const BoardOperation&) = delete;
  BoardOperation& operator=(const BoardOperation&) = delete;

  // Shows the bar, empty, and enables "Abort". The bar is full at `scale_maximum`.
  void BeginTransfer(int scale_maximum);

  // Sends bytes. An acknowledgement that came before them counts no more; none can be taken between
  // the last of them and the wait that follows.
  void Send(std::span<const std::uint8_t> bytes);

  // Waits for the answer to what was sent. A read inside the wait of another answers both.
  Answer WaitForAck();

  // Whether the operation has to end, see `BoardWait`. A connection that was lost is announced
  // before this returns true.
  bool Aborted();

  // Whether others have sent bytes since the first `Send` of this operation.
  bool Disturbed() const;

 private:
  BoardLink& link_;
  const Mode mode_;
  BoardWait wait_;
  std::uint64_t bytes_before_ = 0;  // that the port had sent before the first of its own
  std::uint64_t own_bytes_ = 0;
};

}  // namespace pelmora
