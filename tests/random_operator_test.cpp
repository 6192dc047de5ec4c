// An operator who does anything at any time, with a board that misbehaves: after each action the
// program must be in a state that makes sense. PELMORA_SEED and PELMORA_ACTIONS replay a run. What
// the actions have brought about is counted: a run in which a kind of them did nothing has tested
// nothing.
#include <QClipboard>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <array>
#include <iostream>
#include <map>
#include <numeric>

#include "core/step_line.h"
#include "tests/sequence_view.h"
#include "tests/table_model.h"

namespace pelmora {
namespace {

constexpr std::uint32_t kSeed = 20261122;
constexpr int kActions = 3600;
constexpr int kEnough = 10;  // times that each effect must have been seen in a run of so many
constexpr int kEnoughInside = 100;  // of all operations inside others; each kind is rare
constexpr char kInside[] = " inside ";
constexpr int kLinesInView = 13;
constexpr int kLongRun = 8;  // steps of undo
constexpr char kCompared[] = "compared what was programmed with the model";
constexpr int kGlance = 20;    // ms between his looks at what is going on
constexpr int kPatience = 40;  // ms that the operator lets an operation wait

class RandomOperator : public WindowTest {
 protected:
  RandomOperator() {
    box.ExpectAnything();
    box.Shown = [this](const QString& shown) {
      for (const char* text :
           {"Data Flash Erased", "Data Flash Programmed!", "Data Flash Read!", "Reading Error!",
            "Nothing to Read!", "Operation Aborted!", "Data Saved!", "Data Loaded!"}) {
        seen_[text] += shown.startsWith(text);
      }
      seen_["lost the line"] += shown.contains("is lost");
      // The steps to be programmed are taken when the flash has been erased.
      if (shown == "Data Flash Erased") to_program_ = reads_ == 0 ? model_.Image() : std::nullopt;
      if (shown == "Data Flash Programmed!") programmed_ = TailOfTheLine();
      if (shown.startsWith("Something else was sent")) programmed_.reset();
    };
    LosePatience();
  }

  ~RandomOperator() override { box.Shown = nullptr; }

  int Random(int below) { return static_cast<int>(random_.bounded(below)); }
  int Count() const { return List().ListCount(); }
  bool Connected() const { return !Enabled("ComboPort"); }
  bool Playing() const { return hands->Read("CWButtonEmuPC") == "On"; }

  // One action. Each says what it has brought about by adding to `seen_`.
  void Act() {
    using Action = void (RandomOperator::*)();
    using Self = RandomOperator;
    // Each as often as it stands here.
    // clang-format off
    static constexpr Action kKinds[] = {
        &Self::PressAnyButton, &Self::PressAnyButton, &Self::PressAnyButton, &Self::Add, &Self::Add,
        &Self::EnterValues, &Self::EnterValues, &Self::Drag, &Self::DoubleClick, &Self::SelectAny,
        &Self::HoldKeyInList, &Self::Play, &Self::Play, &Self::Play, &Self::Play, &Self::Tick,
        &Self::Tick, &Self::BoardPlays, &Self::Operate, &Self::Operate, &Self::Operate,
        &Self::TryToConnect, &Self::SaveOrLoad, &Self::Interpolate, &Self::Interpolate,
        &Self::Undo, &Self::CopyAndPaste, &Self::ShapeMovement, &Self::ShapeMovement,
        &Self::Disturb, &Self::ResetWithBothSwitchesOn};
    // clang-format on
    const int chosen = Random(std::size(kKinds));
    seen_["with a list longer than its window"] += Count() > kLinesInView;
    seen_["inside a wait"] += Waiting();
    done_.append(QString("%1%2").arg(chosen).arg(Waiting() ? " in a wait" : ""));
    (this->*kKinds[chosen])();
  }

