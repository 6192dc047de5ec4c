// What the operations that wait for the board (erase, program, read) share with each other and with
// the receive handler: the mode flags, the acknowledgement, the abort request, and what was read
// last. It lives as long as the window. Everybody may look at it; an operation changes it, which is
// a `BoardOperation` (link/board_operation.h).
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/board_codec.h"
#include "link/debug_panel.h"
#include "link/serial_port.h"
#include "platform/serial/ms_comm.h"
#include "platform/system/main_loop.h"
#include "platform/system/message_box.h"

namespace pelmora {

class ReplyOperation;

enum class Mode {
  kErase,
  kProgram,
  kRead,  // a reply is read: that of the flash, or another
};

// The reply to a read that has been taken to its end.
struct ReadReply {
  FlashHeader Header{};
  // Bytes of step data taken, 0..24064; fewer than announced when an overflow was aborted.
  std::int32_t RxCount = 0;
};

class BoardLink : public QObject {
  Q_OBJECT
 public:
  BoardLink(platform::MSComm& comm, SerialPort& serial_port, DebugPanel& debug_panel,
            platform::MainLoop& main_loop, platform::MessageBox& message_box);

  // The serial control's event. Decides what the received bytes are: an acknowledgement while the
  // mode flags say erase or program, a reply that a `ReplyOperation` takes, or a byte to show in
  // `Echo`.
  void MSComm1_OnComm();

  // "Abort": ends the wait that is running. The board is not told.
  void Command1_Click();

  // The mode flags. One operation inside another's wait leaves several set.
  bool EraseMode() const { return Is(Mode::kErase); }
  bool ProgramMode() const { return Is(Mode::kProgram); }
  bool ReadMode() const { return Is(Mode::kRead); }
  bool AckReceived() const { return ack_received_; }
  bool AbortRequest() const { return abort_request_; }
  // Whether any operation is in progress, from its beginning to its end.
  bool Busy() const { return in_progress_ > 0; }
  // Whether a read has emptied the sequences and not yet replaced them, or said that it failed.
  bool SequencesEmptied() const { return emptied_ > 0; }

  // The last reply to a read that is in progress or has ended; empty until one has been taken.
  const ReadReply& Reply() const { return reply_; }
  // The step data of the last program or reply. Rows that a transfer doesn't reach keep what they
  // held.
  const FlashRows& FlashImage() const { return flash_image_; }

  const SerialPort& Port() const { return serial_port_; }
  // At the end of an operation.
  void Say(const QString& text) const {
    message_box_.Show(text, kProgramTitle, {.by_itself = true});
  }

 signals:
  // A mode flag has been set or cleared.
  void ModeChanged();
  // Whether "Abort" can be pressed.
  void AbortOffered(bool offered);
  void BarShown(bool shown);
  // The bar is full at `maximum`; below 1 counts as 1.
  void BarScaled(int maximum);
  // Bytes of step data that have been transferred.
  void BarMoved(int value);

 private:
  friend class BoardOperation;
  friend class ReplyOperation;
  friend class ReadOperation;
  friend class SequencesEmptiedByRead;

  bool Is(Mode mode) const { return modes_[static_cast<std::size_t>(mode)]; }
  void Set(Mode mode, bool on);
  // Whether received bytes are acknowledgements: an erase or a program is in progress.
  bool TakesAcknowledgements() const { return EraseMode() || ProgramMode(); }
  static std::span<const std::uint8_t> Bytes(const QByteArray& bytes);

  platform::MSComm& comm_;
  SerialPort& serial_port_;
  DebugPanel& debug_panel_;
  platform::MainLoop& main_loop_;
  platform::MessageBox& message_box_;
  std::array<bool, 3> modes_{};
  bool ack_received_ = false;
  bool abort_request_ = false;
  ReadReply reply_;
  FlashRows flash_image_{};
  // The one begun last, null once it has ended. One around it is not resumed then: its receive
  // settings are gone.
  ReplyOperation* reply_operation_ = nullptr;
  unsigned begun_ = 0;        // operations in this run
  unsigned in_progress_ = 0;  // operations, one inside the other
  unsigned answers_ = 0;      // receive events taken as acknowledgements, right or wrong
  unsigned emptied_ = 0;      // `SequencesEmptiedByRead`, one inside the other
};

}  // namespace pelmora
