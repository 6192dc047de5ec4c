#include "board/reply_faults.h"

#include <algorithm>

namespace simboard {

void ReplyFaults::Set(const Faults& faults) {
  faults_ = faults;
}

std::vector<std::uint8_t> ReplyFaults::Distort(ServoBoard::Reply reply) {
  const bool is_read = reply.kind == ServoBoard::Reply::Kind::kFlash;
  if (faults_.silent || (!is_read && SwallowsAcknowledgement())) return {};

  if (is_read && faults_.lying_header) {
    std::copy(faults_.lying_header->begin(), faults_.lying_header->end(), reply.bytes.begin());
  }
  if (faults_.cut_reply_at && *faults_.cut_reply_at < reply.bytes.size()) {
    reply.bytes.resize(*faults_.cut_reply_at);
  }

  std::vector<std::uint8_t> bytes = faults_.before_reply;
  const int times = is_read ? 1 : 1 + std::max(faults_.extra_replies, 0);
  for (int i = 0; i < times; ++i) {
    bytes.insert(bytes.end(), reply.bytes.begin(), reply.bytes.end());
  }
  if (is_read) {
    bytes.insert(bytes.end(), faults_.after_reply.begin(), faults_.after_reply.end());
  }
  return bytes;
}

bool ReplyFaults::SwallowsAcknowledgement() {
  if (!faults_.silent_after_acks) return false;
  if (*faults_.silent_after_acks <= 0) return true;
  --*faults_.silent_after_acks;
  return false;
}

}  // namespace simboard