  // Presses a button, which does what the model says.
  void Press(const char* button) {
    const std::string_view name = button;
    const auto press = [&] { WindowTest::Press(button); };
    if (name == "CommandAdd" && Count() < kSteps) return Change([&] { press(), model_.Store(); });
    if (name == "CommandRem" && Selected() >= 0) return Change([&] { press(), model_.Store(); });
    if (name == "CommandReplace" && Selected() >= 0 && Count() < kSteps) {
      return Change([&] { press(), model_.Store(); });
    }
    if (name == "CommandClear" || name == "OKButton") return Change(press);
    if (name == "CommandClearAll") return Change([&] { press(), model_.Empty(); });
    if (name == "CommandMoreSeq") return ShowSequence(Data().CurSeq + 1, press);
    if (name == "CommandLessSeq") return ShowSequence(Data().CurSeq - 1, press);
    if (name == "CommandErase") NotePhase("erase");
    if (name == "CommandRead") return Read(press);
    if (name == "CommandFlash") return Program(press);
    press();
  }
  template <class Act>
  void Change(Act act) {
    model_.Begin();
    act();
    model_.End();
  }
  template <class Act>
  void ShowSequence(int sequence, Act press) {
    const bool exists = sequence >= 0 && sequence < kSequences;
    if (exists) model_.Store();
    press();
    if (exists) model_.Show(sequence);
  }
  template <class Act>
  void Read(Act press) {
    NotePhase("read");
    ++reads_;
    Change([&] {
      model_.Empty();
      press();
      if (--reads_ == 0) model_.Adopt();
    });
  }
  template <class Act>
  void Program(Act press) {
    NotePhase("program");
    programmed_.reset();
    press();
    if (!programmed_ || !to_program_) return;
    ++seen_[kCompared];
    EXPECT_TRUE(*programmed_ == Bytes{2} + *to_program_);
    programmed_.reset();
  }
  // An operation is begun: what it is inside of.
  void NotePhase(const std::string& operation) {
    if (!Waiting()) return;
    const char* phase = Erasing()          ? "an erase"
                        : Programming()    ? "a program"
                        : BarMaximum() > 1 ? "the data of a read"
                                           : "the header of a read";
    ++seen_[operation + kInside + phase];
  }
  // As many bytes, the last that the board has received, as should have been programmed.
  std::optional<Bytes> TailOfTheLine() {
    if (!to_program_) return std::nullopt;
    const std::size_t size = 1 + to_program_->size();
    const auto ending = [&] {
      const Bytes received = board.Received();
      return Bytes(received.end() - std::ptrdiff_t(std::min(size, received.size())),
                   received.end());
    };
    for (int wait = 0; wait < 40 && ending() != Bytes{2} + *to_program_; ++wait) QTest::qSleep(5);
    return ending();
  }

