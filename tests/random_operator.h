// An operator who does anything at any time, with a board that misbehaves, and what the program
// must be like after each action. What the actions have brought about is counted.
#pragma once

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <array>
#include <utility>

#include "core/step_line.h"
#include "tests/table_model.h"

namespace pelmora {

constexpr int kLinesInView = 13;
constexpr int kMany = 8;  // changes undone in a row
constexpr char kCompared[] = "compared what was programmed with the model";
constexpr char kInside[] = "began an operation inside another";
constexpr int kGlance = 20;    // ms between his looks at what is going on
constexpr int kPatience = 40;  // ms that the operator lets an operation wait

class RandomOperator : public WindowTest {
 protected:
  RandomOperator() {
    box.ExpectAnything();
    box.Shown = [this](const QString& shown) {
      ++seen_[shown.section(' ', 0, 2).remove(QRegularExpression("\\d+"))];
      // The steps to be programmed are taken when the flash has been erased.
      if (shown == "Data Flash Erased") to_program_ = reads_ == 0 ? model_.Image() : std::nullopt;
      if (shown == "Data Flash Programmed!") programmed_ = to_program_;
      if (shown.startsWith("Something else was sent")) programmed_.reset();
    };
    Trigger("Serial");
    Trigger("ListMovement");
    LosePatience();
  }

  ~RandomOperator() override { box.Shown = nullptr; }

  int Random(int below) { return static_cast<int>(random_.bounded(below)); }
  int Count() const { return List().ListCount(); }
  bool Playing() const { return hands->Read("CWButtonEmuPC") == "On"; }
  bool BoardPlays() const { return hands->Read("CWButtonRealEmu") == "On"; }

  // One action.
  void Act() {
    using Self = RandomOperator;
    // Each as often as it stands here.
    // clang-format off
    static constexpr void (Self::*kKinds[])() = {
        &Self::PressAnyButton, &Self::PressAnyButton, &Self::PressAnyButton, &Self::PressAnyButton,
        &Self::EnterValues, &Self::EnterValues, &Self::Drag, &Self::SelectAny,
        &Self::HoldKeyInList, &Self::HoldKeyInList, &Self::Play, &Self::Play, &Self::Play, &Self::Tick,
        &Self::Tick, &Self::Tick, &Self::Operate, &Self::Operate, &Self::Save, &Self::LoadAFile,
        &Self::Interpolate, &Self::UndoAndProgram, &Self::CopyAndPaste,
        &Self::ShapeMovement, &Self::ShapeMovement, &Self::Disturb};
    // clang-format on
    const int chosen = Random(std::size(kKinds));
    seen_["with a list longer than its window"] += Count() > kLinesInView;
    seen_["while the board plays"] += BoardPlays();
    files.answer = Random(6) == 0 ? std::nullopt : std::optional(folder_.filePath("file"));
    done_.append(QString("%1%2").arg(chosen).arg(Waiting() ? " in a wait" : ""));
    (this->*kKinds[chosen])();
  }

  // Presses a button, which does what the model says.
  void Press(const char* button) {
    const std::string_view name = button;
    done_.append(button);
    const auto press = [&] { WindowTest::Press(button); };
    if (name == "CommandMoreSeq") return ShowSequence(Data().CurSeq + 1, press);
    if (name == "CommandLessSeq") return ShowSequence(Data().CurSeq - 1, press);
    if (name == "CommandErase") return press();
    if (name == "CommandFlash") return Program(press);
    const bool reads = name == "CommandRead";
    const bool selected = Selected() >= 0;
    const bool room = Count() < kSteps;
    Change(button, [&] {
      reads_ += reads;
      if (reads || name == "CommandClearAll") model_.Empty();
      press();
      reads_ -= reads;
      if (reads && reads_ == 0) model_.Adopt();
      if ((name == "CommandAdd" && room) || (name == "CommandRem" && selected) ||
          (name == "CommandReplace" && selected && room)) {
        model_.Store();
      }
    });
  }
  // Does something, and notes it if there is then a change more, or less, to undo.
  template <class Act>
  void Note(const QString& name, Act act) {
    const int changes = model_.Changes();
    act();
    seen_[name] += model_.Changes() != changes;
  }
  template <class Act>
  void Change(const QString& name, Act act) {
    Note(name, [&] {
      model_.Begin();
      act();
      model_.End();
    });
  }
  // The same, for what stores the lines that it has changed.
  template <class Act>
  void ChangeLines(const QString& name, Act act) {
    Change(name, [&] {
      const QStringList lines = Lines();
      act();
      if (Lines() != lines) model_.Store();
    });
  }
  template <class Act>
  void ShowSequence(int sequence, Act press) {
    if (sequence >= 0 && sequence < kSequences) model_.Show(sequence);
    press();
  }
  template <class Act>
  void Program(Act press) {
    press();
    const std::optional<Bytes> image = std::exchange(programmed_, std::nullopt);
    if (!image) return;
    ++seen_[kCompared];
    EXPECT_TRUE(LineEndsWith(Bytes{2} + *image));
  }
  // Whether these are the last bytes that the board has received, or will be in a moment.
  bool LineEndsWith(const Bytes& bytes) const {
    const auto ends = [&] { return QByteArrayView(board.Received()).endsWith(bytes); };
    for (int wait = 0; wait < 1000 && !ends(); ++wait) QTest::qSleep(5);
    return ends();
  }

