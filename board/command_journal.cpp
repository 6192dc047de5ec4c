#include "board/command_journal.h"

#include <utility>

#include "board/angle_text.h"

namespace simboard {

void CommandJournal::Note(std::string words) {
  moved_channel_ = -1;
  lines_.push_back(std::move(words));
  if (lines_.size() > kKept) lines_.pop_front();
}

void CommandJournal::NoteMove(int channel, std::uint8_t position) {
  if (channel == moved_channel_) lines_.pop_back();
  Note("Ch" + std::to_string(channel) + " to " + std::to_string(position) + " (" +
       AngleText(position) + ")");
  moved_channel_ = channel;
}

}  // namespace simboard