  void PressOneOf(const std::vector<const char*>& buttons) {
    const char* button =
        buttons[static_cast<std::size_t>(Random(static_cast<int>(buttons.size())))];
    done_.append(button);
    Press(button);
  }
  // Presses a key in the list, which does what the model says.
  void ListKeys(const QString& key) {
    const auto press = [&] { WindowTest::ListKeys(key); };
    const bool may_undo = !form->Link().Busy();
    if (key == "Ctrl+Z") return model_.Undo(may_undo, press);
    if (key == "Ctrl+Y") return model_.Redo(may_undo, press);
    const int lines = Count();
    Change([&] {
      press();
      if (Count() != lines) model_.Store();  // cut or pasted
    });
  }
  void ListKeysOneOf(const QStringList& keys) {
    ListKeys(keys[Random(static_cast<int>(keys.size()))]);
  }
  void PressAnyButton() {
    PressOneOf({"CommandRem", "CommandReplace", "CommandUp", "CommandDwn", "CommandMoreSeq",
                "CommandLessSeq", "CommandUpdate", "CommandBrk", "CommandBrk", "CommandResBrk",
                "CommandRepeat", "CommandContinue", "CommandInBuff", "CWButtonMainOnOff"});
  }
  void Add() {
    const int lines = Count();
    Press("CommandAdd");
    if (Count() == lines) return;
    ++seen_["added"];
    const int steps = std::accumulate(Data().SeqSteps.begin(), Data().SeqSteps.end(), 0);
    EXPECT_EQ(hands->Read("LabelByte"), QString("%1 bytes").arg(14 * steps));
  }
  void EnterValues() {
    SetSlider(Random(12), Random(256));
    const QString text = QString::number(Random(400) - 200) + (Random(4) == 0 ? "-" : "");
    hands->Type(QString("Text1_%1").arg(Random(24)), text, Random(2) == 0);
    hands->Type("CWNumEditTimeStep", QString::number(Random(40000)), Random(2) == 0);
  }
  void Drag() {
    if (Count() < 2) return;
    const int from = Random(Count());
    List().scrollToItem(List().item(from));
    const int top = List().indexAt({20, 2}).row();
    const int to = std::min(top + Random(10), Count() - 1);
    Change([&] { hands->DragLine("ListSequence", from, to); });
    seen_["dragged"] += from != to && Selected() == to;
  }
  void DoubleClick() {
    if (Count() == 0) return;
    const int line = Random(Count());
    hands->DoubleClickLine("ListSequence", line);
    if (Selected() != line) return;  // an operation has ended meanwhile
    ++seen_["showed by a double click"];
    EXPECT_EQ(hands->Read("LabelStep"), QString("Step N° %1").arg(line));
    EXPECT_EQ(hands->Read("CWSlide1_0").toInt(), Data().EditBuffer[std::size_t(line)][0]);
  }
  void HoldKeyInList() {
    const int before = Selected();
    List().setFocus();
    const bool moves_line = Random(3) == 0;
    // Each repetition of the key is a change.
    QObject moves;
    QObject::connect(&form->Edited(), &EditedSequence::SequenceChanged, &moves, [this] {
      model_.End();
      model_.Begin();
    });
    model_.Begin();
    Operator::Hold(List(), Random(2) == 0 ? Qt::Key_Down : Qt::Key_Up,
                   moves_line ? Qt::ControlModifier : Qt::NoModifier);
    model_.End();
    seen_["held a key in the list"] += std::abs(Selected() - before) > 1;
  }
  void SelectAny() { Select(Random(Count() + 1) - 1); }
  void Play() {
    TryToConnect();
    if (hands->Read("CWButtonRealEmu") == "On") Press("CWButtonRealEmu");
    if (Playing()) return PressOneOf({"CWButtonEmuPC", "CommandContinue", "CommandContinue"});
    if (Count() > 2 && Random(8) > 0) {
      const int line = 1 + Random(Count() - 1);
      Select(line);
      Press("CommandBrk");
      Select(std::max(0, line - 2));
    }
    Press("CWButtonEmuPC");
    Tick();
  }
  void Tick() {
    for (int ticks = 3; ticks > 0 && timer.Enabled(); --ticks) {
      const int line = Selected();
      const auto busy = form->Link().Port().TimeUntilReady().count();
      if (busy > kPatience) return;  // with a whole program
      hands->Wait(static_cast<int>(busy));
      timer.Elapse();
      if (!Playing()) return;
      seen_["played a step"] += Selected() != line;
      seen_["halted"] += !timer.Enabled();
    }
  }
  void BoardPlays() {
    if (Playing()) Press("CWButtonEmuPC");
    TryToConnect();
    Press("CWButtonRealEmu");
    seen_["let the board play"] += hands->Read("CWButtonRealEmu") == "On";
  }
  void Operate() {
    TryToConnect();
    if (Random(2) == 0) FillFlash();
    Misbehave();
    PressOneOf({"CommandErase", "CommandFlash", "CommandFlash", "CommandRead", "CommandRead",
                "CommandRead"});
  }
  void OperateInside() {
    Misbehave();
    PressOneOf({"CommandErase", "CommandFlash", "CommandFlash", "CommandRead", "CommandRead"});
  }
  void FillFlash() {
    const Sequences flashed =
        RandomSequences(random_.generate(), std::min(Random(3), 1) * Random(40));
    board.SetFlash(HeaderOf(flashed), StepDataOf(flashed));
  }
  void TryToConnect() {
    if (Connected()) return;
    auto& combo = hands->Find<QComboBox>("ComboPort");
    combo.setCurrentIndex(0);
    emit combo.activated(0);
    seen_["connected"] += Connected();
  }
  void Reconnect() {
    board.Unplug();
    board.Replug();
  }
  void SaveOrLoad() { Random(2) == 0 ? Save() : LoadAFile(); }
  void Save() {
    files.answer = Random(6) == 0 ? std::nullopt : std::optional(folder_.filePath("file"));
    model_.Store();
    const int saved = seen_["Data Saved!"];
    Trigger("SaveBuffer");
    if (seen_["Data Saved!"] == saved) return;
    file_ = reads_ == 0 ? model_.Now().table : StoredSteps(ViewOf(*this));
  }
  // What was saved, or sequences of many steps.
  void LoadAFile() {
    const QString path = folder_.filePath("file");
    files.answer = Random(6) == 0 ? std::nullopt : std::optional(path);
    if (Random(2) == 0) {
      const Sequences sequences = RandomSequences(random_.generate(), 400);
      WriteFile(path, QByteArray::fromStdString(FileOf(sequences)));
      file_ = RowsOf(sequences);
    }
    Change([&] {
      const int loaded = seen_["Data Loaded!"];
      Trigger("LoadBuffer");
      seen_["Data Loaded!"] > loaded ? model_.Take(file_) : model_.Empty();
    });
  }
  static Steps RowsOf(const Sequences& sequences) {
    Steps steps(kSequences);
    for (std::size_t i = 0; i < kSequences; ++i) {
      for (const Step& step : sequences[i]) {
        EditRow& row = steps[i].emplace_back();
        std::ranges::copy(step.positions, row.begin());
        row[kDurationColumn] = 20 * step.ticks;
      }
    }
    return steps;
  }
  void Interpolate() {
    const int lines = Count();
    if (lines < 2) return;
    if (Selected() < 0) Select(Random(lines));
    Press("CommandInterpolate");
    auto* count = form->findChild<QSpinBox*>("CWNumEditInterp");
    if (!count) return;
    count->setValue(Random(12));
    PressOneOf({"OptionINterp_0", "OptionINterp_1"});
    PressOneOf({"OKButton", "OKButton", "OKButton", "CancelButton"});
    if (auto* dialog = form->findChild<QDialog*>("DialogInterp")) dialog->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    seen_["interpolated"] += Count() > lines;
  }
  void TakeBack() { ListKeys("Ctrl+Z"); }
  void DoAgain() { ListKeys("Ctrl+Y"); }
  void Undo() {
    undo_chosen_ = true;
    if (Random(3) == 0) {
      Press("CommandClearAll");
      ProgramAfter("\"Clear All\"");
    }
    const QStringList lines = Lines();
    TakeBack();
    seen_["undid"] += Lines() != lines;
    if (Random(2) == 0) return ProgramAfter("an undo");
    DoAgain();
    seen_["did again"] += Lines() == lines;
    ProgramAfter("a redo");
  }
  // At once, with a board that does what it should.
  void ProgramAfter(const std::string& command) {
    TryToConnect();
    board.SetFaults({});
    const int before = seen_[kCompared];
    Press("CommandFlash");
    seen_["programmed after " + command] += seen_[kCompared] > before;
  }
  void CopyAndPaste() {
    const int lines = Count();
    if (lines > 0 && Selected() < 0) Select(Random(lines));
    ListKeysOneOf({"Ctrl+C", "Ctrl+C", "Ctrl+X"});
    const int left = Count();
    ListKeys("Ctrl+V");
    seen_["pasted steps"] += Count() > left;
  }
  // In the window "Movement", by a key, or by a drag of what the pointer finds.
  void ShapeMovement() {
    const auto* movement = form->findChild<QWidget*>("Movement");
    if (!movement || !movement->isVisible() || Random(8) == 0) Trigger("ListMovement");
    movement = form->findChild<QWidget*>("Movement");
    if (Count() == 0 || !movement->isVisible() || Waiting()) return;
    QWindow* window = movement->windowHandle();
    auto& canvas = hands->Find<QWidget>("MovementCanvas");
    const QStringList lines = Lines();
    Select(-1);  // what was shaped before is a change of its own
    const int line = Random(Count());
    const auto any = [&] { return QPoint(Random(canvas.width()), Random(canvas.height())); };
    const bool by_key = Random(2) == 0;
    Change([&] {
      if (by_key) {
        Select(line);
        const QStringList keys = {"Shift+Up", "Shift+PgDown", "Shift+Left", "Shift+Right"};
        hands->Keys(canvas, keys[Random(4)]);
      } else {
        QPoint from;
        for (int search = 0; search < 40; ++search) {
          QTest::mouseMove(window, from = any());
          if (canvas.cursor().shape() != Qt::ArrowCursor) break;
        }
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QTest::mouseMove(window, any());
        if (Random(3) == 0) Tick();
        if (Random(4) == 0) hands->Keys(canvas, "Escape");
        QTest::mouseRelease(window, Qt::LeftButton, {}, any());
      }
      if (Lines() != lines) model_.Store();
    });
    seen_[by_key ? "shaped by a key" : "shaped by a drag"] += Lines() != lines;
  }
  // What has changed since `before` can be undone and done again, in as many steps as it took.
  void CheckUndo(const SequenceView& before, const SequenceView& after) {
    int steps = 0;
    while (Contents(ViewOf(*this)) != Contents(before)) {
      ASSERT_LT(++steps, 400) << "undo does not bring back what was there";
      TakeBack();
    }
    for (int i = 0; i < steps; ++i) DoAgain();
    ASSERT_EQ(Contents(ViewOf(*this)), Contents(after)) << "done again, " << steps << " steps";
    ++seen_[steps > kLongRun ? "undid many actions and did them again"
                             : "undid an action and did it again"];
  }

