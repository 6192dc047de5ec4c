// The last commands that the board received, in words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

namespace simboard {

class CommandJournal {
 public:
  static constexpr std::size_t kKept = 60;

  void Note(std::string words);
  // "Ch3 to 200 (36°)". A move of the channel that the newest line moves takes that line's place.
  void NoteMove(int channel, std::uint8_t position);

  const std::deque<std::string>& Lines() const { return lines_; }  // newest last

 private:
  std::deque<std::string> lines_;
  int moved_channel_ = -1;  // of the newest line, -1 when it is no move
};

}  // namespace simboard
