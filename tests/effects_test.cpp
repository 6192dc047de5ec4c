// What each command of the window changes, and that it changes nothing else: a row for each, from a
// start in which nothing agrees. The program's whole state before and after is compared.
#include <sys/stat.h>

#include <QAccessible>
#include <QClipboard>
#include <QMenuBar>
#include <QWheelEvent>

#include "rig/program_state.h"
#include "tests/movement_fixture.h"

namespace pelmora {
namespace {

using simboard::Faults;

// So many steps, all channels at the centre for 1200 ms, as many as possible in the first
// sequences.
Sequences Centred(int steps) {
  Sequences sequences = FilledSequences(0, steps, 60);
  for (auto& sequence : sequences) {
    for (Step& step : sequence) step.positions.fill(128);
  }
  return sequences;
}

// The rows of each section of the table, each in one line; "" is what stands before the first one.
QMap<QString, QStringList> Sections() {
  QMap<QString, QStringList> sections;
  QStringList* rows = &sections[""];
  for (const QString& line : QString::fromUtf8(ReadFile(EFFECTS)).split('\n')) {
    if (line.isEmpty() || line.startsWith('#')) continue;
    if (line.startsWith('[')) {
      rows = &sections[line.mid(1).chopped(1)];
    } else if (line.startsWith(' ')) {
      rows->last() += (rows->last().contains(" = ") ? " · " : " = ") + line.trimmed();
    } else {
      rows->append(line);
    }
  }
  return sections;
}

// A row with what it has in common with others.
QString InFull(QString row) {
  const QStringList parts = Sections()[""];
  for (int depth = 0; depth < 3; ++depth) {
    for (const QString& part : parts) {
      row.replace(QRegularExpression(part.section(" := ", 0, 0)), part.section(" := ", 1));
    }
  }
  return row;
}

// The sections that have rows.
std::vector<std::string> Commands() {
  std::vector<std::string> names;
  for (const QString& name : Sections().keys().mid(1)) names.push_back(name.toStdString());
  return names;
}

class Effects : public Movement, public testing::WithParamInterface<std::string> {
 protected:
  Effects() {
    box.ExpectAnything();
    box.Shown = [this](const QString& text) { DoAll(behind_.take(text).split(',')); };
  }
  ~Effects() override { box.Shown = {}; }

  void ExpectRow(const QString& row) {
    const QStringList sides = InFull("START; " + row).split(" = ");
    const QString start = sides[0].section('>', 0, 0);
    const QStringList commands = sides[0].section('>', 1).split(';');
    QStringList expected = sides.value(1).split(" · ", Qt::SkipEmptyParts);
    Begin();
    DoAll(start.split(';'));
    if (!start.contains("closed") && Enabled("ComboPort")) Connect();
    if (!start.contains("fresh")) MakeLabelsStale();
    // The button that is pressed has the focus already.
    const QString pressed = commands.filter(QRegularExpression("^(?! *(when|behind) )")).value(0);
    if (auto* first = form->findChild<QWidget*>(pressed.trimmed())) first->setFocus();
    Sent(0);
    box.said.clear();
    files.requests.clear();
    noted_.clear();
    Activate();
    const ProgramState before = StateOf(*this);
    DoAll(commands);
    Activate();
    const ProgramState after = StateOf(*this);
    QStringList changed = Difference(before, after) + noted_;
    QString said = box.said.join(" / ").replace("\n\n", " ");
    said.replace(QRegularExpression("/dev/pts/\\d+"), "PORT");
    if (!said.isEmpty()) changed.append("says " + said);
    for (const platform::FileRequest& asked : files.requests) {
      changed.append(
          QString("asks for a file " + asked.proposed_name + asked.default_extension).trimmed());
    }
    const QString sent = expected.filter(QRegularExpression("^sent ")).value(0).mid(5);
    const Bytes bytes = Sent(Hex(sent.toStdString()).size());
    const QByteArray text = QByteArrayView(bytes).toByteArray().toHex(' ').toUpper();
    if (!bytes.empty()) changed.append("sent " + text);
    expected.sort();
    changed.sort();
    EXPECT_EQ(changed.join('\n').toStdString(), expected.join('\n').toStdString())
        << row.toStdString();
    const bool changes = !changed.filter(QRegularExpression("^(undo:|redo: none)")).isEmpty();
    const bool latest = commands.size() == 1 && NameOf("redo") == "none";
    if (changes && latest) ExpectUndone(row, before, after);
    if (GetParam().starts_with("Flash")) ExpectTheNextOperationsToWork();
  }