  // What would stand in the way of everything else if it happened often.
  void Disturb() {
    if (Random(3) == 0) return Reconnect();
    if (Random(3) == 0) Trigger("Resetting");
    if (Random(3) == 0) PressOneOf({"CommandClearAll", "CommandClear"});
  }
  void ResetWithBothSwitchesOn() {
    if (depth_ > 0) return Trigger("Resetting");
    const auto busy = form->Link().Port().TimeUntilReady().count();
    if (busy > kPatience) return;
    hands->Wait(static_cast<int>(busy) + kGlance);
    if (Playing()) Press("CWButtonEmuPC");
    TryToConnect();
    for (const char* button : {"CWButtonMainOnOff", "CWButtonRealEmu"}) {
      if (hands->Read(button) == "Off") Press(button);
    }
    Sent(0);
    Trigger("Resetting");
    ExpectSent({17, 0, 4});
    ++seen_["reset with both switches On"];
  }
  void Misbehave() {
    std::array<std::uint8_t, 66> header{};
    for (auto& byte : header) byte = static_cast<std::uint8_t>(Random(4) == 0 ? Random(256) : 0);
    constexpr std::chrono::milliseconds kLate(kPatience / 2);
    const auto cut = static_cast<std::size_t>(Random(120));
    const auto cut_in_data = static_cast<std::size_t>(66 + Random(60));
    const simboard::Faults faults[] = {
        {.silent = true},       {.before_reply = {3, 0}},         {.extra_replies = 2},
        {.cut_reply_at = cut},  {.after_reply = {1, 2}},          {.lying_header = header},
        {.reply_delay = kLate}, {.silent_after_acks = Random(3)}, {.cut_reply_at = cut_in_data}};
    const auto kind = static_cast<std::size_t>(Random(14));
    board.SetFaults(kind < std::size(faults) ? faults[kind] : simboard::Faults{});
  }

