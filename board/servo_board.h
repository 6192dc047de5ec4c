// The firmware of the twelve-channel servo board: what it does with the bytes that reach it.
//
// It has no line and no clock of its own. Whoever runs it hands it each byte and the time, fetches
// its replies after every byte, and calls Tick when NextDue has come. Not thread-safe.
//
// Commands, each a code byte and its parameters:
//    0, 1           PC control off, on
//    2 header data  program: the 66-byte header is answered with 255, and so is every complete
//                   block of 256 bytes of step data (a shorter last block is not). Taking the
//                   header empties the flash; the blocks are written as they become complete.
//                   What exceeds the flash is acknowledged, but not kept.
//    3 n            play the stored sequence n over and over, from its first step. Ignored when
//                   there is no such sequence, or nothing in it.
//    4              stop playing
//    6              read: answered with the header and as many bytes of step data as it announces
//    7              erase: the flash then reads as a header of zeros; answered with 255
//    8..15 p        position of channel 0..7, taken at any time, playing or not
//    40..43 p       position of channel 8..11
//    17             reset: servos to centre, PC control off; the flash stays
// 0, 1, 4, 17, and 2 and 7 which take the flash away, end the board's playing. A byte that is none
// of these codes is noted in the journal and has no effect.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "board/command_journal.h"
#include "board/stored_image.h"

namespace simboard {

class ServoBoard {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  static constexpr std::chrono::milliseconds kTick{20};
  // How long the board waits for the next byte of a program before it gives the transfer up.
  static constexpr std::chrono::milliseconds kPatience{1000};

  struct Reply {
    enum class Kind { kEraseDone, kBlockTaken, kFlash };  // the first two are acknowledgements
    Kind kind;
    std::vector<std::uint8_t> bytes;
  };

  // Of a program: bytes of step data taken, and announced.
  struct Transfer {
    std::size_t done;
    std::size_t total;
  };

  struct Playing {
    std::size_t sequence;
    std::size_t step;
  };

  void Receive(std::uint8_t byte, TimePoint now);
  // The replies to what has been received since the last call, in order.
  std::vector<Reply> TakeReplies();

  // Plays on, and gives a program up when no byte of it has come for kPatience: complete blocks
  // stay in the flash, the rest is lost, and the board listens for commands again. To be called
  // only after every byte that has arrived was handed to Receive.
  void Tick(TimePoint now);
  // When Tick has something to do next; empty while only a byte can change anything.
  std::optional<TimePoint> NextDue() const;

  // Whether a reply is still on its way out. The sender of a program waits for it meanwhile, so the
  // board's patience starts anew at the end.
  void SetReplying(bool replying, TimePoint now);

  // The power goes and comes back: only the flash stays (a program that was under way keeps its
  // complete blocks). Servos at centre, PC control off.
  void PowerCycle();

  const std::array<std::uint8_t, kChannels>& Positions() const { return positions_; }
  bool PcControl() const { return pc_control_; }
  const StoredImage& Flash() const { return flash_; }
  // Puts an image into the flash from outside; a program under way and a sequence being played end.
  void SetFlash(StoredImage image);
  const std::optional<Playing>& NowPlaying() const { return playing_; }
  std::optional<Transfer> Programming() const;
  bool TakingHeader() const { return expecting_ == Expecting::kHeader; }
  const CommandJournal& Journal() const { return journal_; }

 private:
  enum class Expecting { kCommand, kSequence, kPosition, kHeader, kData };

  void Command(std::uint8_t code);
  void TakeHeaderByte(std::uint8_t byte);
  void TakeDataByte(std::uint8_t byte);
  void StoreBlock();
  void Play(std::uint8_t sequence, TimePoint now);
  void ShowStep(TimePoint start);
  void Move(std::size_t channel, std::uint8_t position);
  void Expect(Expecting what, std::uint8_t code);
  void Done(std::string words);
  void Acknowledge(Reply::Kind kind);
  void GiveUpProgram();
  std::optional<TimePoint> GiveUpDue() const;

  std::array<std::uint8_t, kChannels> positions_ = Centred();
  bool pc_control_ = false;
  StoredImage flash_;

  Expecting expecting_ = Expecting::kCommand;
  std::uint8_t code_ = 0;
  std::vector<std::uint8_t> taken_;  // of the header, or of the block that is under way
  std::size_t data_taken_ = 0;       // bytes of step data since the header
  TimePoint last_byte_{};
  bool replying_ = false;

  std::optional<Playing> playing_;
  TimePoint next_step_{};

  std::vector<Reply> replies_;
  CommandJournal journal_;

  static constexpr std::array<std::uint8_t, kChannels> Centred() {
    std::array<std::uint8_t, kChannels> positions{};
    positions.fill(128);
    return positions;
  }
};

}  // namespace simboard
