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
    sequence = Steps(std::min(steps, kMostSteps), 128, 60);
    steps -= static_cast<int>(sequence.size());
  }
  return sequences;
}

// The lines of each section of the table; "" is what stands before the first one.
QMap<QString, QStringList> Sections() {
  QMap<QString, QStringList> sections;
  QString section;
  for (const QString& line : QString::fromUtf8(ReadFile(EFFECTS)).split('\n')) {
    if (line.isEmpty() || line.startsWith('#')) continue;
    if (line.startsWith('[')) {
      section = line.mid(1).chopped(1);
    } else {
      sections[section].append(line);
    }
  }
  return sections;
}

// The differences of a row with what it has in common with others.
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

class Effects : public FlashTest, public testing::WithParamInterface<std::string> {
 protected:
  Effects() { box.ExpectAnything(); }

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
        {"unplug", [this] { board.Unplug(); }},
        {"noticed", [this] { EXPECT_TRUE(hands->WaitUntil([this] { return !box.said.isEmpty(); })); }},
        {"select", [&] { Select(number(0)); }},
        {"seq", [&] { while (Data().CurSeq != number(0)) Press(Data().CurSeq < number(0) ? "CommandMoreSeq" : "CommandLessSeq"); }},
        {"slide", [&] { SetSlider(number(0), number(1)); }},
        {"type", [&] { hands->Type(words[0], rest.section(' ', 1)); }},
        {"write", [&] { hands->Type(words[0], rest.section(' ', 1), false); }},
        {"click", [&] { hands->Click(rest); }},
        {"keys", [&] { hands->Keys(Focused(words[0]), rest.section(' ', 1)); }},
        {"hold", [&] { Operator::Hold(Focused(words[0]), QKeySequence(words[1])[0].key(), QKeySequence(words[1])[0].keyboardModifiers()); }},
        {"line", [&] { hands->ClickLine("ListSequence", number(0)); }},
        {"double", [&] { hands->DoubleClickLine("ListSequence", number(0)); }},
        {"drag", [&] { hands->DragLine("ListSequence", number(0), number(1)); }},
        {"focus", [&] { Focused(rest); }},
        {"close", [this] { form->close(); }},
        {"tick", [this] { timer.Elapse(); }},
        {"menu", [&] { Trigger(rest); }},
        {"file", [&] { files.answer = File(rest); }},
        {"flash", [this] { FillFlash(ExampleSequences()); }},
        {"copied", [&] { QGuiApplication::clipboard()->setText(QString(rest).replace('|', '\t').replace('/', '\n')); }},
        {"board", [&] { Send(static_cast<std::uint8_t>(number(0))); }},
        {"count", [&] { hands->Find<QSpinBox>("CWNumEditInterp").setValue(number(0)); }},
        {"silent", [this] { board.SetFaults({.silent = true}); }},
        {"acks", [&] { board.SetFaults({.silent_after_acks = number(0)}); }},
        {"wrong", [&] { board.SetFaults({.before_reply = {static_cast<std::uint8_t>(number(0))}}); }},
        {"lie", [&] { board.SetFaults({.lying_header = Lie(words)}); }},
        {"meanwhile", [&] { hands->When([this] { return Waiting(); }, [this, rest] { hands->Keys(List(), rest); board.Send({255}); }); }},
        {"lose-at", [&] { WhenSent(words[0].toUInt(), [this] { board.Unplug(); }); }},
        {"abort", [&] { WhenSent(words[0].toUInt(), [this] { Abort(); }); }},
        {"abort-after", [&] { hands->When([=, this] { return hands->Read("Echo") == rest && (rest == "Error!" || Bar() == 42); }, [this] { Abort(); }); }},
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

TEST_P(Effects, AreTheseAndNoOthers) {
  QStringList row;
  for (const QString& line : Sections()[QString::fromStdString(GetParam())] + QStringList("end")) {
    if (!line.startsWith(' ') && !row.isEmpty()) {
      const QString title = row[0].section(" = ", 0, 0);
      row[0] = row[0].section(" = ", 1);
      row.removeAll("");
      ExpectRow(title, InFull(row.join(" · ")).split(" · ", Qt::SkipEmptyParts));
      row.clear();
    }
    row.append(line.trimmed());
  }
}

INSTANTIATE_TEST_SUITE_P(, Effects, testing::ValuesIn(Commands()),
                         [](const auto& test) { return test.param; });

}  // namespace
}  // namespace pelmora
