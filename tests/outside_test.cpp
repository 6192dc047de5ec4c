// The program driven from outside its process: real pointer and keyboard events on a virtual X
// server.
#include <gtest/gtest.h>
#include <signal.h>

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QPoint>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>
#include <optional>
#include <string_view>

#include "board/simulated_board.h"
#include "rig/bytes.h"
#include "ui/inventory.h"

namespace pelmora {
namespace {

using rig::Bytes;

constexpr int kStartLimit = 20000;  // ms
constexpr int kEndLimit = 5000;

class Outside : public testing::Test {
 protected:
  void SetUp() override {
    x_server_.start("Xvfb",
                    {"-displayfd", "1", "-screen", "0", "1800x1000x24", "-nolisten", "tcp"});
    ASSERT_TRUE(x_server_.waitForReadyRead(kStartLimit)) << "Xvfb does not start";
    environment_ = QProcessEnvironment::systemEnvironment();
    environment_.insert("DISPLAY", ":" + x_server_.readLine().trimmed());
    environment_.insert("QT_QPA_PLATFORM", "xcb");
    environment_.insert("XDG_RUNTIME_DIR", folder_.path());
  }

  void TearDown() override {
    for (QProcess* process : {&program_, &x_server_}) {
      if (process->state() == QProcess::NotRunning) continue;
      process->kill();
      process->waitForFinished();
    }
  }

  void StartDemo(QStringList options) {
    options << "--log" << LogPath();
    Start(PELMORA_DEMO, options);
  }

  void Start(const QString& program, const QStringList& options) {
    program_.setProcessEnvironment(environment_);
    program_.start(program, options);
    window_ = FindWindow("^Pelmora V 3.0$");
    ASSERT_FALSE(window_.isEmpty());
    const QString geometry = XDoTool({"getwindowgeometry", "--shell", window_});
    const auto value = [&geometry](const char* name) {
      return QRegularExpression(QString("^%1=(-?\\d+)$").arg(name),
                                QRegularExpression::MultilineOption)
          .match(geometry)
          .captured(1)
          .toInt();
    };
    const int menu_height = value("HEIGHT") - Pixels(kFormHeight);
    left_ = value("X");
    top_ = value("Y") + menu_height;
    ASSERT_GT(menu_height, 0);
    XDoTool({"windowfocus", "--sync", window_});
  }

  QString FindWindow(const QString& title) {
    return XDoTool({"search", "--sync", "--onlyvisible", "--name", title});
  }

  // Closes the open message box; there is no window manager that would give it the focus.
  void AnswerMessage() {
    XDoTool({"windowfocus", "--sync", FindWindow("^Program$")});
    Key("Return");
    QThread::msleep(200);
    XDoTool({"windowfocus", "--sync", window_});
  }

  QString XDoTool(const QStringList& arguments) {
    QProcess tool;
    tool.setProcessEnvironment(environment_);
    tool.start("xdotool", arguments);
    EXPECT_TRUE(tool.waitForFinished(kStartLimit)) << arguments.join(' ').toStdString();
    EXPECT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().toStdString();
    return tool.readAllStandardOutput().trimmed();
  }

  // The place on the screen of a control's point, given in pixels from its corner or, without one,
  // its centre.
  QPoint Place(std::string_view name, int element = 0, std::optional<QPoint> inside = {}) const {
    for (const ControlRow& row : Inventory()) {
      if (name != row.control.name || element < row.first || element >= row.first + row.count)
        continue;
      const int shift = (element - row.first) * row.pitch;
      const QPoint corner(Pixels(row.left + shift), Pixels(row.top));
      const QPoint point = inside.value_or(QPoint(Pixels(row.width) / 2, Pixels(row.height) / 2));
      const QPoint parent =
          row.parent.member ? Place(row.parent.name, 0, QPoint(0, 0)) : QPoint(left_, top_);
      return parent + corner + point;
    }
    ADD_FAILURE() << "no such control: " << name;
    return {};
  }

  void MoveTo(const QPoint& place) {
    XDoTool({"mousemove", QString::number(place.x()), QString::number(place.y())});
    Pause();
  }
  void Click(const QPoint& place, int times = 1) {
    MoveTo(place);
    XDoTool({"click", "--repeat", QString::number(times), "--delay", "60", "1"});
    Pause();
  }
  void Key(const QString& key) {
    XDoTool({"key", key});
    Pause();
  }
  static void Pause() { QThread::msleep(60); }

  // `end` of the list: "Home" for its first entry, "End" for its last.
  void ChoosePort(const QString& end) {
    Click(Place("ComboPort"));
    QThread::msleep(300);
    Key(end);
    Key("Return");
  }

