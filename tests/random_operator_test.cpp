// An operator who does anything at any time, for a long while. PELMORA_SEED and PELMORA_ACTIONS
// replay a run. One in which a kind of action did nothing has tested nothing.
#include "tests/random_operator.h"

#include <iostream>

namespace pelmora {
namespace {

constexpr std::uint32_t kSeed = 20261122;
constexpr int kActions = 5000;
constexpr int kEnough = 10;  // times that each effect must have been seen in a run of so many
constexpr int kEnoughInside = 100;  // of all operations inside others; each kind is rare

TEST_F(RandomOperator, NeverLeavesTheProgramInAStateThatMakesNoSense) {
  bool given = false;
  const auto seed = qEnvironmentVariableIntValue("PELMORA_SEED", &given);
  random_.seed(given ? static_cast<std::uint32_t>(seed) : kSeed);
  const int wanted = qEnvironmentVariableIntValue("PELMORA_ACTIONS", &given);
  const int actions = given ? wanted : kActions;
  hands->ChooseMenu("Serial");
  int start = 0;  // changes before a run in which nothing was undone for good
  int run = 0;
  for (int i = 0; i < actions; ++i) {
    StartWatchdog();
    const int before = model_.Changes();
    undo_chosen_ = false;
    Act();
    // A loss that a write has found is announced at the next turn.
    QCoreApplication::processEvents();
    ASSERT_NO_FATAL_FAILURE(CheckState());
    if (undo_chosen_) {
      start = model_.Changes();
      run = 0;
    } else {
      CheckUndo(model_.Changes() - before);
      if (++run % (2 * kLongRun) == 0) CheckUndo(model_.Changes() - start);
    }
    ASSERT_FALSE(HasFailure())
        << "seed " << (seed != 0 ? seed : static_cast<int>(kSeed)) << ", action " << i
        << " of: " << done_.mid(std::max<qsizetype>(0, done_.size() - 10)).join("; ").toStdString();
  }
  int inside = 0;
  int effects = 0;
  for (const auto& [kind, times] : seen_) {
    std::cout << times << " times: " << kind << '\n';
    if (kind.find(kInside) != std::string::npos) {
      inside += times;
    } else {
      ++effects;
      EXPECT_TRUE(actions < kActions || times >= kEnough) << kind;
    }
  }
  EXPECT_EQ(effects, 32) << "something was never done";
  EXPECT_TRUE(actions < kActions || inside >= kEnoughInside) << inside;
}

}  // namespace
}  // namespace pelmora
