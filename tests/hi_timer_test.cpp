#include "platform/system/hi_timer.h"

#include <gtest/gtest.h>

#include <QEventLoop>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <numeric>
#include <vector>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

struct HiTimerTest : testing::Test {
  // Runs until the tick number `count`, which stops the timer; the times in ms.
  std::vector<double> Ticks(std::size_t count, const std::function<void(std::size_t)>& in_tick) {
    std::vector<double> times;
    QEventLoop loop;
    const auto start = Clock::now();
    QObject::connect(&timer, &SystemHiTimer::Timer, &loop, [&] {
      times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
      in_tick(times.size());
      if (times.size() != count) return;
      timer.SetEnabled(false);
      QTimer::singleShot(100, &loop, &QEventLoop::quit);
    });
    timer.SetEnabled(true);
    loop.exec();
    EXPECT_EQ(times.size(), count) << "a stopped timer ticks";
    return times;
  }

  // A busy machine may stall a run at any moment, but not one after the other.
  static bool OneOfFive(const std::function<bool()>& run) {
    return std::ranges::any_of(std::array{1, 2, 3, 4, 5}, [&](int) { return run(); });
  }

  SystemHiTimer timer;
};

TEST_F(HiTimerTest, LateTicksDoNotAddUp) {
  timer.SetInterval(10);
  // Each tick ends 3 ms late; were the next one counted from there, none would come within 13 ms.
  // A stall of the machine delays some.
  const auto times = Ticks(60, [](std::size_t) { QThread::msleep(3); });
  EXPECT_GE(times.back(), 599.0);
  std::vector<double> waits(times.size());
  std::adjacent_difference(times.begin(), times.end(), waits.begin());
  std::ranges::sort(waits);
  EXPECT_LT(waits[30], 12.0);
}

TEST_F(HiTimerTest, AfterAStallNoTickCatchesUp) {
  timer.SetInterval(20);
  EXPECT_TRUE(OneOfFive([this] {
    const auto times = Ticks(8, [&](std::size_t tick) {
      if (tick == 3) QTimer::singleShot(0, &timer, [] { QThread::msleep(90); });
    });
    EXPECT_GE(times[3] - times[2], 89.0);  // the tick that was due in the stall comes late
    bool steady = true;
    for (std::size_t i = 4; i < times.size(); ++i) steady &= times[i] - times[i - 1] >= 15.0;
    return steady;
  }));
}

TEST_F(HiTimerTest, IntervalSetInATickGovernsTheNextWait) {
  EXPECT_TRUE(OneOfFive([this] {
    timer.SetInterval(1);
    const auto times = Ticks(4, [&](std::size_t tick) { timer.SetInterval(tick == 2 ? 60 : 0); });
    EXPECT_GE(times[2] - times[1], 50.0);
    return times[1] < 40.0 && times[3] - times[2] < 40.0;
  }));
}

TEST_F(HiTimerTest, EnablingStartsAFullWaitAnew) {
  EXPECT_TRUE(OneOfFive([this] {
    QSignalSpy ticks(&timer, &SystemHiTimer::Timer);
    timer.SetInterval(60);
    for (int i = 0; i < 2; ++i) {
      timer.SetEnabled(true);
      QTest::qWait(40);
    }
    timer.SetEnabled(false);
    return ticks.isEmpty();
  }));
}

}  // namespace
}  // namespace platform
