#include "board/simulated_board.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <system_error>
#include <utility>

namespace simboard {
namespace {

using Clock = std::chrono::steady_clock;

// A serial chip takes as many bytes out of its driver before it has sent them.
constexpr std::size_t kChipBytes = 16;

}  // namespace

SimulatedBoard::SimulatedBoard(Pace pace)
    : pace_(pace), outbox_(pace), arriving_clock_(pace), line_(std::make_unique<PtyLine>()) {
  wake_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (wake_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
  thread_ = std::thread([this] { Run(); });
}

SimulatedBoard::~SimulatedBoard() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    Wake();
  }
  thread_.join();
  close(wake_);
}

std::string SimulatedBoard::DevicePath() const {
  const std::lock_guard lock(mutex_);
  return line_ ? line_->DevicePath() : std::string();
}

void SimulatedBoard::SetChanged(std::function<void()> changed) {
  const std::lock_guard listening(listener_mutex_);
  changed_ = std::move(changed);
  const std::lock_guard lock(mutex_);
  listener_told_ = false;
}

std::vector<LoggedByte> SimulatedBoard::Log() const {
  const std::lock_guard lock(mutex_);
  return log_;
}

std::vector<std::uint8_t> SimulatedBoard::Received() const {
  std::vector<std::uint8_t> bytes;
  for (const LoggedByte& logged : Log()) bytes.push_back(logged.byte);
  return bytes;
}

void SimulatedBoard::ClearLog() {
  const std::lock_guard lock(mutex_);
  log_.clear();
}

bool SimulatedBoard::WaitForBytes(std::size_t count, std::chrono::milliseconds limit) const {
  std::unique_lock lock(mutex_);
  return logged_.wait_for(lock, limit, [&] { return log_.size() >= count; });
}

void SimulatedBoard::Send(std::vector<std::uint8_t> bytes) {
  const std::lock_guard lock(mutex_);
  if (!line_) return;
  outbox_.Add({.bytes = std::move(bytes), .not_before = Clock::now()});
  NoteChange();
}

void SimulatedBoard::SetFaults(const Faults& faults) {
  const std::lock_guard lock(mutex_);
  faults_.Set(faults);
  if (faults.silent) outbox_.DropReplies();
  NoteChange();
}

void SimulatedBoard::Unplug() {
  std::unique_lock lock(mutex_);
  HangUp(lock);
}

void SimulatedBoard::Replug() {
  auto line = std::make_unique<PtyLine>();
  std::unique_lock lock(mutex_);
  HangUp(lock);
  line_ = std::move(line);
  NoteChange();
}

std::vector<std::uint8_t> SimulatedBoard::FlashData() const {
  const std::lock_guard lock(mutex_);
  return board_.Flash().data;
}

void SimulatedBoard::SetFlash(const std::vector<std::uint8_t>& header,
                              const std::vector<std::uint8_t>& data) {
  StoredImage image;
  std::copy_n(header.begin(), std::min(header.size(), image.header.size()), image.header.begin());
  image.data = data;
  image.data.resize(std::min(data.size(), StoredImage::kCapacity));
  const std::lock_guard lock(mutex_);
  board_.SetFlash(std::move(image));
  NoteChange();
}

void SimulatedBoard::Run() {
  std::unique_lock lock(mutex_);
  while (!stopping_) {
    if (std::exchange(retired_line_, nullptr)) retired_.notify_all();
    Work();
    if (changes_ && !listener_told_) {
      changes_ = false;
      listener_told_ = true;
      lock.unlock();
      {
        const std::lock_guard listening(listener_mutex_);
        if (changed_) changed_();
      }
      lock.lock();
      continue;
    }
    Sleep(lock);
  }
  line_.reset();
}

void SimulatedBoard::Work() {
  if (!line_) return;
  if (CanTake()) TakeFromLine();
  if (!line_) return;
  const TimePoint now = Clock::now();
  Deliver(now);
  if (const auto due = board_.NextDue(); due && *due <= now) {
    board_.Tick(now);
    changes_ = true;
  }
  SendDue(now);
}

bool SimulatedBoard::CanTake() const {
  return pace_ == Pace::kUnpaced || arriving_.size() < kChipBytes;
}

void SimulatedBoard::TakeFromLine() {
  const std::size_t limit = pace_ == Pace::kUnpaced ? std::numeric_limits<std::size_t>::max()
                                                    : kChipBytes - arriving_.size();
  std::vector<std::uint8_t> bytes;
  if (!line_->Read(bytes, limit)) return PowerOff();
  const TimePoint now = Clock::now();
  for (const std::uint8_t byte : bytes) arriving_.push_back({byte, now});
}

void SimulatedBoard::Deliver(TimePoint now) {
  bool any = false;
  while (!arriving_.empty()) {
    const auto [byte, sent] = arriving_.front();
    const TimePoint arrival = arriving_clock_.Arrival(sent);
    if (arrival > now) break;
    arriving_.pop_front();
    arriving_clock_.Pass(sent);
    log_.push_back({byte, arrival});
    board_.Receive(byte, arrival);
    for (ServoBoard::Reply& reply : board_.TakeReplies()) {
      const auto kind = reply.kind;
      outbox_.Add({.bytes = faults_.Distort(std::move(reply)),
                   .not_before = arrival + faults_.Delay(),
                   .reply = kind});
    }
    any = true;
  }
  if (!any) return;
  changes_ = true;
  logged_.notify_all();
}