  const char* OneOf(std::initializer_list<const char*> all) {
    return all.begin()[Random(static_cast<int>(all.size()))];
  }
  // Presses a key in the list, which does what the model says.
  void ListKeys(const QString& key) {
    const auto press = [&] { WindowTest::ListKeys(key); };
    if (key != "Ctrl+Z" && key != "Ctrl+Y") return ChangeLines(key, press);
    Note(key, [&] { model_.Undo(key == "Ctrl+Y", !form->Link().Busy(), press); });
  }
  void PressAnyButton() {
    Press(OneOf({"CommandAdd", "CommandAdd", "CommandRem", "CommandRem", "CommandReplace",
                 "CommandReplace", "CommandUp", "CommandDwn", "CommandMoreSeq", "CommandLessSeq",
                 "CommandUpdate", "CommandBrk", "CommandBrk", "CommandResBrk", "CommandRepeat",
                 "CommandContinue", "CommandInBuff", "CWButtonMainOnOff", "CWButtonRealEmu"}));
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
    const int to = std::min(List().indexAt({20, 2}).row() + Random(10), Count() - 1);
    Change("drag", [&] { hands->DragLine("ListSequence", from, to); });
  }
  void HoldKeyInList() {
    List().setFocus();
    // Each repetition of the key is a change.
    QObject moves;
    QObject::connect(&form->Edited(), &EditedSequence::SequenceChanged, &moves, [this] {
      model_.End();
      model_.Begin();
    });
    Change("held key", [&] {
      Operator::Hold(List(), Random(2) == 0 ? Qt::Key_Down : Qt::Key_Up,
                     Random(4) > 0 ? Qt::ControlModifier : Qt::NoModifier);
    });
  }
  void SelectAny() { Select(Random(Count() + 1) - 1); }
  // Breakpoints are near.
  void Play() {
    TryToConnect();
    if (BoardPlays()) Press("CWButtonRealEmu");
    if (Playing()) return Press(OneOf({"CWButtonEmuPC", "CommandContinue", "CommandContinue"}));
    if (Count() > 1) {
      Select(1 + Random(Count() - 1));
      Press("CommandBrk");
      Select(Selected() - 1);
    }
    Press("CWButtonEmuPC");
    for (int ticks = 0; ticks < 3; ++ticks) Tick();
  }
  void Tick() {
    const auto busy = form->Link().Port().TimeUntilReady().count();
    if (!timer.Enabled() || busy > kPatience) return;  // with a whole program
    hands->Wait(static_cast<int>(busy));
    const int line = Selected();
    timer.Elapse();
    seen_["played a step"] += Playing() && Selected() != line;
    seen_["halted"] += Playing() && !timer.Enabled();
  }
  void Operate() {
    TryToConnect();
    if (Random(2) == 0) {
      const Sequences flashed = RandomSequences(random_.generate(), Random(40));
      board.SetFlash(HeaderOf(flashed), StepDataOf(flashed));
    }
    OperateInside();
  }
  void OperateInside() {
    seen_[kInside] += Waiting();
    Misbehave();
    Press(OneOf({"CommandErase", "CommandFlash", "CommandFlash", "CommandRead", "CommandRead"}));
  }
  void TryToConnect() {
    auto& combo = hands->Find<QComboBox>("ComboPort");
    if (!combo.isEnabled()) return;
    combo.setCurrentIndex(0);
    emit combo.activated(0);
  }
  void Reconnect() {
    board.Unplug();
    board.Replug();
  }
  void Save() {
    model_.Store();
    const int saved = seen_["Data Saved!"];
    Trigger("SaveBuffer");
    if (seen_["Data Saved!"] == saved) return;
    file_ = reads_ == 0 ? model_.Now().table : StoredSteps(Data());
  }
  // What was saved, or sequences of many steps.
  void LoadAFile() {
    const int loaded = seen_["Data Loaded!"];
    Change("load", [&] {
      if (Random(4) == 0) {
        Load(RandomSequences(random_.generate(), 400));
        return model_.Adopt();
      }
      Trigger("LoadBuffer");
      seen_["Data Loaded!"] > loaded ? model_.Take(file_) : model_.Empty();
    });
  }
  void Interpolate() {
    if (Count() > 0 && Selected() < 0) Select(Random(Count()));
    Press("CommandInterpolate");
    auto* dialog = form->findChild<QDialog*>("DialogInterp");
    if (!dialog) return;
    hands->Find<QSpinBox>("CWNumEditInterp").setValue(Random(12));
    Press(OneOf({"OptionINterp_0", "OptionINterp_1"}));
    Press("OKButton");
    dialog->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  // Programs at once, with a board that does what it should.
  void UndoAndProgram() {
    if (Random(3) == 0) Press("CommandClearAll");
    ListKeys("Ctrl+Z");
    if (Random(2) == 0) ListKeys("Ctrl+Y");
    TryToConnect();
    board.SetFaults({});
    Press("CommandFlash");
  }
  void CopyAndPaste() {
    if (Count() > 0 && Selected() < 0) Select(Random(Count()));
    ListKeys(OneOf({"Ctrl+C", "Ctrl+C", "Ctrl+X"}));
    ListKeys("Ctrl+V");
  }
  // In the window "Movement".
  void ShapeMovement() {
    auto& canvas = hands->Find<QWidget>("MovementCanvas");
    if (!canvas.isVisible() || Random(8) == 0) Trigger("ListMovement");
    if (Count() == 0 || !canvas.isVisible() || Waiting()) return;
    Select(-1);  // what was shaped before is a change of its own
    if (Random(2) == 0) return ChangeLines("drag in the movement", [&] { DragIn(canvas); });
    ChangeLines("key in the movement", [&] {
      Select(Random(Count()));
      hands->Keys(canvas, OneOf({"Shift+Up", "Shift+PgDown", "Shift+Left", "Shift+Right"}));
    });
  }
  // What the pointer finds.
  void DragIn(QWidget& canvas) {
    QWindow* window = canvas.window()->windowHandle();
    QPoint place;
    const auto move = [&] {
      place = {Random(canvas.width()), Random(canvas.height())};
      QTest::mouseMove(window, place);
    };
    move();
    while (canvas.cursor().shape() == Qt::ArrowCursor && Random(40) > 0) move();
    QTest::mousePress(window, Qt::LeftButton, {}, place);
    move();
    if (Random(3) == 0) Tick();
    if (Random(4) == 0) hands->Keys(canvas, "Escape");
    move();
    QTest::mouseRelease(window, Qt::LeftButton, {}, place);
  }
  // Undoes so many changes and does them again. The model compares what comes back.
  void CheckUndo(int changes) {
    const Declaration data = Data();
    const int selected = Selected();
    for (int i = 0; i < changes; ++i) ListKeys("Ctrl+Z");
    model_.Check();
    for (int i = 0; i < changes; ++i) ListKeys("Ctrl+Y");
    EXPECT_TRUE(Data() == data && Selected() == selected) << changes << " changes done again";
    seen_["undid many changes and did them again"] += changes >= kMany;
  }

  // What would stand in the way of everything else if it happened often.
  void Disturb() {
    if (Random(3) == 0) return Reconnect();
    if (Random(2) == 0) Trigger("Resetting");
    if (Random(2) == 0) Press("CommandClear");
  }
  void Misbehave() {
    std::array<std::uint8_t, 66> header{};
    for (auto& byte : header) byte = static_cast<std::uint8_t>(Random(4) == 0 ? Random(256) : 0);
    constexpr std::chrono::milliseconds kLate(kPatience / 2);
    const auto cut = static_cast<std::size_t>(Random(126));
    const simboard::Faults faults[] = {{.silent = true},        {.before_reply = {3, 0}},
                                       {.extra_replies = 2},    {.cut_reply_at = cut},
                                       {.after_reply = {1, 2}}, {.lying_header = header},
                                       {.reply_delay = kLate},  {.silent_after_acks = Random(3)}};
    const auto kind = static_cast<std::size_t>(Random(13));
    board.SetFaults(kind < std::size(faults) ? faults[kind] : simboard::Faults{});
  }

  // Called now and then, also inside waits: does something else in between, and ends a wait that
  // takes too long.
  void LosePatience() {
    // A timer does not fire inside its own slot, and this may come to wait: each time is a new one.
    QTimer::singleShot(kGlance, &patience_, [this] { LosePatience(); });
    // One of two operations that wait at once takes the flags with it when it ends.
    if (!Waiting() && !Enabled("Command1")) return waiting_.invalidate();
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

  void CheckState() {
    ASSERT_NO_FATAL_FAILURE(CheckLines());
    ASSERT_FALSE(Waiting());
    ASSERT_FALSE(Enabled("Command1"));
    ASSERT_FALSE(BarShown());
    ASSERT_TRUE(Enabled("ListSequence"));
    ASSERT_EQ(Enabled("CWButtonRealEmu"), !Playing());
    ASSERT_EQ(Enabled("CWButtonEmuPC"), !BoardPlays());
    ASSERT_TRUE(Playing() || !timer.Enabled()) << "nothing plays while the switch is Off";
    board.ClearLog();
  }

  TableModel model_{*this};
  int reads_ = 0;                    // in progress, one inside the other
  std::optional<Bytes> to_program_;  // what the flash must hold once it is programmed, if known
  std::optional<Bytes> programmed_;
  Steps file_ = Steps(kSequences);

  QRandomGenerator random_;
  QTemporaryDir folder_;
  QObject patience_;
  QElapsedTimer waiting_;
  int depth_ = 0;
  QStringList done_;
  QMap<QString, int> seen_;  // what the actions have brought about
};

}  // namespace pelmora