  // The latest change of the sequences goes and comes back with all that they own, without a word
  // to the operator or to the board.
  void ExpectUndone(const QString& row, const ProgramState& before, const ProgramState& after) {
    static const QRegularExpression owned(
        "^([-+]\\d|row |selected|breaks|CurSeq|sequence|flash|CommandOffset|"
        "Label(Seq|Step|Byte|Offset))");
    box.said.clear();
    for (const auto& [keys, then] :
         {std::pair("Ctrl+Z", &before), {"Ctrl+Y", &after}, {"Ctrl+Z", &before}}) {
      hands->Keys(Focused("ListSequence"), keys);
      const QStringList differing = Difference(*then, StateOf(*this)).filter(owned);
      EXPECT_TRUE(differing.isEmpty()) << row.toStdString() << "\n  after " << keys << ": "
                                       << differing.join(" · ").toStdString();
    }
    EXPECT_TRUE(box.said.isEmpty() && Sent(0).empty()) << row.toStdString();
  }

  // A window that has just come up, or again, has no focus yet.
  void Activate() {
    auto* dialog = form->findChild<QDialog*>("DialogInterp");
    QWidget* top = dialog && dialog->isVisible() ? dialog : form->window();
    if (top->isVisible()) QApplication::setActiveWindow(top);
  }
  void MakeLabelsStale() {
    for (const char* label : {"LabelSeq", "LabelSeqEmu", "LabelStep", "LabelByte", "CommandOffset",
                              "LabelOffset", "Echo"}) {
      hands->Find<QWidget>(label).setProperty("text", "?");
    }
  }
  void Begin() {
    StartWatchdog();
    QLocale::setDefault(QLocale::c());
    if (board.DevicePath().empty()) board.Replug();
    board.SetFaults({});
    behind_.clear();
    FillFlash({});
    QGuiApplication::clipboard()->clear();
    Restart();
  }

  // What `when` waits for; "in 40" are bytes that have come and are not taken, "said" is the last
  // message, and that the wait which goes on behind it can be ended.
  bool Holds(const QString& condition) {
    const QString value = condition.section(' ', 1);
    if (condition.startsWith("sent")) return board.WaitForBytes(value.toUInt(), {});
    if (condition.startsWith("bar")) return Bar() == value.toInt();
    if (condition.startsWith("in")) Press("CommandInBuff");
    if (condition.startsWith("in") || condition.startsWith("echo")) {
      return hands->Read("Echo") == value;
    }
    return Enabled("Command1") && box.said.value(box.said.size() - 1).endsWith(value);
  }
  // Once it holds, inside the wait.
  void When(const QString& condition, const QString& commands) {
    hands->When([=, this] { return Holds(condition); },
                [=, this] {
                  const QString sent = QString("sent %1").arg(board.Log().size());
                  EXPECT_TRUE(!condition.startsWith("sent") || condition == sent)
                      << sent.toStdString() << ": more than was answered";
                  DoAll(commands.split(','));
                });
  }

