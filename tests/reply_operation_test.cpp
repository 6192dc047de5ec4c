// A wait for a short reply, with and without an end in time, on a link without a window: what
// comes, what does not, and what happens inside it.
#include "link/reply_operation.h"

#include <QObject>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <functional>

#include "flash/erase_flash.h"
#include "tests/flash_fixture.h"

namespace pelmora {
namespace {

using namespace std::chrono_literals;
using Answer = BoardOperation::Answer;

// A board that answers only what a test says, on an open port.
struct Line {
  Line() {
    board.SetFaults({.silent = true});
    QObject::connect(&comm, &platform::MSComm::OnComm, [this] { link.MSComm1_OnComm(); });
    QObject::connect(&comm, &platform::MSComm::PortLost, [this] { port.MSComm1_PortLost(false); });
    QObject::connect(&panel, &DebugPanel::EchoChanged,
                     [this](const QString& text) { echoes.append(text); });
    box.ExpectAnything();
    port.ComboPort_Click(1);
  }

  simboard::SimulatedBoard board{simboard::Pace::kUnpaced};
  rig::FirstPort ports{[this] { return QString::fromStdString(board.DevicePath()); }};
  platform::MSComm comm{ports};
  platform::MainLoop main_loop;
  rig::ScriptedMessageBox box{
      main_loop, [](const QString& problem) { ADD_FAILURE() << problem.toStdString(); }};
  SerialPort port{comm, box};
  DebugPanel panel{comm};
  BoardLink link{comm, port, panel, main_loop, box};
  QStringList echoes;
};

// Keeps the reply.
class Question : public ReplyOperation {
 public:
  Question(BoardLink& link, int event_bytes) : ReplyOperation(link, event_bytes) {}

  bool TakeReply(std::span<const std::uint8_t> received) override {
    reply.assign(received.begin(), received.end());
    return true;
  }

  Bytes reply;
};

// What happens inside the wait: bytes that come, or one of these words. The reply counts when it is
// here in time, looked at or not; a wait without a limit has all the time.
void Do(Line& line, const QString& meanwhile) {
  for (const QString& word : meanwhile.split(' ', Qt::SkipEmptyParts)) {
    if (word == "sleep") {
      QTest::qSleep(60);
    } else if (word == "wait") {
      QTest::qWait(60);
    } else if (word == "abort") {
      line.link.Command1_Click();
    } else if (word == "unplug") {
      line.board.Unplug();
    } else if (word == "erase") {
      QTimer::singleShot(0, [&line] { Arrive(line.board, {255}); });
      EXPECT_EQ(EraseFlash(line.link), Answer::kReceived);
    } else {
      Arrive(line.board, Hex(word.toStdString()));
    }
  }
}

TEST(Reply, ComesInTimeOrTheWaitEndsWithoutIt) {
  constexpr auto kShort = 40ms;
  constexpr auto kLong = 60s;
  const struct {
    const char* meanwhile;
    int event_bytes;
    std::optional<std::chrono::milliseconds> within;
    Answer answer;
    const char* said = "";
  } cases[] = {
      {"07", 1, kLong, Answer::kReceived},
      {"07 08", 2, kLong, Answer::kReceived},
      {"sleep 07", 1, {}, Answer::kReceived},
      {"07 sleep", 1, kShort, Answer::kReceived},
      {"wait 07", 1, kShort, Answer::kReceived},
      {"", 1, kShort, Answer::kTimedOut},
      {"07", 2, kShort, Answer::kTimedOut},
      {"abort", 1, kLong, Answer::kAborted},
      {"unplug", 1, kLong, Answer::kAborted, "Program: The connection on Comm1"},
      {"erase", 1, kShort, Answer::kTimedOut, "Program: Data Flash Erased"},
      {"erase 07", 1, kLong, Answer::kReceived, "Program: Data Flash Erased"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.meanwhile) + " of " + std::to_string(c.event_bytes));
    Line line;
    QTimer hang;  // a wait that would not end
    QObject::connect(&hang, &QTimer::timeout, [&line] { line.link.Command1_Click(); });
    hang.start(10s);
    {
      Question question(line.link, c.event_bytes);
      question.Send(Bytes{99});
      QTimer::singleShot(0, [&] { Do(line, c.meanwhile); });
      const auto begin = std::chrono::steady_clock::now();
      EXPECT_EQ(question.WaitForAck(c.within), c.answer);
      if (c.answer == Answer::kTimedOut) {
        EXPECT_GE(std::chrono::steady_clock::now() - begin, kShort);
        Arrive(line.board, {8});  // too late
      }
      const Bytes whole = c.event_bytes == 1 ? Bytes{7} : Bytes{7, 8};
      EXPECT_EQ(question.reply, c.answer == Answer::kReceived ? whole : Bytes());
    }
    EXPECT_FALSE(line.link.Busy());
    EXPECT_EQ(line.box.said.join("").left(QString(c.said).size()), c.said);
    EXPECT_EQ(line.box.said.size(), *c.said ? 1 : 0);
    EXPECT_EQ(line.echoes, QStringList());
    if (!line.port.Connected()) continue;
    // The line is as before, and what came too late is gone.
    line.board.Send({9, 10});
    EXPECT_TRUE(QTest::qWaitFor([&line] { return line.echoes.size() > 1; }));
    EXPECT_EQ(line.echoes, QStringList({"9", "10"}));
  }
}

}  // namespace
}  // namespace pelmora
