#include "board/simulated_board.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "board/outbox.h"
#include "board/pty_line.h"
#include "board/reply_faults.h"
#include "board/servo_board.h"

namespace simboard {

using Clock = std::chrono::steady_clock;
using TimePoint = Clock::time_point;

class SimulatedBoard::Impl {
 public:
  explicit Impl(Pace pace)
      : outbox_(pace), arriving_clock_(pace), line_(std::make_unique<PtyLine>()) {
    wake_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wake_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
    thread_ = std::thread([this] { Run(); });
  }

  ~Impl() {
    {
      const std::lock_guard lock(mutex_);
      stopping_ = true;
      Wake();
    }
    thread_.join();
    close(wake_);
  }

  std::string DevicePath() const {
    const std::lock_guard lock(mutex_);
    return line_ ? line_->DevicePath() : std::string();
  }

  State Snapshot() const;

  void SetChanged(std::function<void()> changed) {
    const std::lock_guard listening(listener_mutex_);
    changed_ = std::move(changed);
    const std::lock_guard lock(mutex_);
    listener_told_ = false;
  }

  std::vector<LoggedByte> Log() const {
    const std::lock_guard lock(mutex_);
    return log_;
  }

  void ClearLog() {
    const std::lock_guard lock(mutex_);
    log_.clear();
  }

  bool WaitForBytes(std::size_t count, std::chrono::milliseconds limit) const {
    std::unique_lock lock(mutex_);
    return logged_.wait_for(lock, limit, [&] { return log_.size() >= count; });
  }

  void Send(std::vector<std::uint8_t> bytes) {
    const std::lock_guard lock(mutex_);
    if (!line_) return;
    outbox_.Add({.bytes = std::move(bytes), .not_before = Clock::now()});
    NoteChange();
  }

  void SetFaults(const Faults& faults) {
    const std::lock_guard lock(mutex_);
    faults_.Set(faults);
    if (faults.silent) outbox_.DropReplies();
    NoteChange();
  }

  void Unplug() {
    std::unique_lock lock(mutex_);
    UnplugLocked(lock);
  }

  void Replug() {
    auto line = std::make_unique<PtyLine>();
    std::unique_lock lock(mutex_);
    UnplugLocked(lock);
    line_ = std::move(line);
    NoteChange();
  }

  StoredImage Flash() const {
    const std::lock_guard lock(mutex_);
    return board_.Flash();
  }

  void SetFlash(StoredImage image) {
    const std::lock_guard lock(mutex_);
    board_.SetFlash(std::move(image));
    NoteChange();
  }

 private:
  struct ArrivingByte {
    std::uint8_t byte;
    TimePoint sent;
  };

  void Run();
  void Work();
  void Sleep(std::unique_lock<std::mutex>& lock);
  void TakeFromLine(TimePoint now);
  void Deliver(TimePoint now);
  void SendDue(TimePoint now);
  std::optional<TimePoint> NextDue() const;
  std::string Activity() const;
  void UnplugLocked(std::unique_lock<std::mutex>& lock);
  void PowerOff();

  // Called with the mutex held.
  void NoteChange() {
    changes_ = true;
    Wake();
  }
  void Wake() {
    const std::uint64_t one = 1;
    // The counter cannot be full: the thread empties it.
    [[maybe_unused]] const ssize_t written = write(wake_, &one, sizeof one);
  }

