// The servo board behind a pseudo terminal: what the serial port is wired to when no board is at
// hand.
//
// The board lives on a thread of its own, which sleeps while nothing happens on the line. Every
// function here may be called from any thread, unless it says otherwise.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "board/faults.h"
#include "board/line_clock.h"

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
  std::uint64_t commands_received =
      0;  // whole commands since the board was made, unknown codes too
};

// A byte that came from the PC, and when the board took it.
struct LoggedByte {
  std::uint8_t byte;
  std::chrono::steady_clock::time_point when;
};

class SimulatedBoard {
 public:
  using Pace = simboard::Pace;
  using State = simboard::State;
  using LoggedByte = simboard::LoggedByte;
  using Faults = simboard::Faults;

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

  // The flash as a read sends it: the 66-byte header, and the step data written so far.
  std::vector<std::uint8_t> FlashHeader() const;
  std::vector<std::uint8_t> FlashData() const;
  // Puts an image into the flash as if it had been programmed. A header that is not 66 bytes long
  // is cut or filled with zeros; data beyond the flash's 24064 bytes are dropped.
  void SetFlash(const std::vector<std::uint8_t>& header, const std::vector<std::uint8_t>& data);

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace simboard
