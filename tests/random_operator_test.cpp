// An operator who does anything at any time, with a board that misbehaves: after each action the
// program must be in a state that makes sense. PELMORA_SEED and PELMORA_ACTIONS replay a run.
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <algorithm>
#include <array>
#include <numeric>

#include "core/step_line.h"
#include "tests/window_fixture.h"

namespace pelmora {
namespace {

constexpr std::uint32_t kSeed = 20261122;
constexpr int kActions = 700;
constexpr int kGlance = 20;     // ms between his looks at what is going on
constexpr int kPatience = 120;  // ms that the operator lets an operation wait
constexpr int kLongPatience = 800;

class RandomOperator : public WindowTest {
 protected:
  RandomOperator() {
    box.ExpectAnything();
    LosePatience();
  }

  int Random(int below) { return static_cast<int>(random_.bounded(below)); }

  bool Connected() const { return !Enabled("ComboPort"); }

  void Press(const char* button) {
    auto& control = hands->Find<QPushButton>(button);
    if (control.isEnabled()) control.click();
  }

  // One action, in words.
  QString Act() {
    static constexpr std::array buttons = {
        "CommandAdd",       "CommandAdd",    "CommandAdd",    "CommandAdd",    "CommandRem",
        "CommandReplace",   "CommandClear",  "CommandUp",     "CommandDwn",    "CommandMoreSeq",
        "CommandLessSeq",   "CommandUpdate", "CommandBrk",    "CommandBrk",    "CommandResBrk",
        "CommandContinue",  "CommandRepeat", "CommandInBuff", "CWButtonEmuPC", "CWButtonRealEmu",
        "CWButtonMainOnOff"};
    static constexpr std::array operations = {"CommandErase", "CommandFlash", "CommandRead"};
    switch (Random(16)) {
      case 0: {
        const int channel = Random(12);
        SetSlider(channel, Random(256));
        return QString("slider %1").arg(channel);
      }
      case 1: {
        const QString text = QString::number(Random(400) - 200) + (Random(4) == 0 ? "-" : "");
        hands->Type(QString("Text1_%1").arg(Random(24)), text, Random(2) == 0);
        return "types " + text;
      }
      case 2:
        hands->Type("CWNumEditTimeStep", QString::number(Random(40000)), Random(2) == 0);
        return "types a duration";
      case 3: {
        const int lines = static_cast<int>(Lines().size());
        if (lines == 0) return "has no line to drag";
        const int from = Random(std::min(lines, 12));
        const int to = Random(std::min(lines, 12));
        hands->DragLine("ListSequence", from, to);
        return QString("drags line %1 to %2").arg(from).arg(to);
      }
      case 4:
        Select(Random(static_cast<int>(Lines().size()) + 1) - 1);
        return "selects a line";
      case 5:
        for (int ticks = Random(5); ticks > 0; --ticks) timer.Elapse();
        return "lets the timer tick";
      case 6: {
        const char* operation = operations[static_cast<std::size_t>(Random(3))];
        Misbehave();
        Press(operation);
        return operation;
      }
      case 7:
        if (!Connected()) TryToConnect();
        return "connects";
      case 8:
        if (Random(4) == 0) {
          board.Unplug();
          QTest::qWait(20);
          board.Replug();
        }
        return "pulls the adapter, perhaps";
      case 9: {
        files.answer = Random(3) == 0 ? std::nullopt : std::optional(folder_.filePath("file"));
        Trigger(Random(2) == 0 ? "SaveBuffer" : "LoadBuffer");
        return "saves or loads";
      }
      case 10: {
        if (Lines().size() < 2) return "has nothing to interpolate";
        Press("CommandInterpolate");
        auto* count = form->findChild<QSpinBox*>("CWNumEditInterp");
        if (!count) return "selected nothing to interpolate";
        count->setValue(Random(12));
        Press(Random(3) == 0 ? "CancelButton" : "OKButton");
        if (auto* dialog = form->findChild<QDialog*>("DialogInterp")) dialog->reject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return "interpolates";
      }
      case 11:
        if (Random(8) == 0) Press("CommandClearAll");
        return "clears all, perhaps";
      case 12:
        Trigger(Random(2) == 0 ? "Resetting" : "FreshProg");
        return "resets or toggles a panel";
      case 13: {
        static constexpr std::array items = {"ListUndo", "ListUndo",  "ListRedo",        "ListCut",
                                             "ListCopy", "ListPaste", "ListCopySequence"};
        const char* item = items[static_cast<std::size_t>(Random(items.size()))];
        Trigger(item);
        return item;
      }
      default: {
        const char* button = buttons[static_cast<std::size_t>(Random(buttons.size()))];
        Press(button);
        return button;
      }
    }
  }

  void TryToConnect() {
    auto& combo = hands->Find<QComboBox>("ComboPort");
    combo.setCurrentIndex(0);
    emit combo.activated(0);
  }

