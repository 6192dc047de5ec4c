#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <thread>
#include <vector>

#include "bench/connected_program.h"
#include "bench/rows.h"
#include "platform/controls/cw_button.h"

namespace bench {
namespace {

constexpr int kTick = 20;            // ms
constexpr int kTicks = 1000;         // of the long measurement
constexpr int kStall = 70;           // ms
constexpr double kLongPlay = 30000;  // ms
constexpr int kTicksBeforeStall = 10;
constexpr int kTicksAfterStall = 50;

// When the ticks came.
class TickLog {
 public:
  // After tick `stall_at` the thread is held up once.
  explicit TickLog(int ticks, int stall_at = -1) : ticks_(ticks), stall_at_(stall_at) {}

  void Start() { times_ = {Clock::now()}; }
  void Tick() {
    if (Done()) return;
    times_.push_back(Clock::now());
    if (Count() == stall_at_) std::this_thread::sleep_for(std::chrono::milliseconds(kStall));
  }
  bool Done() const { return Count() >= ticks_; }

  // How far the last tick was from where the intervals add up to.
  double Deviation() const {
    return Milliseconds(times_.back() - times_.front()) - kTick * Count();
  }
  // Of each tick, against the first one's start.
  std::vector<double> Lateness() const {
    std::vector<double> lateness;
    for (std::size_t i = 1; i < times_.size(); ++i) {
      lateness.push_back(Milliseconds(times_[i] - times_[0]) - kTick * static_cast<double>(i));
    }
    return lateness;
  }
  // The intervals behind the tick that ended the stall.
  std::vector<double> IntervalsAfterStall() const {
    std::vector<double> intervals;
    for (std::size_t i = static_cast<std::size_t>(stall_at_) + 2; i < times_.size(); ++i) {
      intervals.push_back(Milliseconds(times_[i] - times_[i - 1]));
    }
    return intervals;
  }

 private:
  int Count() const { return static_cast<int>(times_.size()) - 1; }

  const int ticks_;
  const int stall_at_;
  std::vector<Clock::time_point> times_;
};

void Live(const std::function<bool()>& done) {
  while (!done()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

// Two steps of 20 ms that differ in so many channels.
rig::Sequences TwoSteps(std::size_t channels) {
  rig::Sequences sequences;
  for (const int position : {100, 150}) {
    rig::Step step{};
    step.positions.fill(128);
    std::fill_n(step.positions.begin(), channels, static_cast<std::uint8_t>(position));
    step.ticks = 1;
    sequences[0].push_back(step);
  }
  return sequences;
}

// Plays two steps of 20 ms whose bytes the line carries in time.
void Play(TickLog& log, bool movement_shown = false) {
  ConnectedProgram program(simboard::Pace::kUnpaced, {.timer = true});
  platform::HiTimer& timer = program.real_timer;
  const QObject listener;
  QObject::connect(&timer, &platform::HiTimer::Timer, &listener, [&log] { log.Tick(); });
  // A window that is made later hears of each tick later than the log.
  program.Restart({.timer = true});
  program.Connect();
  program.Load(TwoSteps(6));
  if (movement_shown) {
    program.Trigger("ListMovement");
    program.hands->Find<QWidget>("Movement").resize(1200, 700);
  }
  auto& play = program.hands->Find<platform::CWButton>("CWButtonEmuPC");
  play.click();
  if (!timer.Enabled()) qFatal("the playback doesn't start");
  log.Start();
  Live([&] { return log.Done(); });
  play.click();
}

// How long the board goes on after "PC Emu" has been switched Off, having played steps that take
// longer on the line than they last.
double GoesOnAfterOff() {
  ConnectedProgram program(simboard::Pace::k9600, {.timer = true});
  program.Load(TwoSteps(12));
  auto& play = program.hands->Find<platform::CWButton>("CWButtonEmuPC");
  play.click();
  const auto start = Clock::now();
  Live([&] { return Milliseconds(Clock::now() - start) > kLongPlay; });
  play.click();
  const auto off = Clock::now();
  std::size_t taken = 0;
  do {
    taken = program.board.Log().size();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  } while (program.board.Log().size() != taken);
  return Milliseconds(program.board.Log().back().when - off);
}

void RunBare(Qt::TimerType type, TickLog& log) {
  QTimer timer;
  timer.setTimerType(type);
  timer.callOnTimeout([&] { log.Tick(); });
  timer.start(kTick);
  log.Start();
  Live([&] { return log.Done(); });
}

}  // namespace

void AddPlaybackRows(Report& report) {
  constexpr struct {
    Qt::TimerType type;
    const char* name;
  } kBareTimers[] = {{Qt::PreciseTimer, "the toolkit's precise timer"},
                     {Qt::CoarseTimer, "the toolkit's coarse timer"}};
  TickLog even(kTicks);
  TickLog stalled(kTicksBeforeStall + kTicksAfterStall, kTicksBeforeStall);
  Play(even);
  Play(stalled);
  for (const auto& [type, name] : kBareTimers) {
    TickLog bare(kTicks);
    TickLog bare_stalled(kTicksBeforeStall + kTicksAfterStall, kTicksBeforeStall);
    RunBare(type, bare);
    RunBare(type, bare_stalled);
    report.Add("playback: 1000 ticks of 20 ms off 20 s by", even.Deviation(), name,
               bare.Deviation(), "ms");
    report.Add("  a tick late by, median", Median(even.Lateness()), name, Median(bare.Lateness()),
               "ms");
    report.Add("  99th percentile", Quantile(even.Lateness(), 0.99), name,
               Quantile(bare.Lateness(), 0.99), "ms");
    const auto intervals = stalled.IntervalsAfterStall();
    const auto bare_intervals = bare_stalled.IntervalsAfterStall();
    report.Add("  shortest interval after a stall of 70 ms", std::ranges::min(intervals), name,
               std::ranges::min(bare_intervals), "ms");
    report.Add("  longest", std::ranges::max(intervals), name, std::ranges::max(bare_intervals),
               "ms");
  }
  TickLog watched(kTicks);
  Play(watched, true);
  report.Add("with the movement shown: a tick late by, median", Median(watched.Lateness()),
             "without", Median(even.Lateness()), "ms");
  report.Add("  99th percentile", Quantile(watched.Lateness(), 0.99), "without",
             Quantile(even.Lateness(), 0.99), "ms");
  report.Add("after 30 s of 20 ms steps of all channels the board goes on for", GoesOnAfterOff(),
             "a pose's time on the line", 24 * 11 / 9.6, "ms");
}

}  // namespace bench
