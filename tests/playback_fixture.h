// A sequence of steps that differ in channel 0, played on the real window with a timer that the
// test drives.
#pragma once

#include <vector>

#include "platform/cw_button.h"
#include "tests/window_fixture.h"

namespace pelmora {

inline constexpr char kEmuPC[] = "CWButtonEmuPC";
inline constexpr char kRealEmu[] = "CWButtonRealEmu";

class Playback : public WindowTest {
 protected:
  // Channel 0 of step `step` of a composed sequence.
  static std::uint8_t Position(int step) { return static_cast<std::uint8_t>(100 + step); }
  static Bytes Shown(int step) { return {8, Position(step)}; }

  // Steps that differ in channel 0. To be called before the port is open, so that nothing is sent.
  void Compose(const std::vector<int>& durations) {
    for (std::size_t i = 0; i < durations.size(); ++i) {
      AddStep(0, Position(static_cast<int>(i)), durations[i]);
    }
    hands->Click("CommandUpdate");
  }

  void Play(int from) {
    Connect();
    Select(from);
    hands->Click(kEmuPC);
  }

  bool On(const char* name) const { return hands->Read(name) == "On"; }

  // The next tick shows exactly this step.
  void ExpectTick(int step) {
    timer.Elapse();
    EXPECT_EQ(Selected(), step);
    ExpectSent(Shown(step));
  }
  void ExpectTicks(std::initializer_list<int> steps) {
    for (const int step : steps) ExpectTick(step);
  }

  void ExpectState(bool on, bool running, bool real_emu_enabled) {
    EXPECT_EQ(On(kEmuPC), on);
    EXPECT_EQ(timer.Enabled(), running);
    EXPECT_EQ(Enabled(kRealEmu), real_emu_enabled);
    EXPECT_TRUE(Enabled(kEmuPC));
    EXPECT_EQ(hands->Find<platform::CWButton>(kEmuPC).Waiting(), on && !running);
  }
  void ExpectIdle() { ExpectState(false, false, true); }
  void ExpectRunning() { ExpectState(true, true, false); }
  void ExpectHalted() { ExpectState(true, false, false); }

  // Pulls the line; one message comes for it, also if the program does `next` before it is noticed.
  void LoseThePort(const std::function<void()>& next) {
    ExpectLoss([this] {
      ExpectIdle();
      timer.Elapse();
    });
    board.Unplug();
    next();
    EXPECT_TRUE(hands->WaitUntil([this] { return box.Outstanding() == 0; }));
    ExpectIdle();
  }

  // Just these lines carry a mark, and just their rows a flag.
  void ExpectBreaks(const std::vector<int>& breaks) const {
    const QStringList lines = Lines();
    for (int i = 0; i < kSteps; ++i) {
      const bool expected = std::ranges::count(breaks, i) > 0;
      EXPECT_EQ(lines.value(i).endsWith("\tBREAK!"), expected) << i;
      EXPECT_EQ(Data().EditBuffer[static_cast<std::size_t>(i)][kBreakColumn], expected) << i;
    }
  }

  void SetBreak(int line) {
    const int selected = Selected();
    Select(line);
    hands->Click("CommandBrk");
    Select(selected);
  }
};

}  // namespace pelmora
