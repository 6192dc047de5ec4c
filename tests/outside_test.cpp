// The program driven from outside its process: real pointer and keyboard events on a virtual X
// server.
#include <gtest/gtest.h>
#include <signal.h>

#include <QDir>
#include <QDirIterator>
#include <QPoint>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QThread>

#include "board/simulated_board.h"
#include "rig/bytes.h"
#include "rig/files.h"

namespace pelmora {
namespace {

using rig::Bytes;

constexpr int kStartLimit = 20000;  // ms

// Below the menu bar, in pixels.
constexpr int kClientHeight = 674;
constexpr QPoint kComboPort{576, 42};
constexpr QPoint kCWButtonMainOnOff{744, 34};
constexpr QPoint kFirstOffset{36, 361};
constexpr QPoint kCommandAdd{784, 448};
constexpr QPoint kCommandFlash{560, 184};
constexpr QPoint kCommandErase{796, 184};

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
    // Without an address the toolkit may start a session bus, which leaves a folder in HOME.
    environment_.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + folder_.filePath("no bus"));
  }

  void TearDown() override {
    program_.close();
    x_server_.close();
  }

  void Start(const QString& program, const QStringList& options) {
    program_.setProcessEnvironment(environment_);
    program_.start(program, options);
    window_ = Focus("^Pelmora V 3.0$");
    ASSERT_FALSE(window_.isEmpty());
    const QString geometry = XDoTool({"getwindowgeometry", "--shell", window_});
    menu_height_ = geometry.section("HEIGHT=", 1).section('\n', 0, 0).toInt() - kClientHeight;
    ASSERT_GT(menu_height_, 0);
  }

  // Waits for a window and gives it the focus, as no window manager does; its number.
  QString Focus(const QString& title) {
    const QString window = XDoTool({"search", "--sync", "--onlyvisible", "--name", title});
    XDoTool({"windowfocus", "--sync", window});
    return window;
  }

  void AnswerMessage(const QString& title) {
    Focus(title);
    QThread::msleep(600);  // what is typed at once does not answer it
    Keys("Return");
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

  void Click(QPoint place) {
    XDoTool({"mousemove", "--window", window_, QString::number(place.x()),
             QString::number(place.y() + menu_height_), "click", "1", "sleep", "0.06"});
  }
  // Keys one after the other: "alt+v f".
  void Keys(const QString& keys) {
    for (const QString& key : keys.split(' ')) XDoTool({"key", key, "sleep", "0.06"});
  }

  // `end` of the list: "Home" for its first entry, "End" for its last.
  void ChoosePort(const QString& end) {
    Click(kComboPort);
    QThread::msleep(300);
    Keys(end + " Return");
  }

  void TypeFirstOffset(const QString& offset) {
    Click(kFirstOffset);
    Keys("ctrl+a");
    XDoTool({"type", "--", offset});
  }

  // Waits for the program's end by itself.
  void ExpectEnd() {
    EXPECT_TRUE(program_.waitForFinished(5000)) << "the program does not end";
    EXPECT_EQ(program_.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program_.exitCode(), 0);
  }

  QTemporaryDir folder_;
  QProcessEnvironment environment_;
  QProcess x_server_;
  QProcess program_;
  QString window_;
  int menu_height_ = 0;
};

TEST_F(Outside, SignalsEndTheProgramAsClosingTheWindowDoes) {
  for (const int signal : {SIGINT, SIGHUP, SIGTERM}) {
    const bool waiting = signal == SIGTERM;  // for a board that stays silent
    const QString log = folder_.filePath("received");
    Start(PELMORA_DEMO, QStringList{"--log", log} + QStringList(waiting ? 1 : 0, "--silent"));
    ChoosePort("Home");
    if (waiting) {
      Keys("alt+v f");
      Click(kCommandErase);
    }
    if (signal == SIGHUP) {
      Keys("ctrl+s");
      Focus("^Save As$");
    }
    kill(static_cast<pid_t>(program_.processId()), signal);
    ExpectEnd();
    EXPECT_EQ(rig::ReadFile(log).simplified(), waiting ? "7 0 0" : "0 0") << signal;
  }
}

TEST_F(Outside, AClickBehindAMessageLeavesItTheKeyboard) {
  Start(qEnvironmentVariable("PELMORA_PROGRAM", PELMORA), {});
  Click(kCWButtonMainOnOff);
  const QString message = XDoTool({"search", "--sync", "--onlyvisible", "--name", "^Program$"});
  Click(kFirstOffset);
  EXPECT_EQ(XDoTool({"getwindowfocus"}), message);
  Keys("ctrl+q");
  ExpectEnd();
}

TEST_F(Outside, NothingPersistsButTheSavedFile) {
  const QString home = folder_.filePath("home");
  QDir().mkpath(home);
  environment_.insert("HOME", home);
  for (const char* place : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
    environment_.remove(place);
  }
  Start(PELMORA, {});
  Keys("ctrl+s");
  Focus("^Save As$");
  Keys("ctrl+a");
  XDoTool({"type", "--", home + "/a"});
  Keys("Return");
  AnswerMessage("^Save$");
  Keys("ctrl+s");
  Focus("^Save As$");
  Keys("ctrl+q");  // while the dialog is open
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
  Click(kCWButtonMainOnOff);
  TypeFirstOffset("10");
  Keys("Return");
  Click(kCommandAdd);
  TypeFirstOffset("-20");
  Click(kCommandAdd);
  Keys("alt+v f");
  Click(kCommandFlash);
  AnswerMessage("^Program$");  // "Data Flash Erased"
  AnswerMessage("^Program$");  // "Data Flash Programmed!"
  kill(static_cast<pid_t>(program_.processId()), SIGTERM);
  ExpectEnd();

  const std::string centred = rig::Repeat("80 ", 11) + "00 32 ";
  const Bytes expected =
      rig::Hex("01 08 8A 08 6C 07 02 00 1C 00 02 00 00" + rig::Repeat(" 00", 15 * 4) + " 8A " +
               centred + "6C " + centred + "00 00");
  board.WaitForBytes(expected.size(), std::chrono::seconds(2));
  EXPECT_EQ(board.Received(), expected);
}

}  // namespace
}  // namespace pelmora
