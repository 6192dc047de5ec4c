// What each command of the window changes, and that it changes nothing else: a row for each, from a
// start in which nothing agrees. The program's whole state before and after is compared.
#include <QClipboard>
#include <QRadioButton>

#include "rig/program_state.h"
#include "tests/flash_fixture.h"

namespace pelmora {
namespace {

using simboard::Faults;

std::vector<Step> Steps(int count, int position, int ticks) {
  Step step{{}, ticks};
  step.positions.fill(static_cast<std::uint8_t>(position));
  return std::vector<Step>(static_cast<std::size_t>(count), step);
}

// What has been loaded at the start: eight steps.
Sequences Stored() {
  Sequences sequences;
  sequences[0] = Steps(2, 128, 3);
  sequences[6] = Steps(1, 118, 25);
  for (const int step : {1, 2, 3}) {
    sequences[7].push_back(Steps(1, 128, 5 * step)[0]);
    sequences[7].back().positions[0] = static_cast<std::uint8_t>(110 + 20 * step);
  }
  sequences[8] = Steps(1, 138, 35);
  sequences[15] = Steps(1, 120, 2);
  return sequences;
}

// So many steps, as many as possible in the first sequences.
Sequences Many(int steps) {
  Sequences sequences;
  for (auto& sequence : sequences) {
    sequence = Steps(std::min(steps, kMostSteps), 128, 5);
    steps -= static_cast<int>(sequence.size());
  }
  return sequences;
}

class Effects : public FlashTest {
 protected:
  Effects() { box.ExpectAnything(); }

  // Rows, each of them "start > command" and what differs then, in lines that are set in; "; "
  // stands between commands and " · " between differences, whose order doesn't matter.
  void ExpectRows(const QString& rows) {
    QString title;
    QStringList expected;
    for (const QString& line : rows.split('\n') + QStringList("end")) {
      if (line.trimmed().isEmpty()) continue;
      if (line.startsWith(' ')) {
        expected += InFull(line.trimmed()).split(" · ");
        continue;
      }
      if (!title.isEmpty()) ExpectRow(title, expected);
      title = line;
      expected.clear();
    }
  }

 private:
  // What several rows have in common.
  static QString InFull(QString line) {
    // clang-format off
    using Regex = QRegularExpression;
    static const std::pair<Regex, const char*> parts[] = {
        {Regex("CLEARED"), "ALL LINES · CurSeq: 0 · sequence 0: none · OTHERS · flash: 0 bytes · FIRST"},
        {Regex("EXAMPLE"), "ALL LINES · +0 0 °*12|100  ms| · +1 63.5 °|0 °*11|1000  ms| · CurSeq: 0 · sequence 0: as listed · sequence 3: 0*12:5120 · OTHERS · FIRST"},
        {Regex("ALL LINES"), "-0 LINE 0 · -1 LINE 1 · -2 LINE 2 · -3 LINE 3 · selected: -1 · breaks: none"},
        {Regex("LINE 0"), "1 °|0 °*11|100  ms|"},
        {Regex("LINE 1"), "11 °|0 °*11|100 ms"},
        {Regex("LINE 2"), "16 °|0 °*11|100 ms"},
        {Regex("LINE 3"), "21 °|0 °*11|300  ms|"},
        {Regex("OTHERS"), "sequence 6: none · sequence 7: none · sequence 8: none · sequence 15: none"},
        {Regex("FIRST"), "LabelSeq: Sequence N° 0 · LabelStep: Step N° ..."},
        {Regex("THREE STEPS"), "130,128*11:100 150,128*11:200 170,128*11:300"},
        {Regex("FOUR STEPS"), "130,128*11:100 150,128*11:100 160,128*11:100 170,128*11:300"},
        {Regex("STORED 3"), "sequence 7: as listed · LabelByte: 112 bytes"},
        {Regex("STORED 4"), "sequence 7: as listed · FOUR · LabelByte: 126 bytes"},
        {Regex("STORED 5"), "sequence 7: as listed · flash: 140 bytes 0:2@0 6:1@28 7:5@42 8:1@112 15:1@126 · LabelByte: 140 bytes"},
        {Regex("FOUR"), "flash: 126 bytes 0:2@0 6:1@28 7:4@42 8:1@98 15:1@112"},
        {Regex("SIX FULL"), "0:256@0 1:256@3584 2:256@7168 3:256@10752 4:256@14336 5:256@17920"},
        {Regex("TOO MANY"), "says Program: Out of memory: too many steps. Max # of bytes is 24064!"},
        {Regex("NO PORT"), "says Program: No Connection Available!"},
        {Regex("BY (Clear \\w+|Read Seq\\.|Load Buffer|\\w+)"), "undo: \\1 · redo: none"},
        {Regex("NAMED (\\S+)(?! IN|\\S)"), "NAMED \\1 IN 7 AT 42"},
        {Regex("NAMED (\\S+) IN (\\d+) AT (\\d+)"), "LabelStep: Step N° \\1 · CommandOffset: OffSet Seq. \\2 · LabelOffset: \\3 bytes"},
        {Regex("SEQUENCE (\\d+) AT (\\d+)"), "LabelSeq: Sequence N° \\1 · LabelSeqEmu: Sequence N° \\1 · NAMED ... IN \\1 AT \\2"},
        {Regex("SHOWN 0"), "Ch0: 130 · Ch11: 128 · CWNumEditTimeStep: 100 ms · LabelStep: Step N° 0"},
        {Regex("SHOWN 1"), "Ch0: 150 · Ch11: 128 · CWNumEditTimeStep: 100 ms · LabelStep: Step N° 1"},
        {Regex("SHOWN 2"), "Ch0: 160 · Ch11: 128 · CWNumEditTimeStep: 100 ms · LabelStep: Step N° 2"},
        {Regex("SHOWN 3"), "Ch0: 170 · Ch11: 128 · CWNumEditTimeStep: 300 ms · LabelStep: Step N° 3"},
        {Regex("OPENED"), "windows: Interpolation · Form1 disabled · FrameMan disabled · FrameBuffEdit disabled · FramePCEmu disabled · ListSequence disabled · focus: OKButton · DialogInterp.OKButton: OK · DialogInterp.CancelButton: Annulla · DialogInterp.CWNumEditInterp: 1 · DialogInterp.Label1: Number of Interpolation Steps"},
        {Regex("UNLOCKED"), "windows: none · Form1 enabled · FrameMan enabled · FrameBuffEdit enabled · FramePCEmu enabled · ListSequence enabled · focus: ListSequence"},
        {Regex("LOST"), "ComboPort: none · ComboPort enabled · port: closed · says Program: The connection on Comm1 (PORT) is lost: the adapter was pulled or the line hung up."},
        {Regex("UNTOUCHED"), "Your sequences are untouched. Choose a port to connect again."},
    };
    // clang-format on
    for (int depth = 0; depth < 3; ++depth) {
      for (const auto& [name, text] : parts) line.replace(name, text);
    }
    return line;
  }

