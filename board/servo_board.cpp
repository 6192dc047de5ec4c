#include "board/servo_board.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace simboard {
namespace {

constexpr std::size_t kBlockSize = 256;

constexpr std::uint8_t kPcControlOff = 0;
constexpr std::uint8_t kPcControlOn = 1;
constexpr std::uint8_t kProgram = 2;
constexpr std::uint8_t kPlay = 3;
constexpr std::uint8_t kStop = 4;
constexpr std::uint8_t kRead = 6;
constexpr std::uint8_t kErase = 7;
constexpr std::uint8_t kReset = 17;

// The channel that a position command moves; empty for any other code.
std::optional<std::size_t> MovedChannel(std::uint8_t code) {
  if (code >= 8 && code <= 15) return code - 8u;
  if (code >= 40 && code <= 43) return code - 32u;
  return std::nullopt;
}

}  // namespace

void ServoBoard::Receive(std::uint8_t byte, TimePoint now) {
  last_byte_ = now;
  switch (expecting_) {
    case Expecting::kCommand:
      Command(byte);
      break;
    case Expecting::kSequence:
      Play(byte, now);
      break;
    case Expecting::kPosition:
      Move(*MovedChannel(code_), byte);
      break;
    case Expecting::kHeader:
      TakeHeaderByte(byte);
      break;
    case Expecting::kData:
      TakeDataByte(byte);
      break;
  }
}

void ServoBoard::Command(std::uint8_t code) {
  if (MovedChannel(code)) return Expect(Expecting::kPosition, code);
  switch (code) {
    case kPcControlOff:
    case kPcControlOn:
      playing_.reset();
      pc_control_ = code == kPcControlOn;
      return Done(pc_control_ ? "PC control on" : "PC control off");
    case kProgram:
      return Expect(Expecting::kHeader, code);
    case kPlay:
      return Expect(Expecting::kSequence, code);
    case kStop:
      playing_.reset();
      return Done("stop");
    case kRead:
      replies_.push_back({Reply::Kind::kFlash, flash_.ReadOut()});
      return Done("read");
    case kErase:
      playing_.reset();
      flash_ = {};
      Acknowledge(Reply::Kind::kEraseDone);
      return Done("erase");
    case kReset:
      playing_.reset();
      pc_control_ = false;
      positions_ = Centred();
      return Done("reset");
    default:
      char words[20];
      std::snprintf(words, sizeof words, "unknown byte 0x%02X", code);
      return Done(words);
  }
}

void ServoBoard::TakeHeaderByte(std::uint8_t byte) {
  taken_.push_back(byte);
  if (taken_.size() < StoredImage::kHeaderSize) return;
  playing_.reset();
  flash_ = {};
  std::copy(taken_.begin(), taken_.end(), flash_.header.begin());
  const std::size_t total = flash_.AnnouncedBytes();
  Acknowledge(Reply::Kind::kBlockTaken);
  Done("program, " + std::to_string(total) + " bytes");
  if (total > 0) Expect(Expecting::kData, kProgram);
}

void ServoBoard::TakeDataByte(std::uint8_t byte) {
  taken_.push_back(byte);
  ++data_taken_;
  const bool complete = taken_.size() == kBlockSize;
  const bool last = data_taken_ == flash_.AnnouncedBytes();
  if (complete || last) StoreBlock();
  if (complete) Acknowledge(Reply::Kind::kBlockTaken);
  if (last) Expect(Expecting::kCommand, 0);
}

void ServoBoard::StoreBlock() {
  const std::size_t space = StoredImage::kCapacity - flash_.data.size();
  flash_.data.insert(flash_.data.end(), taken_.begin(),
                     taken_.begin() + static_cast<std::ptrdiff_t>(std::min(space, taken_.size())));
  taken_.clear();
}

void ServoBoard::Play(std::uint8_t sequence, TimePoint now) {
  const std::string words = "play sequence " + std::to_string(sequence);
  if (sequence >= kSequences) return Done(words + ": there is none");
  if (flash_.Steps(sequence) == 0) return Done(words + ": it is empty");
  playing_ = Playing{sequence, 0};
  ShowStep(now);
  Done(words);
}

void ServoBoard::ShowStep(TimePoint start) {
  const auto step = flash_.Step(playing_->sequence, playing_->step);
  std::copy_n(step.begin(), kChannels, positions_.begin());
  const int ticks = step[kChannels] << 8 | step[kChannels + 1];
  next_step_ = start + kTick * std::max(ticks, 1);
}

void ServoBoard::Move(std::size_t channel, std::uint8_t position) {
  positions_[channel] = position;
  journal_.NoteMove(static_cast<int>(channel), position);
  Expect(Expecting::kCommand, 0);
}

void ServoBoard::Expect(Expecting what, std::uint8_t code) {
  expecting_ = what;
  code_ = code;
  taken_.clear();
  data_taken_ = 0;
}

void ServoBoard::Done(std::string words) {
  journal_.Note(std::move(words));
  Expect(Expecting::kCommand, 0);
}

void ServoBoard::Acknowledge(Reply::Kind kind) {
  replies_.push_back({kind, {0xFF}});
}

std::vector<ServoBoard::Reply> ServoBoard::TakeReplies() {
  return std::exchange(replies_, {});
}

void ServoBoard::Tick(TimePoint now) {
  if (const auto due = GiveUpDue(); due && now >= *due) GiveUpProgram();
  while (playing_ && now >= next_step_) {
    playing_->step = (playing_->step + 1) % flash_.Steps(playing_->sequence);
    ShowStep(next_step_);
  }
}

std::optional<ServoBoard::TimePoint> ServoBoard::NextDue() const {
  const auto give_up = GiveUpDue();
  if (!playing_) return give_up;
  return give_up ? std::min(*give_up, next_step_) : next_step_;
}

std::optional<ServoBoard::TimePoint> ServoBoard::GiveUpDue() const {
  const bool programming = expecting_ == Expecting::kHeader || expecting_ == Expecting::kData;
  if (!programming || replying_) return std::nullopt;
  return last_byte_ + kPatience;
}

void ServoBoard::GiveUpProgram() {
  if (expecting_ == Expecting::kHeader) {
    journal_.Note("program given up within its header");
  } else {
    journal_.Note("program given up after " + std::to_string(data_taken_) + " of " +
                  std::to_string(flash_.AnnouncedBytes()) + " bytes");
  }
  Expect(Expecting::kCommand, 0);
}

void ServoBoard::SetReplying(bool replying, TimePoint now) {
  if (replying_ && !replying) last_byte_ = now;
  replying_ = replying;
}

void ServoBoard::PowerCycle() {
  Expect(Expecting::kCommand, 0);
  playing_.reset();
  replying_ = false;
  replies_.clear();
  pc_control_ = false;
  positions_ = Centred();
}

void ServoBoard::SetFlash(StoredImage image) {
  if (TakingHeader() || Programming()) Expect(Expecting::kCommand, 0);
  playing_.reset();
  flash_ = std::move(image);
}

std::optional<ServoBoard::Transfer> ServoBoard::Programming() const {
  if (expecting_ != Expecting::kData) return std::nullopt;
  return Transfer{data_taken_, flash_.AnnouncedBytes()};
}

}  // namespace simboard