  // Called now and then, also inside waits: does something else in between, and ends a wait that
  // takes too long.
  void LosePatience() {
    // A timer does not fire inside its own slot, and this may come to wait: each time is a new one.
    QTimer::singleShot(kGlance, &patience_, [this] { LosePatience(); });
    // One of two operations that wait at once takes the flags with it when it ends.
    if (!Waiting() && !Enabled("Command1")) {
      waiting_.invalidate();
      return;
    }
    if (!waiting_.isValid()) waiting_.start();
    if (waiting_.elapsed() >= kPatience) {
      waiting_.restart();
      return Enabled("Command1") ? Press("Command1") : Reconnect();
    }
    if (depth_ == 2) return;
    ++depth_;
    Random(2) == 0 ? OperateInside() : Act();
    CheckLines();
    --depth_;
  }

  // The list and the edit buffer are one.
  void CheckLines() {
    const QStringList lines = Lines();
    ASSERT_LT(Selected(), lines.size());
    for (std::size_t i = 0; const QString& line : lines) {
      ASSERT_EQ(ReadStepLine(line.toStdString(), "."), Data().EditBuffer[i++])
          << line.toStdString();
    }
    if (reads_ == 0) model_.Check();
    for (const int steps : Data().SeqSteps) ASSERT_TRUE(steps >= 0 && steps <= kSteps);
  }

  void CheckState(bool was_connected) {
    ASSERT_NO_FATAL_FAILURE(CheckLines());
    ASSERT_FALSE(Waiting());
    ASSERT_FALSE(Enabled("Command1"));
    ASSERT_FALSE(BarShown());
    ASSERT_TRUE(Enabled("ListSequence"));
    const bool real = hands->Read("CWButtonRealEmu") == "On";
    ASSERT_EQ(Enabled("CWButtonRealEmu"), !Playing());
    ASSERT_EQ(Enabled("CWButtonEmuPC"), !real);
    ASSERT_TRUE(Playing() || !timer.Enabled()) << "nothing plays while the switch is Off";
    if (!was_connected && !Connected() && seen_["connected"] == connected_before_) {
      ASSERT_TRUE(board.Received().empty()) << "sent without a port";
    }
    connected_before_ = seen_["connected"];
    board.ClearLog();
  }

