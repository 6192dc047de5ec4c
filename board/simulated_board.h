// The servo board behind a pseudo terminal: what the serial port is wired to when no board is at
// hand.
//
// The board lives on a thread of its own, which sleeps while nothing happens on the line. Every
// function here may be called from any thread, unless it says otherwise.
//
// On a paced line the board takes bytes out of the terminal only as fast as they arrive, but for a
// few that a serial chip would hold: the others wait in the terminal, which then takes no more, as
// they would wait in the driver of a real port.
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "board/faults.h"
#include "board/line_clock.h"
#include "board/outbox.h"
#include "board/pty_line.h"
#include "board/reply_faults.h"
#include "board/servo_board.h"

namespace simboard {

// What the board shows of itself at one moment.
struct State {
  std::array<std::uint8_t, 12> positions{};  // 0..255, 128 = centre
  bool pc_control = false;
  std::string activity;  // in words: "idle", "erasing", "receiving a program, 512 of 1200 bytes",
                         // "sending its flash, 66 of 108 bytes", "playing sequence 5, step 2",
                         // "unplugged"
  int flash_bytes = 0;   // step data that the flash holds, 0..24064
  std::array<int, 16> sequence_steps{};  // steps of each sequence that the flash holds whole
  std::deque<std::string> commands;  // the last commands in words, newest last: "PC control on",
                                     // "Ch3 to 200 (36°)". Moves of one channel in a row are one.
  int transfer_done = 0;             // bytes of the running transfer: step data of a program,
  int transfer_total = 0;            // the whole reply of a read. Both 0 when none is running.
  int playing_sequence = -1;         // 0..15, or -1 when the board plays nothing
  int playing_step = 0;              // counted from 0
};

// A byte that came from the PC, and when it had arrived at the board.
struct LoggedByte {
  std::uint8_t byte;
  std::chrono::steady_clock::time_point when;
};

class SimulatedBoard {
 public:
  // Makes the pseudo terminal and starts the board: flash empty, servos at centre, PC control off.
  // Throws std::system_error when the machine has no pseudo terminal to give.
  explicit SimulatedBoard(Pace pace);
  // Hangs the line up and ends the board's thread. Not to be called on the board's thread.
  ~SimulatedBoard();

  SimulatedBoard(const SimulatedBoard&) = delete;
  SimulatedBoard& operator=(const SimulatedBoard&) = delete;

  // The serial device to open, e.g. "/dev/pts/5"; empty while unplugged.
  std::string DevicePath() const;

  State Snapshot() const;

  // Called on the board's thread after something in State changed. After one call there is no
  // other until Snapshot has been called, so a slow listener is never flooded and never misses the
  // last change. An empty function takes the listener away; when SetChanged returns, the former one
  // is not running and will not be called again. Not to be called by the listener.
  void SetChanged(std::function<void()> changed);

  // Every byte that came from the PC since the start or the last ClearLog, in order. The log is
  // kept over Unplug and Replug.
  std::vector<LoggedByte> Log() const;
  std::vector<std::uint8_t> Received() const;
  void ClearLog();
  // Waits until the log holds at least `count` bytes; false when `limit` passed before.
  bool WaitForBytes(std::size_t count, std::chrono::milliseconds limit) const;

  // The board sends these bytes of its own accord, after whatever it is sending already. Faults do
  // not touch them; while unplugged they are lost.
  void Send(std::vector<std::uint8_t> bytes);

  void SetFaults(const Faults& faults);

  // The line hangs up and the board loses its power: the PC's side of the pseudo terminal sees a
  // hang-up by the time this returns. Bytes under way in either direction are lost. Not to be
  // called by the listener.
  void Unplug();
  // The same board on a new pseudo terminal: flash and faults kept, servos at centre, PC control
  // off. DevicePath is a new one as a rule. Throws as the constructor does.
  void Replug();

  // The step data that has been written into the flash so far.
  std::vector<std::uint8_t> FlashData() const;
  // Puts an image into the flash as if it had been programmed. A header that is not 66 bytes long
  // is cut or filled with zeros; data beyond the flash's 24064 bytes are dropped.
  void SetFlash(const std::vector<std::uint8_t>& header, const std::vector<std::uint8_t>& data);

 private:
  using TimePoint = std::chrono::steady_clock::time_point;

  // A byte that was taken from the line and is on its way to the board.
  struct ArrivingByte {
    std::uint8_t byte;
    TimePoint sent;
  };

  // On the board's thread, with the mutex held.
  void Run();
  void Work();
  void Sleep(std::unique_lock<std::mutex>& lock);
  bool CanTake() const;
  void TakeFromLine();
  void Deliver(TimePoint now);
  void SendDue(TimePoint now);
  std::optional<TimePoint> NextDue() const;

  // On any thread, with the mutex held.
  std::string Activity() const;
  void HangUp(std::unique_lock<std::mutex>& lock);
  void PowerOff();
  void NoteChange();
  void Wake();

  const Pace pace_;
  mutable std::mutex mutex_;  // guards everything down to the listener
  ServoBoard board_;
  ReplyFaults faults_;
  Outbox outbox_;
  LineClock arriving_clock_;
  std::deque<ArrivingByte> arriving_;
  std::unique_ptr<PtyLine> line_;
  // Unplugged, but not yet closed: poll() keeps a terminal alive, so only the thread can hang it
  // up.
  std::unique_ptr<PtyLine> retired_line_;
  std::condition_variable retired_;
  std::vector<LoggedByte> log_;
  mutable std::condition_variable logged_;
  bool stopping_ = false;
  bool changes_ = false;
  mutable bool listener_told_ = false;

  std::mutex listener_mutex_;
  std::function<void()> changed_;

  int wake_ = -1;
  std::thread thread_;
};

}  // namespace simboard