void SimulatedBoard::SendDue(TimePoint now) {
  const auto write = [this](std::span<const std::uint8_t> bytes) { return line_->Write(bytes); };
  if (outbox_.Pump(write, now)) changes_ = true;
  board_.SetReplying(outbox_.FirstReply() != nullptr, now);
}

std::optional<SimulatedBoard::TimePoint> SimulatedBoard::NextDue() const {
  std::optional<TimePoint> next;
  const auto consider = [&next](std::optional<TimePoint> due) {
    if (due && (!next || *due < *next)) next = due;
  };
  if (!line_) return next;
  if (!arriving_.empty()) consider(arriving_clock_.Arrival(arriving_.front().sent));
  consider(outbox_.NextDue());
  consider(board_.NextDue());
  return next;
}

void SimulatedBoard::Sleep(std::unique_lock<std::mutex>& lock) {
  std::array<pollfd, 2> watched{};
  watched[0] = {.fd = wake_, .events = POLLIN, .revents = 0};
  // poll() skips a negative descriptor.
  watched[1] = {.fd = line_ ? line_->Descriptor() : -1, .events = 0, .revents = 0};
  if (CanTake()) watched[1].events |= POLLIN;
  if (outbox_.HeldUp()) watched[1].events |= POLLOUT;
  timespec wait{};
  const auto due = NextDue();
  if (due) {
    const auto left = std::max(*due - Clock::now(), Clock::duration::zero());
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    wait.tv_sec = seconds.count();
    wait.tv_nsec = std::chrono::nanoseconds(left - seconds).count();
  }
  lock.unlock();
  ppoll(watched.data(), watched.size(), due ? &wait : nullptr, nullptr);
  lock.lock();
  if (watched[0].revents == 0) return;
  std::uint64_t wakes = 0;
  [[maybe_unused]] const ssize_t emptied = read(wake_, &wakes, sizeof wakes);
}

void SimulatedBoard::HangUp(std::unique_lock<std::mutex>& lock) {
  if (line_) {
    retired_line_ = std::move(line_);
    PowerOff();
  }
  Wake();
  retired_.wait(lock, [this] { return !retired_line_; });
}

void SimulatedBoard::PowerOff() {
  line_.reset();
  arriving_.clear();
  outbox_.Clear();
  board_.PowerCycle();
  NoteChange();
}

void SimulatedBoard::NoteChange() {
  changes_ = true;
  Wake();
}

void SimulatedBoard::Wake() {
  const std::uint64_t one = 1;
  // The counter cannot be full: the thread empties it.
  [[maybe_unused]] const ssize_t written = write(wake_, &one, sizeof one);
}

std::string SimulatedBoard::Activity() const {
  using Kind = ServoBoard::Reply::Kind;
  const auto of = [](std::size_t done, std::size_t total) {
    return ", " + std::to_string(done) + " of " + std::to_string(total) + " bytes";
  };
  if (!line_) return "unplugged";
  if (board_.TakingHeader()) return "receiving a program";
  if (const auto program = board_.Programming()) {
    return "receiving a program" + of(program->done, program->total);
  }
  if (const auto* reply = outbox_.FirstReply()) {
    if (reply->reply == Kind::kFlash) {
      return "sending its flash" + of(reply->sent, reply->bytes.size());
    }
    if (reply->reply == Kind::kEraseDone) return "erasing";
  }
  if (const auto& playing = board_.NowPlaying()) {
    return "playing sequence " + std::to_string(playing->sequence) + ", step " +
           std::to_string(playing->step);
  }
  return "idle";
}

State SimulatedBoard::Snapshot() const {
  const std::lock_guard lock(mutex_);
  listener_told_ = false;
  State state;
  state.positions = board_.Positions();
  state.pc_control = board_.PcControl();
  state.activity = Activity();
  state.flash_bytes = static_cast<int>(board_.Flash().data.size());
  for (std::size_t i = 0; i < kSequences; ++i) {
    state.sequence_steps[i] = static_cast<int>(board_.Flash().Steps(i));
  }
  state.commands = board_.Journal().Lines();
  const auto* reply = outbox_.FirstReply();
  if (const auto program = board_.Programming()) {
    state.transfer_done = static_cast<int>(program->done);
    state.transfer_total = static_cast<int>(program->total);
  } else if (reply && reply->reply == ServoBoard::Reply::Kind::kFlash) {
    state.transfer_done = static_cast<int>(reply->sent);
    state.transfer_total = static_cast<int>(reply->bytes.size());
  }
  if (const auto& playing = board_.NowPlaying()) {
    state.playing_sequence = static_cast<int>(playing->sequence);
    state.playing_step = static_cast<int>(playing->step);
  }
  return state;
}

}  // namespace simboard