  void DoAll(const QStringList& commands) {
    for (const QString& command : commands) Do(command.trimmed());
  }
  void Do(const QString& command) {
    const QString verb = command.section(' ', 0, 0);
    const QString rest = command.section(' ', 1);
    const QStringList words = rest.split(' ');
    const QString first = rest.section(": ", 0, 0);
    const auto number = [&words](int i) { return words.value(i).toInt(); };
    // clang-format off
    const QMap<QString, std::function<void()>> verbs = {
        {"", [] {}},
        {"closed", [] {}},
        {"fresh", [] {}},
        {"comma", [] { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }},
        {"stale", [this] { MakeLabelsStale(); }},
        {"connect", [this] { Connect(); }},
        {"port", [&] { auto& ports = hands->Find<QComboBox>("ComboPort"); ports.setCurrentIndex(number(0)); emit ports.activated(number(0)); }},
        {"unplug", [this] { board.Unplug(); }},
        {"lose", [this] { Lose(); }},
        {"reconnect", [this] { Lose(); board.Replug(); Connect(); }},
        {"noticed", [this] { EXPECT_TRUE(hands->WaitUntil([this] { return !box.said.isEmpty(); })); }},
        {"select", [&] { Select(number(0)); }},
        {"seq", [&] { while (Data().CurSeq != number(0)) Press(Data().CurSeq < number(0) ? "CommandMoreSeq" : "CommandLessSeq"); }},
        {"slide", [&] { SetSlider(number(0), number(1)); }},
        {"type", [&] { hands->Type(words[0], rest.section(' ', 1)); }},
        {"write", [&] { hands->Type(words[0], rest.section(' ', 1), false); }},
        {"click", [&] { hands->Click(rest); }},
        {"press", [&] { Press(qPrintable(rest)); }},
        {"keys", [&] { hands->Keys(Focused(words[0]), rest.section(' ', 1)); }},
        {"compose", [&] { Compose(Focused(words[0]), words[1]); }},
        {"hold-apart", [&] { PressSixTimes(Focused(words[0]), QKeySequence(words[1])[0], 0); }},
        {"tap", [&] { PressSixTimes(Focused(words[0]), QKeySequence(words[1])[0], 10); }},
        {"held", [this] { Activate(); QTest::simulateEvent(QApplication::focusWidget(), true, Qt::Key_Return, {}, "\r", true); }},
        {"click-twice", [&] { ClickTwice(hands->Find<QWidget>(rest)); }},
        {"wheel", [&] { Wheel(hands->Find<QWidget>(words[0]), words[1].toDouble()); }},
        {"pull-fader", [&] { PullFader(words[0], words.mid(1), Qt::LeftButton); }},
        {"pull-fader-middle", [&] { PullFader(words[0], words.mid(1), Qt::MiddleButton); }},
        {"speak", [&] { PressBySpeech(words[0]); }},
        {"tell", [&] { Assist(words[0])->valueInterface()->setCurrentValue(number(1)); }},
        {"menu-bar", [this] { form->menuBar()->setFocus(Qt::MenuBarFocusReason); }},
        {"elsewhere", [&] { DoElsewhere(rest); }},
        {"choose", [&] { hands->ChooseMenu(rest); }},
        {"hold", [&] { Operator::Hold(Focused(words[0]), QKeySequence(words[1])[0].key(), QKeySequence(words[1])[0].keyboardModifiers()); }},
        {"line", [&] { hands->ClickLine("ListSequence", number(0)); }},
        {"double", [&] { hands->DoubleClickLine("ListSequence", number(0)); }},
        {"drag", [&] { hands->DragLine("ListSequence", number(0), number(1)); }},
        {"focus", [&] { Focused(rest); }},
        {"close", [this] { form->close(); }},
        {"tick", [this] { timer.Elapse(); }},
        {"menu", [&] { Trigger(rest); }},
        {"file", [&] { files.answer = File(rest); }},
        {"path", [&] { files.answer = rest; }},
        {"pipe", [this] { files.answer = folder_.filePath("pipe"), mkfifo(files.answer->toUtf8(), 0600); }},
        {"flash", [this] { FillFlash(ExampleSequences()); }},
        {"copied", [&] { QGuiApplication::clipboard()->setText(Text(rest)); }},
        {"board", [&] { board.Send({static_cast<std::uint8_t>(number(0))}); }},
        {"received", [&] { EXPECT_TRUE(hands->WaitUntil([&] { return hands->Read("Echo") == rest; })); }},
        {"answer", [&] { board.Send(Hex(rest.toStdString())); }},
        {"arrive", [&] { Arrive(board, Hex(rest.toStdString())); }},
        {"flood", [&] { board.Send(Bytes(rest.toUInt(), 7)); }},
        {"confirm", [this] { board.Send({255}); EXPECT_TRUE(hands->WaitUntil([this] { return Acknowledged(); })); }},
        {"count", [&] { hands->Find<QSpinBox>("CWNumEditInterp").setValue(number(0)); }},
        {"movement", [this] { Open(); }},
        {"point", [&] { MoveTo(At(MiddleOf(number(0)), number(1))); }},
        {"twice", [&] { QTest::mouseDClick(Window().windowHandle(), Qt::LeftButton, {}, InWindow(At(MiddleOf(number(0)), number(1)))); }},
        {"level", [&] { PressAt(Level(number(0), number(1), number(2))); }},
        {"end", [&] { PressAt(At(EndOf(number(0)), number(1))); }},
        {"pull", [&] { MoveTo(pointer + QPoint(number(0), number(1))); }},
        {"drop", [this] { ReleaseAt(pointer); }},
        {"right", [this] { QTest::mouseClick(Window().windowHandle(), Qt::RightButton, {}, InWindow(pointer)); }},
        {"lock", [this] { form->setEnabled(false), form->setEnabled(true); }},
        {"minimise", [this] { Canvas().hide(), Canvas().show(); }},
        {"silent", [this] { board.SetFaults({.silent = true}); }},
        {"sound", [this] { board.SetFaults({}); }},
        {"acks", [&] { board.SetFaults({.silent_after_acks = number(0)}); }},
        {"wrong", [&] { board.SetFaults({.before_reply = {static_cast<std::uint8_t>(number(0))}}); }},
        {"cut", [&] { board.SetFaults({.cut_reply_at = rest.toUInt()}); }},
        {"lie", [&] { board.SetFaults({.cut_reply_at = words[0].toUInt(), .lying_header = Lie(words.mid(1))}); }},
        {"when", [&] { When(first, rest.mid(first.size() + 2)); }},
        {"behind", [&] { behind_[first] = rest.mid(first.size() + 2); }},
        {"note", [&] { Note(rest); }},
    };
    // clang-format on
    const auto known = verbs.find(verb);
    known == verbs.end() ? hands->Click(verb) : known.value()();
  }