  void Misbehave() {
    simboard::Faults faults;
    switch (Random(9)) {
      case 0:
        faults.silent = true;
        break;
      case 1:
        faults.before_reply = {3, 0};
        break;
      case 2:
        faults.extra_replies = 2;
        break;
      case 3:
        faults.cut_reply_at = static_cast<std::size_t>(Random(120));
        break;
      case 4:
        faults.after_reply = {1, 2, 3};
        break;
      case 5: {
        std::array<std::uint8_t, 66> header{};
        for (auto& byte : header)
          byte = static_cast<std::uint8_t>(Random(4) == 0 ? Random(256) : 0);
        faults.lying_header = header;
        break;
      }
      default:
        break;  // the board behaves
    }
    board.SetFaults(faults);
  }

  // Called now and then, also inside waits: does something else in between, and ends a wait that
  // takes too long.
  void LosePatience() {
    // A timer does not fire inside its own slot, and this may come to wait: each time is a new one.
    QTimer::singleShot(kGlance, form.get(), [this] { LosePatience(); });
    // An operation started inside another's wait takes the flags with it and may leave the first
    // one waiting with "Abort" disabled: only the line can end it then.
    if (acting_.isValid() && acting_.elapsed() > kLongPatience) {
      acting_.restart();
      board.Unplug();
      board.Replug();
      return;
    }
    if (!Waiting()) {
      waiting_.invalidate();
      return;
    }
    if (!waiting_.isValid()) waiting_.start();
    if (waiting_.elapsed() < kPatience) {
      if (depth_ < 2 && Random(4) == 0) {
        ++depth_;
        Act();
        --depth_;
      }
      return;
    }
    waiting_.restart();
    if (Enabled("Command1")) {
      Press("Command1");
    } else {
      board.Unplug();
      board.Replug();
    }
  }

  void CheckState(bool was_connected) {
    const QStringList lines = Lines();
    ASSERT_LE(lines.size(), kSteps);
    for (const std::int16_t steps : Data().SeqSteps) {
      ASSERT_GE(steps, 0);
      ASSERT_LE(steps, kSteps);
    }
    for (int i = 0; i < lines.size(); ++i) {
      const EditRow& row = Data().EditBuffer[static_cast<std::size_t>(i)];
      EditRow read{};
      ASSERT_TRUE(ReadStepLine(lines[i].toStdString(), ".", read)) << lines[i].toStdString();
      read[kBreakColumn] = HasBreakMark(lines[i].toStdString()) ? 1 : 0;
      ASSERT_EQ(read, row) << "line " << i;
    }
    ASSERT_FALSE(Waiting());
    ASSERT_FALSE(Enabled("Command1"));
    ASSERT_FALSE(BarShown());
    ASSERT_TRUE(Enabled("ListSequence"));
    const bool pc = hands->Read("CWButtonEmuPC") == "On";
    const bool real = hands->Read("CWButtonRealEmu") == "On";
    ASSERT_FALSE(pc && real);
    ASSERT_EQ(Enabled("CWButtonRealEmu"), !pc);
    ASSERT_EQ(Enabled("CWButtonEmuPC"), !real);
    ASSERT_TRUE(pc || !timer.Enabled()) << "nothing plays while the switch is Off";
    if (!was_connected && !Connected()) {
      ASSERT_TRUE(board.Received().empty()) << "sent without a port";
    }
    board.ClearLog();
  }

  QRandomGenerator random_{kSeed};
  QTemporaryDir folder_;
  QElapsedTimer waiting_;
  QElapsedTimer acting_;
  int depth_ = 0;
};

TEST_F(RandomOperator, NeverLeavesTheProgramInAStateThatMakesNoSense) {
  bool given = false;
  const auto seed = qEnvironmentVariableIntValue("PELMORA_SEED", &given);
  if (given) random_.seed(static_cast<std::uint32_t>(seed));
  const int wanted = qEnvironmentVariableIntValue("PELMORA_ACTIONS", &given);
  const int actions = given ? wanted : kActions;
  hands->ChooseMenu("Serial");
  QStringList done;
  for (int i = 0; i < actions; ++i) {
    const bool connected = Connected();
    const auto lines = Lines().size();
    acting_.start();
    done.append(Act());
    acting_.invalidate();
    // A loss that a write has found is announced at the next turn.
    QCoreApplication::processEvents();
    if (done.last() == "CommandAdd" && Lines().size() > lines) {
      const int steps = std::accumulate(Data().SeqSteps.begin(), Data().SeqSteps.end(), 0);
      ASSERT_EQ(hands->Read("LabelByte"), QString("%1 bytes").arg(14 * steps));
    }
    ASSERT_NO_FATAL_FAILURE(CheckState(connected || done.last() == "connects"))
        << "seed " << (seed != 0 ? seed : static_cast<int>(kSeed)) << ", action " << i
        << " of: " << done.mid(std::max<qsizetype>(0, i - 10)).join("; ").toStdString();
  }
}

}  // namespace
}  // namespace pelmora