  void ExpectRow(const QString& title, QStringList expected) {
    StartWatchdog();
    const QStringList start = title.section('>', 0, 0).split(';', Qt::SkipEmptyParts);
    const QStringList commands = title.section('>', 1).split(';');
    Begin();
    for (const QString& command : start) Do(command.trimmed());
    if (!start.join(' ').contains("closed") && Enabled("ComboPort")) Connect();
    if (!start.join(' ').contains("fresh")) MakeLabelsStale();
    // The button that is pressed has the focus already.
    if (QWidget* first = form->findChild<QWidget*>(commands[0].trimmed())) first->setFocus();
    Sent(0);
    box.said.clear();
    files.requests.clear();
    Activate();
    const ProgramState before = StateOf(*this);
    for (const QString& command : commands) Do(command.trimmed());
    Activate();
    QStringList changed = Difference(before, StateOf(*this));
    if (!box.said.isEmpty()) changed.append("says " + Plain(box.said.join(" / ")));
    for (const platform::FileRequest& asked : files.requests) {
      changed.append(
          QString("asks for a file " + asked.proposed_name + asked.default_extension).trimmed());
    }
    const QStringList sent = expected.filter(QRegularExpression("^sent "));
    const std::size_t count = sent.isEmpty() ? 0 : BytesOf(sent[0].mid(5)).size();
    if (const Bytes bytes = Sent(count); !bytes.empty()) changed.append("sent " + NameOf(bytes));
    QStringList too_much;
    for (const QString& change : changed) {
      if (!expected.removeOne(change)) too_much.append(change);
    }
    EXPECT_TRUE(too_much.isEmpty() && expected.isEmpty())
        << title.toStdString() << "\n  not expected: " << too_much.join(" · ").toStdString()
        << "\n  missing: " << expected.join(" · ").toStdString();
  }

  // A window that has just come up, or again, has no focus yet.
  void Activate() {
    auto* dialog = form->findChild<QDialog*>("DialogInterp");
    QWidget* top = dialog && dialog->isVisible() ? dialog : form->window();
    if (top->isVisible()) QApplication::setActiveWindow(top);
  }
  // Without what differs from run to run.
  static QString Plain(QString text) {
    return text.replace(QRegularExpression("/dev/pts/\\d+"), "PORT").replace("\n\n", " ");
  }
  static Bytes BytesOf(const QString& bytes) {
    if (bytes == "HEADER") return Bytes{7, 2} + HeaderOf(Stored());
    if (bytes == "NOTHING") return ProgramBytes({});
    return bytes == "PROGRAM" ? ProgramBytes(Stored()) : Hex(bytes.toStdString());
  }
  static QString NameOf(const Bytes& bytes) {
    for (const char* name : {"HEADER", "PROGRAM", "NOTHING"}) {
      if (bytes == BytesOf(name)) return name;
    }
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), qsizetype(bytes.size()))
        .toHex(' ')
        .toUpper();
  }
  void MakeLabelsStale() {
    for (const char* label :
         {"LabelSeq", "LabelSeqEmu", "LabelStep", "LabelByte", "CommandOffset", "LabelOffset"}) {
      hands->Find<QLabel>(label).setText("?");
    }
    hands->Find<QLineEdit>("Echo").setText("?");
  }