  // The example's header with a byte changed: "14 128".
  static std::array<std::uint8_t, 66> Lie(const QStringList& changes) {
    std::array<std::uint8_t, 66> lie{};
    std::ranges::copy(HeaderOf(ExampleSequences()), lie.begin());
    for (qsizetype i = 0; i + 1 < changes.size(); i += 2) {
      lie[changes[i].toUInt()] = static_cast<std::uint8_t>(changes[i + 1].toUInt());
    }
    return lie;
  }
  QWidget& Focused(const QString& name) {
    auto& control = hands->Find<QWidget>(name);
    control.setFocus();
    return control;
  }
  // Without a pause (in ms) it is a key held on a busy machine: release and press of each
  // repetition bear the same time, but come apart and look like any others.
  static void PressSixTimes(QWidget& control, QKeyCombination key, quint64 pause) {
    static quint64 time = 1;
    for (int i = 0; i < 6; ++i) {
      const bool shortcut =
          qt_sendShortcutOverrideEvent(&control, time, key.key(), key.keyboardModifiers());
      for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key.key(), key.keyboardModifiers());
        if (type == QEvent::KeyRelease) time += 30;
        event.setTimestamp(time);
        if (type == QEvent::KeyRelease || !shortcut) QApplication::sendEvent(&control, &event);
      }
      time += pause;
    }
    time += 1000;
  }
  // Text from an input method.
  static void Compose(QWidget& control, const QString& text) {
    QInputMethodEvent composed;
    composed.setCommitString(text);
    QApplication::sendEvent(&control, &composed);
  }
  static void ClickTwice(QWidget& control) {
    QTest::mouseClick(&control, Qt::LeftButton);
    QTest::mouseDClick(&control, Qt::LeftButton);
    QTest::mouseRelease(&control, Qt::LeftButton);
  }
  static void Wheel(QWidget& control, double notches) {
    const QPointF place = control.rect().center();
    QWheelEvent wheel(place, control.mapToGlobal(place), {}, {0, qRound(120 * notches)}, {}, {}, {},
                      false);
    QApplication::sendEvent(&control, &wheel);
  }
  // Presses the pointer on a fader, moves it and releases it at the last place. Places are pixels
  // above the handle's centre at offset 0.
  void PullFader(const QString& fader, const QStringList& places, Qt::MouseButton button) {
    auto& slide = hands->Find<QWidget>(fader);
    const auto at = [&](const QString& place) {
      const int centre = (slide.fontMetrics().height() + slide.height()) / 2;
      return QPoint(slide.width() / 2, centre - place.toInt());
    };
    QTest::mousePress(&slide, button, {}, at(places.first()));
    for (const QString& place : places.mid(1)) QTest::mouseMove(&slide, at(place));
    QTest::mouseRelease(&slide, button, {}, at(places.last()));
  }
  QAccessibleInterface* Assist(const QString& name) const {
    return QAccessible::queryAccessibleInterface(&hands->Find<QWidget>(name));
  }
  // As assistive technology does; it holds the button for a moment, which a change of the active
  // window would end.
  void PressBySpeech(const QString& name) {
    QCoreApplication::processEvents();
    Assist(name)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    const auto& button = hands->Find<QPushButton>(name);
    EXPECT_TRUE(hands->WaitUntil([&] { return !button.isDown(); }));
  }
  // Does a command, or nothing, while another program's window is the active one.
  void DoElsewhere(const QString& command) {
    QLineEdit other;
    other.show();
    other.setFocus();
    other.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
    Do(command);
    other.hide();
    form->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
  }
  void Lose() {
    board.Unplug();
    EXPECT_TRUE(hands->WaitUntil([this] { return Enabled("ComboPort"); }));
  }
  // How something of the state is at this moment.
  void Note(const QString& name) {
    const QString value = StateOf(*this).values[name];
    noted_.append("notes " + name + ": " + (value.isEmpty() ? "none" : value));
  }