  mutable std::mutex mutex_;  // guards everything down to the listener
  ServoBoard board_;
  ReplyFaults faults_;
  Outbox outbox_;
  LineClock arriving_clock_;
  std::deque<ArrivingByte> arriving_;  // taken from the line, still on their way to the board
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

void SimulatedBoard::Impl::Run() {
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

void SimulatedBoard::Impl::Work() {
  if (!line_) return;
  TakeFromLine(Clock::now());
  if (!line_) return;
  const TimePoint now = Clock::now();
  Deliver(now);
  if (const auto due = board_.NextDue(); due && *due <= now) {
    board_.Tick(now);
    changes_ = true;
  }
  SendDue(now);
}

void SimulatedBoard::Impl::TakeFromLine(TimePoint now) {
  std::vector<std::uint8_t> bytes;
  if (!line_->Read(bytes)) return PowerOff();
  for (const std::uint8_t byte : bytes) arriving_.push_back({byte, now});
}

void SimulatedBoard::Impl::Deliver(TimePoint now) {
  bool any = false;
  while (!arriving_.empty() && arriving_clock_.Arrival(arriving_.front().sent) <= now) {
    const auto [byte, sent] = arriving_.front();
    arriving_.pop_front();
    arriving_clock_.Pass(sent);
    log_.push_back({byte, now});
    board_.Receive(byte, now);
    for (ServoBoard::Reply& reply : board_.TakeReplies()) {
      const auto kind = reply.kind;
      outbox_.Add({.bytes = faults_.Distort(std::move(reply)),
                   .not_before = now + faults_.Delay(),
                   .reply = kind});
    }
    any = true;
  }
  if (!any) return;
  changes_ = true;
  logged_.notify_all();
}

void SimulatedBoard::Impl::SendDue(TimePoint now) {
  const auto write = [this](std::span<const std::uint8_t> bytes) { return line_->Write(bytes); };
  if (outbox_.Pump(write, now)) changes_ = true;
  board_.SetReplying(outbox_.FirstReply() != nullptr, now);
}

std::optional<TimePoint> SimulatedBoard::Impl::NextDue() const {
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

void SimulatedBoard::Impl::Sleep(std::unique_lock<std::mutex>& lock) {
  std::array<pollfd, 2> watched{};
  watched[0] = {.fd = wake_, .events = POLLIN, .revents = 0};
  // poll() skips a negative descriptor.
  watched[1] = {.fd = line_ ? line_->Descriptor() : -1, .events = POLLIN, .revents = 0};
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

void SimulatedBoard::Impl::UnplugLocked(std::unique_lock<std::mutex>& lock) {
  if (line_) {
    retired_line_ = std::move(line_);
    PowerOff();
  }
  Wake();
  retired_.wait(lock, [this] { return !retired_line_; });
}

void SimulatedBoard::Impl::PowerOff() {
  line_.reset();
  arriving_.clear();
  outbox_.Clear();
  board_.PowerCycle();
  NoteChange();
}

std::string SimulatedBoard::Impl::Activity() const {
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

State SimulatedBoard::Impl::Snapshot() const {
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
  state.commands_received = board_.CommandsReceived();
  return state;
}

SimulatedBoard::SimulatedBoard(Pace pace) : impl_(std::make_unique<Impl>(pace)) {}
SimulatedBoard::~SimulatedBoard() = default;
std::string SimulatedBoard::DevicePath() const {
  return impl_->DevicePath();
}
State SimulatedBoard::Snapshot() const {
  return impl_->Snapshot();
}
std::vector<LoggedByte> SimulatedBoard::Log() const {
  return impl_->Log();
}
void SimulatedBoard::ClearLog() {
  impl_->ClearLog();
}
void SimulatedBoard::Send(std::vector<std::uint8_t> bytes) {
  impl_->Send(std::move(bytes));
}
void SimulatedBoard::SetFaults(const Faults& faults) {
  impl_->SetFaults(faults);
}
void SimulatedBoard::Unplug() {
  impl_->Unplug();
}
void SimulatedBoard::Replug() {
  impl_->Replug();
}
std::vector<std::uint8_t> SimulatedBoard::FlashData() const {
  return impl_->Flash().data;
}

void SimulatedBoard::SetChanged(std::function<void()> changed) {
  impl_->SetChanged(std::move(changed));
}

std::vector<std::uint8_t> SimulatedBoard::Received() const {
  std::vector<std::uint8_t> bytes;
  for (const LoggedByte& logged : impl_->Log()) bytes.push_back(logged.byte);
  return bytes;
}

bool SimulatedBoard::WaitForBytes(std::size_t count, std::chrono::milliseconds limit) const {
  return impl_->WaitForBytes(count, limit);
}

std::vector<std::uint8_t> SimulatedBoard::FlashHeader() const {
  const auto header = impl_->Flash().header;
  return {header.begin(), header.end()};
}

void SimulatedBoard::SetFlash(const std::vector<std::uint8_t>& header,
                              const std::vector<std::uint8_t>& data) {
  StoredImage image;
  std::copy_n(header.begin(), std::min(header.size(), image.header.size()), image.header.begin());
  image.data.assign(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(
                                                     std::min(data.size(), image.kCapacity)));
  impl_->SetFlash(std::move(image));
}

}  // namespace simboard