  // Puts `offset` into a channel's position field.
  void TypeOffset(int channel, const QString& offset) {
    Click(Place("Text1", channel));
    XDoTool({"key", "ctrl+a"});
    XDoTool({"type", "--", offset});
  }

  // Waits for the program's end by itself; its exit status, and how long it took.
  void ExpectEnd() {
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(program_.waitForFinished(kEndLimit)) << "the program does not end";
    EXPECT_EQ(program_.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program_.exitCode(), 0);
  }

  // The bytes that the board received in the whole run.
  QList<int> Received() const {
    QFile file(LogPath());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QList<int> bytes;
    for (const QByteArray& byte : file.readAll().simplified().split(' '))
      bytes.append(byte.toInt());
    return bytes;
  }

  QString LogPath() const { return folder_.filePath("received"); }

  QTemporaryDir folder_;
  QProcessEnvironment environment_;
  QProcess x_server_;
  QProcess program_;
  QString window_;
  int left_ = 0;
  int top_ = 0;
};

TEST_F(Outside, SignalsEndTheProgramAsClosingTheWindowDoes) {
  struct Case {
    int signal;
    bool waiting;  // for a board that stays silent
  };
  for (const Case& c : {Case{SIGINT, false}, Case{SIGHUP, false}, Case{SIGTERM, true}}) {
    StartDemo(c.waiting ? QStringList("--silent") : QStringList());
    ChoosePort("Home");
    if (c.waiting) {
      Key("alt+v");
      Key("f");
      Click(Place("CommandErase"));
    }
    kill(static_cast<pid_t>(program_.processId()), c.signal);
    ExpectEnd();
    EXPECT_EQ(Received(), c.waiting ? QList<int>({7, 0, 0}) : QList<int>({0, 0})) << c.signal;
  }
}

TEST_F(Outside, NothingPersistsButTheSavedFile) {
  const QString home = folder_.filePath("home");
  QDir().mkpath(home);
  environment_.insert("HOME", home);
  for (const char* place : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
    environment_.remove(place);
  }
  Start(PELMORA, {});
  Key("ctrl+s");
  XDoTool({"windowfocus", "--sync", FindWindow("^Save As$")});
  XDoTool({"key", "ctrl+a"});
  XDoTool({"type", "--", home + "/a"});
  Key("Return");
  XDoTool({"windowfocus", "--sync", FindWindow("^Save$")});
  Key("ctrl+q");  // while the message is open
  ExpectEnd();
  QStringList files;
  QDirIterator file(home, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (file.hasNext()) files.append(QDir(home).relativeFilePath(file.next()));
  files.removeIf([](const QString& name) { return name.startsWith(".cache/fontconfig/"); });
  EXPECT_EQ(files, QStringList("a.dat"));
}

// The program itself, not the demo, on a board that a link /dev/comm8 pins to its last entry.
// PELMORA_PROGRAM names another one to drive, for example the installed one.
TEST_F(Outside, TheProgramItselfComposesAndProgramsOverAPinnedPort) {
  simboard::SimulatedBoard board(simboard::Pace::kUnpaced);
  const QString link = "/dev/comm8";
  if (!QFile::link(QString::fromStdString(board.DevicePath()), link)) {
    GTEST_SKIP() << "no link can be made in /dev";
  }
  Start(qEnvironmentVariable("PELMORA_PROGRAM", PELMORA), {});
  ChoosePort("End");
  QFile::remove(link);
  Click(Place("CWButtonMainOnOff"));
  TypeOffset(0, "10");
  Key("Return");
  Click(Place("CommandAdd"));
  TypeOffset(0, "-20");
  Click(Place("CommandAdd"));
  Key("alt+v");
  Key("f");
  Click(Place("CommandFlash"));
  AnswerMessage();  // "Data Flash Erased"
  AnswerMessage();  // "Data Flash Programmed!"
  kill(static_cast<pid_t>(program_.processId()), SIGTERM);
  ExpectEnd();

  Bytes expected = {1, 8, 138, 8, 108, 7, 2, 0, 28, 0, 2, 0, 0};
  expected.resize(expected.size() + 15 * 4);
  for (const std::uint8_t position : Bytes{138, 108}) {
    expected.push_back(position);
    expected.insert(expected.end(), 11, 128);
    expected.insert(expected.end(), {0, 50});
  }
  expected.insert(expected.end(), {0, 0});
  EXPECT_TRUE(board.WaitForBytes(expected.size(), std::chrono::seconds(2)));
  EXPECT_EQ(board.Received(), expected);
}

}  // namespace
}  // namespace pelmora