  // Whatever has been done to the line: a read that gets no answer, a byte that comes by itself, a
  // read, and a program with an erase that is answered late.
  void ExpectTheNextOperationsToWork() {
    if (board.DevicePath().empty()) board.Replug();
    if (Enabled("ComboPort")) Connect();
    FillFlash(ExampleSequences());  // ends a program that the board is still waiting for, too
    box.said.clear();
    for (const QString operation :
         {"silent; when sent 1: press Command1; press CommandRead", "sound; board 65; received 65",
          "press CommandRead", "silent; when sent 1: sound, answer FF; press CommandFlash"}) {
      board.ClearLog();
      DoAll(operation.split(';'));
    }
    EXPECT_EQ(box.said.join(", ").remove("Program: ").toStdString(),
              "Reading Error!, Data Flash Read!, Data Flash Erased, Data Flash Programmed!");
    EXPECT_EQ(Table(), ExampleSequences());
    EXPECT_TRUE(
        hands->WaitUntil([this] { return board.FlashData() == StepDataOf(ExampleSequences()); }));
  }

  // Lines and fields, which a row parts by "/" and "|".
  static QString Text(QString text) { return text.replace('|', '\t').replace('/', '\n'); }
  // A file of these lines, or of so many steps; "example", "new" for none yet, "none" for a
  // cancelled dialog.
  std::optional<QString> File(const QString& content) const {
    if (content == "none") return {};
    const QString path = folder_.filePath("file");
    QFile::remove(path);
    const QString steps = QString::fromStdString(
        content == "example" ? ExampleFile() : FileOf(Centred(content.toInt())));
    if (content != "new") WriteFile(path, (content.contains('/') ? Text(content) : steps).toUtf8());
    return path;
  }

  QTemporaryDir folder_;
  QMap<QString, QString> behind_;  // what is done while this message is open
  QStringList noted_;
};

TEST_P(Effects, AreTheseAndNoOthers) {
  const QStringList rows = Sections()[QString::fromStdString(GetParam())];
  for (const QString& row : rows) ExpectRow(row);
}

INSTANTIATE_TEST_SUITE_P(, Effects, testing::ValuesIn(Commands()),
                         [](const auto& test) { return test.param; });

}  // namespace
}  // namespace pelmora