  TableModel model_{*this};
  int reads_ = 0;                    // in progress, one inside the other
  std::optional<Bytes> to_program_;  // what the flash must hold once it is programmed, if known
  std::optional<Bytes> programmed_;
  Steps file_ = Steps(kSequences);

  QRandomGenerator random_{kSeed};
  QTemporaryDir folder_;
  QObject patience_;
  QElapsedTimer waiting_;
  int depth_ = 0;
  int connected_before_ = 0;
  bool undo_chosen_ = false;
  QStringList done_;
  std::map<std::string, int> seen_;
};

TEST_F(RandomOperator, NeverLeavesTheProgramInAStateThatMakesNoSense) {
  bool given = false;
  const auto seed = qEnvironmentVariableIntValue("PELMORA_SEED", &given);
  if (given) random_.seed(static_cast<std::uint32_t>(seed));
  const int wanted = qEnvironmentVariableIntValue("PELMORA_ACTIONS", &given);
  const int actions = given ? wanted : kActions;
  hands->ChooseMenu("Serial");
  SequenceView start = ViewOf(*this);  // of a run in which nothing was undone for good
  int run = 0;
  for (int i = 0; i < actions; ++i) {
    StartWatchdog();
    const bool connected = Connected();
    const SequenceView before = ViewOf(*this);
    undo_chosen_ = false;
    Act();
    // A loss that a write has found is announced at the next turn.
    QCoreApplication::processEvents();
    ASSERT_NO_FATAL_FAILURE(CheckState(connected));
    const SequenceView after = ViewOf(*this);
    if (!undo_chosen_) {
      ++run;
      if (Contents(before) != Contents(after)) CheckUndo(before, after);
      if (run % (2 * kLongRun) == 0) CheckUndo(start, after);
    } else {
      start = after;
      run = 0;
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

// Any changes in any order, and what is no change in between.
class RandomChanges : public RandomOperator, public testing::WithParamInterface<unsigned> {
 protected:
  RandomChanges() { random_.seed(GetParam()); }

  void Change() {
    if (Random(3) > 0) return Press("CommandAdd");
    if (Random(8) == 0) return LoadAFile();
    if (Random(8) == 0 && Selected() >= 0) return Interpolate();
    if (Random(2) == 0) return ListKeysOneOf({"Ctrl+Up", "Ctrl+Down", "Ctrl+X", "Ctrl+V"});
    PressOneOf({"CommandRem", "CommandRem", "CommandReplace", "CommandReplace", "CommandRead",
                "CommandRead", "CommandClear", "CommandClearAll"});
  }
  void NoChange() {
    if (Random(2) == 0) SelectAny();
    if (Random(4) == 0) EnterValues();
    if (Random(4) == 0) FillFlash();
    if (Random(4) == 0) ListKeys("Ctrl+C");
    if (Random(4) == 0) Save();
    TryToConnect();
    Misbehave();
    PressOneOf({"CommandBrk", "CommandMoreSeq", "CommandLessSeq", "CommandUp", "CommandInBuff"});
  }
};

TEST_P(RandomChanges, CanBeUndoneToTheStartAndRedoneToTheEnd) {
  constexpr int kChanges = 500;
  const SequenceView start = ViewOf(*this);
  std::vector<SequenceView> changes;  // what was before each
  while (changes.size() < kChanges) {
    NoChange();
    const SequenceView before = ViewOf(*this);
    Change();
    if (Changed(before, ViewOf(*this))) changes.push_back(before);
  }
  // What was no change, done since a change, comes back with its redo.
  const SequenceView end = ViewOf(*this);
  const auto state = [&](std::size_t i) { return i < kChanges ? changes[i] : end; };
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = kChanges; i-- > 0;) {
      TakeBack();
      ASSERT_EQ(Difference(ViewOf(*this), state(i)), "") << "undone: change " << i;
    }
    TakeBack();
    ASSERT_EQ(Difference(ViewOf(*this), state(0)), "") << "nothing more to undo";
    ASSERT_EQ(Contents(ViewOf(*this)), Contents(start));
    for (std::size_t i = 0; i < kChanges; ++i) {
      DoAgain();
      ASSERT_EQ(Difference(ViewOf(*this), state(i + 1)), "") << "redone: change " << i;
    }
    DoAgain();
    ASSERT_EQ(Difference(ViewOf(*this), end), "") << "nothing more to redo";
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomChanges, testing::Values(1U, 2U, 3U, 20261123U));

}  // namespace
}  // namespace pelmora
