#include "board/outbox.h"

#include <algorithm>
#include <utility>

namespace simboard {

void Outbox::Add(Message message) {
  if (!message.bytes.empty()) messages_.push_back(std::move(message));
}

void Outbox::DropReplies() {
  std::erase_if(messages_, [](const Message& message) { return message.reply.has_value(); });
  held_up_ = held_up_ && !messages_.empty();
}

void Outbox::Clear() {
  messages_.clear();
  held_up_ = false;
}

std::size_t Outbox::DueBytes(const Message& message, TimePoint now) const {
  LineClock ahead = clock_;
  std::size_t end = message.sent;
  while (end < message.bytes.size() && ahead.Arrival(message.not_before) <= now) {
    ahead.Pass(message.not_before);
    ++end;
  }
  return end - message.sent;
}

bool Outbox::Pump(const Writer& write, TimePoint now) {
  bool moved = false;
  if (held_up_) clock_.Resume(now);
  while (!messages_.empty()) {
    Message& message = messages_.front();
    const std::size_t due = DueBytes(message, now);
    if (due == 0) break;
    const std::size_t taken = write(std::span(message.bytes).subspan(message.sent, due));
    for (std::size_t i = 0; i < taken; ++i) clock_.Pass(message.not_before);
    message.sent += taken;
    moved = moved || taken > 0;
    held_up_ = taken < due;
    if (held_up_) break;
    if (message.sent == message.bytes.size()) messages_.pop_front();
  }
  return moved;
}

std::optional<Outbox::TimePoint> Outbox::NextDue() const {
  if (messages_.empty() || held_up_) return std::nullopt;
  return clock_.Arrival(messages_.front().not_before);
}

const Outbox::Message* Outbox::FirstReply() const {
  const auto reply = std::find_if(messages_.begin(), messages_.end(),
                                  [](const Message& message) { return message.reply.has_value(); });
  return reply == messages_.end() ? nullptr : &*reply;
}

}  // namespace simboard
