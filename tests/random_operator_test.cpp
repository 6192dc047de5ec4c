// An operator who does anything at any time, for a long while. PELMORA_SEED and PELMORA_ACTIONS
// replay a run. One in which a kind of action did nothing has tested nothing.
#include "tests/random_operator.h"

#include <iostream>

namespace pelmora {
namespace {

constexpr int kActions = 5000;
constexpr int kEnough = 10;  // times that each of these must have been seen in a run of so many
constexpr char kWanted[] =
    "Data Flash Erased, Data Flash Programmed!, Data Flash Read!, Reading Error!, Nothing to "
    "Read!, "
    "Operation Aborted!, Data Saved!, Data Loaded!, The connection on, CommandAdd, CommandRem, "
    "CommandReplace, CommandClear, CommandClearAll, CommandRead, OKButton, Ctrl+X, Ctrl+V, Ctrl+Z, "
    "Ctrl+Y, drag, held key, drag in the movement, key in the movement, played a step, halted, "
    "with a list longer than its window, while the board plays, "
    "undid many changes and did them again";
constexpr int kEnoughInside = 100;  // operations

TEST_F(RandomOperator, NeverLeavesTheProgramInAStateThatMakesNoSense) {
  const int seed = qEnvironmentVariable("PELMORA_SEED", "20261122").toInt();
  const int actions = qEnvironmentVariable("PELMORA_ACTIONS", QString::number(kActions)).toInt();
  random_.seed(static_cast<std::uint32_t>(seed));
  for (int i = 0; i < actions; ++i) {
    StartWatchdog();
    const int before = model_.Changes();
    Act();
    // A loss that a write has found is announced at the next turn.
    QCoreApplication::processEvents();
    ASSERT_NO_FATAL_FAILURE(CheckState());
    const int changes = model_.Changes() - before;
    CheckUndo(Random(20) == 0 ? std::min(model_.Changes(), changes + kMany) : changes);
    ASSERT_FALSE(HasFailure())
        << "seed " << seed << ", action " << i
        << " of: " << done_.mid(std::max<qsizetype>(0, done_.size() - 10)).join("; ").toStdString();
  }
  for (const auto& [kind, times] : seen_.asKeyValueRange()) {
    std::cout << times << " times: " << kind.toStdString() << '\n';
  }
  if (actions < kActions) return;
  for (const QString& kind : QString(kWanted).split(", ")) {
    EXPECT_GE(seen_[kind], kEnough) << kind.toStdString();
  }
  EXPECT_GE(seen_[kCompared], kEnoughInside);
  EXPECT_GE(seen_[kInside], kEnoughInside);
}

}  // namespace
}  // namespace pelmora