  // Sequence 7 of the stored ones, in which a step has been interpolated since: 4 lines of which
  // the table has 3. Line 2 is selected and not shown, 0 and 3 have breakpoints, "Clear Sequence"
  // could be done again.
  void Begin() {
    if (board.DevicePath().empty()) board.Replug();
    board.SetFaults({});
    FillFlash({});
    QGuiApplication::clipboard()->clear();
    Restart();
    for (const char* item : {"FreshProg", "Emu", "Serial"}) Trigger(item);
    Load(Stored());
    for (int i = 0; i < 7; ++i) Press("CommandMoreSeq");
    Select(1);
    Press("CommandInterpolate");
    hands->Find<QRadioButton>("OptionINterp_1").setChecked(true);
    hands->Find<QSpinBox>("CWNumEditInterp").setValue(2);
    Press("OKButton");
    Press("CommandClear");
    ListKeys("Ctrl+Z");
    for (const int line : {0, 3, 2}) {
      Select(line);
      if (line != 2) Press("CommandBrk");
    }
    SetSlider(0, 200);
    SetSlider(11, 0);
    hands->Find<QSpinBox>("CWNumEditTimeStep").setValue(340);
    MakeLabelsStale();
  }

  void Do(const QString& command) {
    const QString verb = command.section(' ', 0, 0);
    const QString rest = command.section(' ', 1);
    const QStringList words = rest.split(' ');
    const auto number = [&words](int i) { return words.value(i).toInt(); };
    // clang-format off
    const QMap<QString, std::function<void()>> verbs = {
        {"", [] {}},
        {"closed", [] {}},
        {"fresh", [] {}},
        {"connect", [this] { Connect(); }},
        {"lose", [this] { Lose(); }},
        {"select", [&] { Select(number(0)); }},
        {"seq", [&] { while (Data().CurSeq != number(0)) Press(Data().CurSeq < number(0) ? "CommandMoreSeq" : "CommandLessSeq"); }},
        {"slide", [&] { SetSlider(number(0), number(1)); }},
        {"type", [&] { hands->Type(words[0], rest.section(' ', 1)); }},
        {"write", [&] { hands->Type(words[0], rest.section(' ', 1), false); }},
        {"click", [&] { hands->Click(rest); }},
        {"keys", [&] { hands->Keys(Focused(words[0]), rest.section(' ', 1)); }},
        {"line", [&] { hands->ClickLine("ListSequence", number(0)); }},
        {"double", [&] { hands->DoubleClickLine("ListSequence", number(0)); }},
        {"drag", [&] { hands->DragLine("ListSequence", number(0), number(1)); }},
        {"focus", [&] { Focused(rest); }},
        {"close", [this] { form->close(); }},
        {"tick", [this] { timer.Elapse(); }},
        {"menu", [&] { Trigger(rest); }},
        {"file", [&] { files.answer = File(rest); }},
        {"flash", [this] { FillFlash(ExampleSequences()); }},
        {"copied", [&] { QGuiApplication::clipboard()->setText(QString(rest).replace('|', '\t')); }},
        {"board", [&] { Send(static_cast<std::uint8_t>(number(0))); }},
        {"count", [&] { hands->Find<QSpinBox>("CWNumEditInterp").setValue(number(0)); }},
        {"silent", [this] { board.SetFaults({.silent = true}); }},
        {"acks", [&] { board.SetFaults({.silent_after_acks = number(0)}); }},
        {"wrong", [&] { board.SetFaults({.before_reply = {static_cast<std::uint8_t>(number(0))}}); }},
        {"lie", [&] { board.SetFaults({.lying_header = Lie(words)}); }},
        {"lose-at", [&] { WhenSent(words[0].toUInt(), [this] { board.Unplug(); }); }},
        {"abort", [&] { WhenSent(words[0].toUInt(), [this] { Abort(); }); }},
        {"abort-after", [&] { hands->When([=, this] { return hands->Read("Echo") == rest; }, [this] { Abort(); }); }},
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
  void Send(std::uint8_t byte) {
    board.Send({byte});
    EXPECT_TRUE(hands->WaitUntil([this] { return hands->Read("Echo") != "?"; }));
  }
  void Lose() {
    board.Unplug();
    EXPECT_TRUE(hands->WaitUntil([this] { return !box.said.isEmpty(); }));
  }
  // The file of so many steps, "example", "none" for a cancelled dialog, or a path.
  std::optional<QString> File(const QString& name) const {
    if (name == "none") return {};
    const QString path = folder_.filePath(name);
    if (name != "new") {
      const Sequences content = name == "example" ? ExampleSequences() : Many(name.toInt());
      WriteFile(path,
                name == "bad" ? QByteArray("index") : QByteArray::fromStdString(FileOf(content)));
    }
    return path;
  }

  QTemporaryDir folder_;
};

TEST_F(Effects, Editing) {
  ExpectRows(R"(
> CommandAdd
  +3 36 °|0 °*10|-64 °|340 ms · selected: 3 · breaks: none · STORED 5 · NAMED 3 · BY Add
select -1 > CommandAdd
  +0 36 °|0 °*10|-64 °|340 ms · selected: 0 · breaks: none · STORED 5 · NAMED 0 · BY Add
CommandClear > CommandAdd
  +0 36 °|0 °*10|-64 °|340 ms · selected: 0 · sequence 7: as listed
  flash: 84 bytes 0:2@0 6:1@28 7:1@42 8:1@56 15:1@70 · LabelByte: 84 bytes · NAMED 0 · undo: Add
seq 15; select 0 > CommandAdd
  +1 36 °|0 °*10|-64 °|340 ms · selected: 1 · flash: 140 bytes 0:2@0 6:1@28 7:4@42 8:1@98 15:2@112
  LabelByte: 140 bytes · NAMED 1 IN 15 AT 112 · BY Add
> CommandRem
  -2 LINE 2 · breaks: none · STORED 3 · NAMED 2
  BY Remove
select 3 > CommandRem
  -3 LINE 3 · selected: 2 · breaks: none · STORED 3 · NAMED 2 · BY Remove
seq 8; select 0 > CommandRem
  -0 5 °*12|700  ms| · selected: -1 · sequence 8: none
  flash: 112 bytes 0:2@0 6:1@28 7:4@42 15:1@98 · LabelByte: 112 bytes · NAMED -1 IN 8 AT 0 · BY Remove
focus ListSequence > keys ListSequence Delete
  -2 LINE 2 · breaks: none · STORED 3 · NAMED 2
  BY Remove
select -1 > CommandRem
  breaks: none
CommandClear > CommandRem
> CommandReplace
  -2 LINE 2 · +2 36 °|0 °*10|-64 °|340 ms · breaks: none · row 4: 170,128*11:300
  STORED 4 · NAMED 2 · BY Replace
select -1 > CommandReplace
> CommandClear
  ALL LINES · LabelStep: Step N° ... · BY Clear Sequence
CommandClear > CommandClear
  LabelStep: Step N° ...
> CommandClearAll
  CLEARED · BY Clear All
CommandClearAll > CommandClearAll
  LabelSeq: Sequence N° 0 · LabelStep: Step N° ...
)");
}

TEST_F(Effects, AtTheLimits) {
  ExpectRows(R"(
file 255; menu LoadBuffer; keys ListSequence End > CommandAdd
  +255 36 °|0 °*10|-64 °|340 ms · selected: 255 · top line: 243 · flash: 3584 bytes 0:256@0
  LabelByte: 3584 bytes · NAMED 255 IN 0 AT 0 · undo: Add
file 256; menu LoadBuffer; select 255; CommandBrk > CommandAdd
  says Program: Impossible add other lines, max # of lines is 256!
file 256; menu LoadBuffer; select 0; CommandBrk > CommandReplace
  says Program: Impossible add other lines, max # of lines is 256!
file 1718; menu LoadBuffer; seq 7 > CommandAdd
  +0 36 °|0 °*10|-64 °|340 ms · selected: 0 · sequence 7: as listed
  flash: 24066 bytes SIX FULL 6:182@21504 7:1@24052 · LabelByte: 24066 bytes · NAMED 0 IN 7 AT 24052 · undo: Add · TOO MANY
file 1719; menu LoadBuffer; seq 6; select 182 > CommandRem
  -182 0 °*12|100  ms| · selected: 181 · top line: 169 · flash: 24052 bytes SIX FULL 6:182@21504
  LabelByte: 24052 bytes · NAMED 181 IN 6 AT 21504 · undo: Remove
file 1719; menu LoadBuffer > CommandMoreSeq
  CurSeq: 1 · sequence 0: 128*12:100*256 · sequence 1: as listed · LabelByte: 24066 bytes
  SEQUENCE 1 AT 3584 · TOO MANY
file 1719; menu LoadBuffer; file new > menu SaveBuffer
  LabelByte: 24066 bytes · TOO MANY / Save: Data Saved! · asks for a file Sequences 1.dat
)");
}

TEST_F(Effects, SelectingShowingAndMoving) {
  ExpectRows(R"(
> CommandUp
  selected: 3 · SHOWN 3 · sent 08 AA 2B 80
closed; > CommandUp
  selected: 3 · SHOWN 3
select 3 > CommandUp
  selected: 0 · SHOWN 0 · sent 08 82 2B 80
select -1 > CommandUp
  selected: 0 · SHOWN 0 · sent 08 82 2B 80
CommandClear > CommandUp
seq 8; select 0 > CommandUp
  Ch0: 138 · Ch1: 138 · Ch2: 138 · Ch3: 138 · Ch4: 138 · Ch5: 138 · Ch6: 138 · Ch7: 138 · Ch8: 138
  Ch9: 138 · Ch10: 138 · Ch11: 138 · CWNumEditTimeStep: 700 ms · LabelStep: Step N° 0
  sent 08 8A 09 8A 0A 8A 0B 8A 0C 8A 0D 8A 0E 8A 0F 8A 28 8A 29 8A 2A 8A 2B 8A
> CommandDwn
  selected: 1 · SHOWN 1 · sent 08 96 2B 80
select 0 > CommandDwn
  selected: 3 · SHOWN 3 · sent 08 AA 2B 80
select -1 > CommandDwn
CommandClear > CommandDwn
focus ListSequence > line 1
  selected: 1
focus ListSequence > double 1
  selected: 1 · SHOWN 1 · sent 08 96 2B 80
focus ListSequence > keys ListSequence Return
  SHOWN 2 · sent 08 A0 2B 80
focus ListSequence; select -1 > keys ListSequence Return
focus ListSequence > keys ListSequence Home
  selected: 0
focus ListSequence > keys ListSequence Down
  selected: 3
focus ListSequence > drag 1 3
  -1 LINE 1 · -2 LINE 2 · -3 LINE 3 · +1 LINE 2 · +2 LINE 3 · +3 LINE 1 · selected: 3 · breaks: 0 2 · BY Move
focus ListSequence > drag 3 0
  -0 LINE 0 · -1 LINE 1 · -2 LINE 2 · -3 LINE 3 · +0 LINE 3 · +1 LINE 0 · +2 LINE 1 · +3 LINE 2
  selected: 0 · breaks: 0 1 · BY Move
focus ListSequence > drag 1 1
  selected: 1
focus ListSequence > keys ListSequence Ctrl+Up
  -1 LINE 1 · -2 LINE 2 · +1 LINE 2 · +2 LINE 1 · selected: 1 · BY Move
focus ListSequence > keys ListSequence Ctrl+Down
  -2 LINE 2 · -3 LINE 3 · +2 LINE 3 · +3 LINE 2 · selected: 3 · breaks: 0 2 · BY Move
focus ListSequence; select 0 > keys ListSequence Ctrl+Up
focus ListSequence; select 3 > keys ListSequence Ctrl+Down
focus ListSequence; select -1 > keys ListSequence Ctrl+Down
)");
}

TEST_F(Effects, Sequences) {
  ExpectRows(R"(
> CommandMoreSeq
  ALL LINES · +0 5 °*12|700  ms| · CurSeq: 8 · sequence 8: as listed · sequence 7: FOUR STEPS · FOUR
  LabelByte: 126 bytes · SEQUENCE 8 AT 98
> CommandLessSeq
  ALL LINES · +0 -5 °*12|500  ms| · CurSeq: 6 · sequence 6: as listed · sequence 7: FOUR STEPS
  FOUR · LabelByte: 126 bytes · SEQUENCE 6 AT 28
CommandClear > CommandMoreSeq
  +0 5 °*12|700  ms| · CurSeq: 8 · sequence 8: as listed · sequence 7: none
  flash: 70 bytes 0:2@0 6:1@28 8:1@42 15:1@56 · LabelByte: 70 bytes · SEQUENCE 8 AT 42
seq 14 > CommandMoreSeq
  +0 -4 °*12|40  ms| · CurSeq: 15 · sequence 15: as listed · LabelByte: 126 bytes
  SEQUENCE 15 AT 112
seq 15; select 0; CommandBrk > CommandMoreSeq
  SEQUENCE 15 AT 112
seq 1 > CommandLessSeq
  +0-1 0 °*12|60  ms| · CurSeq: 0 · sequence 0: as listed · LabelByte: 126 bytes · SEQUENCE 0 AT 0
seq 0; select 1; CommandBrk > CommandLessSeq
  SEQUENCE 0 AT 0
)");
}

TEST_F(Effects, FadersAndFields) {
  ExpectRows(R"(
> slide 9 200
  Ch9: 200 · sent 29 C8
closed > slide 9 200
  Ch9: 200
> slide 0 200
> CommandUpdate
  Ch0: 128 · Ch11: 128 · sent 08 80 2B 80
closed > CommandUpdate
  Ch0: 128 · Ch11: 128
focus Text1_3 > type Text1_3 200
  Ch3: 255 · sent 0B FF
focus Text1_3 > type Text1_3 007
  Ch3: 135 · sent 0B 87
focus Text1_3 > type Text1_3 -300
  Ch3: 0 · sent 0B 00
focus Text1_0 > type Text1_0 
  Ch0: 128 · sent 08 80
focus Text1_3 > type Text1_3 -
focus Text1_3 > type Text1_3 1-2
focus Text1_3 > write Text1_3 +a 4.2
  Ch3: 128, 42, 0 °
focus Text1_3 > type Text1_3 -1
  Ch3: 127 · sent 0B 7F
closed; focus Text1_11 > type Text1_11 5
  Ch11: 133
focus Text1_15 > type Text1_15 5
focus Text1_3 > write Text1_3 50; click CommandAdd
  +3 36 °|0 °*2|25 °|0 °*7|-64 °|340 ms · selected: 3 · breaks: none · focus: CommandAdd · STORED 5
  Ch3: 178 · NAMED 3 · BY Add · sent 0B B2
focus Text1_1 > write Text1_1 -20; keys Text1_1 Alt+A
  +3 36 °|-10 °|0 °*9|-64 °|340 ms · selected: 3 · breaks: none · focus: CommandAdd · STORED 5
  Ch1: 108 · NAMED 3 · BY Add · sent 09 6C
focus CWNumEditTimeStep > type CWNumEditTimeStep 500
  CWNumEditTimeStep: 500 ms
focus CWNumEditTimeStep > type CWNumEditTimeStep 10
  CWNumEditTimeStep: 20 ms
focus CWNumEditTimeStep > type CWNumEditTimeStep 99999
  CWNumEditTimeStep: 32767 ms
focus CWNumEditTimeStep > keys CWNumEditTimeStep Up
  CWNumEditTimeStep: 360 ms
)");
}

TEST_F(Effects, Breakpoints) {
  ExpectRows(R"(
> CommandBrk
  breaks: 0 2 3
select 3 > CommandBrk
  breaks: 0
select -1 > CommandBrk
CommandClear > CommandBrk
> CommandResBrk
  breaks: none
> CommandContinue
> CommandRepeat
connect; CWButtonEmuPC; tick > CommandContinue
  CWButtonEmuPC: On · timer: on
connect; CWButtonEmuPC; select 3 > CommandContinue
  interval: 300
connect; CWButtonEmuPC; tick; select -1 > CommandContinue
connect; CWButtonEmuPC; tick > CommandRepeat
  selected: 0 · interval: 100 · timer: on · CWButtonEmuPC: On · Ch0: 130 · CWNumEditTimeStep: 100 ms
  LabelStep: Step N° 0 · sent 08 82
connect; select 1; CommandBrk; select 3; CWButtonEmuPC > CommandRepeat
  selected: 1 · interval: 100 · SHOWN 1 · sent 08 96 2B 80
connect; CommandResBrk; CWButtonEmuPC > CommandRepeat
  selected: 0 · SHOWN 0 · sent 08 82 2B 80
connect; CommandClear; CWButtonEmuPC > CommandRepeat
connect; CommandClear; CWButtonEmuPC > CommandContinue
connect; CommandClear; CWButtonEmuPC; CommandAdd > CommandContinue
  CWButtonEmuPC: On · timer: on · interval: 340
)");
}

TEST_F(Effects, Playback) {
  ExpectRows(R"(
> CWButtonEmuPC
  CWButtonEmuPC: On · CWButtonRealEmu disabled · interval: 100 · timer: on
select -1 > CWButtonEmuPC
  CWButtonEmuPC: On · CWButtonRealEmu disabled · interval: 100 · timer: on · selected: 0
closed; select -1 > CWButtonEmuPC
  NO PORT
CommandClear > CWButtonEmuPC
  CWButtonEmuPC: On, halted · CWButtonRealEmu disabled
connect; CWButtonEmuPC; select 3 > CWButtonEmuPC
  CWButtonEmuPC: Off · CWButtonRealEmu enabled · interval: 300 · timer: off
connect; CWButtonEmuPC; tick > CWButtonEmuPC
  CWButtonEmuPC: Off · CWButtonRealEmu enabled
connect; CommandClear; CWButtonEmuPC > CWButtonEmuPC
  CWButtonEmuPC: Off · CWButtonRealEmu enabled
connect; CWButtonEmuPC > tick
  selected: 3 · interval: 300 · timer: off · CWButtonEmuPC: On, halted · SHOWN 3 · sent 08 AA 2B 80
connect; select 0; CWButtonEmuPC > tick
  selected: 1 · SHOWN 1 · sent 08 96 2B 80
connect; CommandResBrk; select 3; CWButtonEmuPC > tick
  selected: 0 · interval: 100 · SHOWN 0 · sent 08 82 2B 80
seq 8; select 0; CommandUp; connect; CWButtonEmuPC > tick
  LabelStep: Step N° 0
connect; CWButtonEmuPC; CommandClear > tick
  CWButtonEmuPC: Off · CWButtonRealEmu enabled · timer: off
> CWButtonRealEmu
  CWButtonRealEmu: On · CWButtonEmuPC disabled · sent 03 07
seq 0 > CWButtonRealEmu
  CWButtonRealEmu: On · CWButtonEmuPC disabled · sent 03 00
seq 15 > CWButtonRealEmu
  CWButtonRealEmu: On · CWButtonEmuPC disabled · sent 03 0F
connect; CWButtonRealEmu > CWButtonRealEmu
  CWButtonRealEmu: Off · CWButtonEmuPC enabled · sent 04
closed > CWButtonRealEmu
  NO PORT
connect; CWButtonRealEmu > CWButtonEmuPC
connect; CWButtonEmuPC > CWButtonRealEmu
)");
}

TEST_F(Effects, TheLineAndTheMenus) {
  ExpectRows(R"(
> CWButtonMainOnOff
  CWButtonMainOnOff: On · sent 01
connect; CWButtonMainOnOff > CWButtonMainOnOff
  CWButtonMainOnOff: Off · sent 00
closed > CWButtonMainOnOff
  NO PORT
> menu Resetting
  sent 11
closed > menu Resetting
connect; CWButtonMainOnOff; CWButtonRealEmu > menu Resetting
  CWButtonMainOnOff: Off · CWButtonRealEmu: Off · CWButtonEmuPC enabled · sent 11 00 04
connect; CWButtonMainOnOff; CWButtonEmuPC > menu Resetting
  CWButtonMainOnOff: Off · CWButtonEmuPC: Off · CWButtonRealEmu enabled · timer: off · sent 11 00
closed > connect
  ComboPort: Comm1 · ComboPort disabled · port: open
> lose
  LOST UNTOUCHED
connect; CWButtonMainOnOff; CWButtonEmuPC > lose
  CWButtonMainOnOff: Off · CWButtonEmuPC: Off · CWButtonRealEmu enabled · timer: off
  LOST UNTOUCHED
connect; CWButtonRealEmu > lose
  CWButtonRealEmu: Off · CWButtonEmuPC enabled
  LOST UNTOUCHED
> CommandInBuff
  Echo: 0
closed > CommandInBuff
  Echo: 0
> Echo
  Echo: none
closed > Echo
  Echo: none
> board 65
  Echo: 65
> menu FreshProg
  FrameFlash hidden · FreshProg unchecked
menu FreshProg > menu FreshProg
  FrameFlash shown · FreshProg checked
> menu Serial
  FrameSer hidden · FrameInfo hidden · Serial unchecked
menu Serial > menu Serial
  FrameSer shown · FrameInfo shown · Serial checked
connect; CWButtonRealEmu; focus ListSequence > menu Emu
  FrameRealEmu hidden · Emu unchecked
menu Emu > menu Emu
  FrameRealEmu shown · Emu checked
)");
}

TEST_F(Effects, Files) {
  ExpectRows(R"(
file none > menu SaveBuffer
  breaks: none · STORED 4 · asks for a file Sequences 1.dat
file new > menu SaveBuffer
  breaks: none · STORED 4 · asks for a file Sequences 1.dat · says Save: Data Saved!
file none; menu SaveBuffer > menu SaveBuffer
  LabelByte: 126 bytes · asks for a file Sequences 2.dat
file none > menu LoadBuffer
  CLEARED · BY Load Buffer · asks for a file
file example > menu LoadBuffer
  EXAMPLE · flash: 42 bytes 0:2@0 3:1@28 · LabelByte: 42 bytes · BY Load Buffer · asks for a file
  says Load: Data Loaded!
file bad > menu LoadBuffer
  CLEARED · BY Load Buffer · asks for a file · says Load: Format Error! Data Not Loaded!
file 1719 > menu LoadBuffer
  ALL LINES · +0-255 0 °*12|100  ms| · CurSeq: 0 · sequence 0: as listed
  sequence 1: 128*12:100*256 · sequence 2: 128*12:100*256 · sequence 3: 128*12:100*256
  sequence 4: 128*12:100*256 · sequence 5: 128*12:100*256 · sequence 6: 128*12:100*183
  sequence 7: none · sequence 8: none · sequence 15: none · flash: 24066 bytes SIX FULL 6:183@21504
  LabelByte: 24066 bytes · LabelSeq: Sequence N° 0 · LabelStep: Step N° ... · BY Load Buffer
  asks for a file · TOO MANY / Load: Data Loaded!
)");
}

TEST_F(Effects, Flash) {
  ExpectRows(R"(
closed > CommandErase
  NO PORT
closed > CommandFlash
  NO PORT
closed > CommandRead
  CLEARED · Echo: none · BY Read Seq. · NO PORT
> Command1
> CommandErase
  sent 07 · says Program: Data Flash Erased
wrong 254 > CommandErase
  Echo: Error! · sent 07 · says Program: Data Flash Erased
silent; focus CommandErase > lose-at 1; CommandErase
  LOST UNTOUCHED / Program: Operation Aborted!
  sent 07
> CommandFlash
  Echo: none · sent PROGRAM · says Program: Data Flash Erased / Program: Data Flash Programmed!
CommandClearAll > CommandFlash
  Echo: none · sent NOTHING · says Program: Data Flash Erased / Program: Data Flash Programmed!
acks 1; focus CommandFlash > abort 68; CommandFlash
  Echo: none · focus: ListSequence · sent HEADER
  says Program: Data Flash Erased / Program: Operation Aborted!
flash > CommandRead
  EXAMPLE · Echo: none · flash: 42 bytes 0:2@0 3:1@28 · BY Read Seq. · sent 06
  says Program: Data Flash Read!
> CommandRead
  CLEARED · Echo: none · BY Read Seq. · sent 06 · says Program: Nothing to Read!
silent; focus CommandRead > abort 1; CommandRead
  CLEARED · focus: ListSequence · Echo: none · BY Read Seq. · sent 06 · says Program: Reading Error!
flash; lie 14 128; focus CommandRead > abort-after Error!; CommandRead
  ALL LINES · CurSeq: 0 · sequence 0: 0*12:0*2 · OTHERS · Echo: Error! · focus: ListSequence
  flash: 42 bytes 0:2@0 · LabelSeq: Sequence N° 0 · LabelStep: Step N° ... · BY Read Seq. · sent 06
  says Program: Impossible to Load Sequences! Flash memory corrupted. / Program: Reading Error!
flash; lie 2 1 3 1 > CommandRead
  ALL LINES · CurSeq: 0 · sequence 0: 128*12:100 255,128*11:1000 0*12:5120 0*12:0*253
  sequence 3: 0*12:0 · OTHERS · Echo: none · flash: 42 bytes 0:256@0 3:1@28
  LabelSeq: Sequence N° 0 · LabelStep: Step N° ... · BY Read Seq. · sent 06
  says Program: Reading Error!
silent; focus CommandRead > lose-at 1; CommandRead
  CLEARED · Echo: none
  LOST Your sequences were cleared when the read began; undo (Ctrl+Z) brings them back. Choose a port to connect again. / Program: Reading Error!
  BY Read Seq. · sent 06
)");
}

TEST_F(Effects, UndoAndTheClipboard) {
  ExpectRows(R"(
focus ListSequence > keys ListSequence Ctrl+Z
  -1 LINE 1 · -2 LINE 2 · +1 11 °|0 °*11|200  ms| · selected: 1
  breaks: none · STORED 3 · SEQUENCE 7 AT 42 · undo: Load Buffer
  redo: Interpolate
focus ListSequence > keys ListSequence Ctrl+Y
  ALL LINES · LabelByte: 112 bytes · SEQUENCE 7 AT 42 · BY Clear Sequence
seq 9; focus ListSequence > keys ListSequence Ctrl+Z
  +0 LINE 0 · +1 11 °|0 °*11|200  ms| · +2 21 °|0 °*11|300  ms| · selected: 1
  row 3: 0*12:0 · CurSeq: 7 · sequence 7: as listed
  flash: 112 bytes 0:2@0 6:1@28 7:3@42 8:1@84 15:1@98 · LabelByte: 112 bytes · SEQUENCE 7 AT 42
  undo: Load Buffer · redo: Interpolate
CommandAdd; focus ListSequence > keys ListSequence Ctrl+Z
  -3 36 °|0 °*10|-64 °|340 ms · selected: 2 · breaks: 0 3 · sequence 7: THREE STEPS
  flash: 112 bytes 0:2@0 6:1@28 7:3@42 8:1@84 15:1@98 · undo: Interpolate · redo: Add
select 1; file none; menu SaveBuffer; fresh; focus ListSequence > keys ListSequence Ctrl+Z; keys ListSequence Ctrl+Y
CommandClear; CommandClearAll; fresh; focus ListSequence > keys ListSequence Ctrl+Z; keys ListSequence Ctrl+Y
focus ListSequence > keys ListSequence Ctrl+C
  clipboard: 16|0*11|100
focus ListSequence; select -1 > keys ListSequence Ctrl+C
focus ListSequence; select -1 > keys ListSequence Ctrl+X
focus ListSequence > keys ListSequence Ctrl+Shift+C
  clipboard: 1|0*11|100 / 11|0*11|100 / 16|0*11|100 / 21|0*11|300
focus ListSequence > keys ListSequence Ctrl+X
  clipboard: 16|0*11|100 · -2 LINE 2 · breaks: none · STORED 3 · NAMED 2 · BY Cut
copied 5|0|0|0|0|0|0|0|0|0|0|0|60; focus ListSequence > keys ListSequence Ctrl+V
  +3 5 °|0 °*11|60 ms · selected: 3 · breaks: none · STORED 5 · NAMED 3 · BY Paste
focus ListSequence; copied junk > keys ListSequence Ctrl+V
  says Program: Nothing is pasted. Line 1 is no step: it has fewer than 13 fields.
focus ListSequence > keys ListSequence Ctrl+V
)");
}

TEST_F(Effects, TheDialogOfTheInterpolation) {
  ExpectRows(R"(
> CommandInterpolate
  OPENED · DialogInterp.OptionINterp_0: Interpolation With Previous Step
  DialogInterp.OptionINterp_1: Interpolation With Next Step
select 0 > CommandInterpolate
  OPENED · DialogInterp.OptionINterp_0: Interpolation With Previous Step
  DialogInterp.OptionINterp_1: Interpolation With Next Step, chosen
  DialogInterp.OptionINterp_0 disabled
select 3 > CommandInterpolate
  OPENED · DialogInterp.OptionINterp_0: Interpolation With Previous Step, chosen
  DialogInterp.OptionINterp_1: Interpolation With Next Step · DialogInterp.OptionINterp_1 disabled
select -1 > CommandInterpolate
seq 8; select 0 > CommandInterpolate
CommandInterpolate > OKButton
  UNLOCKED
CommandInterpolate; OptionINterp_1; count 3 > CancelButton
  UNLOCKED
CommandInterpolate; OptionINterp_1; count 6 > OKButton
  says Note: Number of Steps too high for selected Step Time!
CommandInterpolate; OptionINterp_0; count 6 > OKButton
  says Note: Number of Steps too high for selected Step Time!
CommandInterpolate; OptionINterp_1; count 2 > OKButton
  UNLOCKED · -2 LINE 2 · +2 16 °|0 °*11|60 ms · +3 18.5 °|0 °*11|40 ms · breaks: 0 4
  LabelStep: Step N° 2 · redo: none
CommandInterpolate; OptionINterp_0; count 2 > OKButton
  UNLOCKED · -1 LINE 1 · +1 11 °|0 °*11|60 ms · +2 13.5 °|0 °*11|40 ms · breaks: 0 4
  selected: 1 · LabelStep: Step N° 1 · redo: none
)");
}

TEST_F(Effects, Closing) {
  ExpectRows(R"(
connect; CWButtonEmuPC; CWButtonMainOnOff > close
  timer: off · port: closed · program: ending · focus: none · sent 00 00
)");
}

TEST_F(Effects, Quit) {
  ExpectRows(R"(
connect; CWButtonEmuPC > menu Quit
  timer: off · port: closed · program: ending · sent 00
)");
}

}  // namespace
}  // namespace pelmora
