// A wait for a short reply, with and without an end in time, on a link without a window: what
// comes, what does not, and what happens inside it.
#include "link/reply_operation.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <QObject>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <functional>

#include "board/simulated_board.h"
#include "flash/erase_flash.h"
#include "rig/bytes.h"
#include "rig/first_port.h"
#include "rig/scripted.h"

namespace pelmora {
namespace {

constexpr char kErasedText[] = "Data Flash Erased";

using namespace std::chrono_literals;
using rig::Bytes;
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

  // Sends bytes and returns when they are here, without looking at events.
  void Arrive(const Bytes& bytes) {
    const int device = open(board.DevicePath().c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK);
    pollfd line{device, POLLIN, 0};
    board.Send(bytes);
    EXPECT_EQ(poll(&line, 1, 5000), 1);
    close(device);
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
  EraseFlash erase{link};
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

TEST(Reply, ComesInTimeOrTheWaitEndsWithoutIt) {
  constexpr auto kShort = 40ms;
  constexpr auto kLong = 60s;
  const auto erased = [](Line& line) {
    QTimer::singleShot(0, [&line] { line.Arrive({255}); });
    EXPECT_EQ(line.erase.Erase(), Answer::kReceived);
  };
  const struct {
    const char* name;
    int event_bytes;
    std::optional<std::chrono::milliseconds> within;
    std::function<void(Line& line)> meanwhile;  // inside the wait
    Answer answer;
    Bytes reply;
    const char* said = nullptr;
  } cases[] = {
      {"in time", 1, kLong, [](Line& line) { line.Arrive({7}); }, Answer::kReceived, {7}},
      {"of two bytes",
       2,
       kLong,
       [](Line& line) {
         line.Arrive({7, 8});
       },
       Answer::kReceived,
       {7, 8}},
      {"without a limit",
       1,
       {},
       [=](Line& line) {
         QTest::qSleep(60);
         line.Arrive({7});
       },
       Answer::kReceived,
       {7}},
      {"here in time, but not looked at",
       1,
       kShort,
       [=](Line& line) {
         line.Arrive({7});
         QTest::qSleep(60);
       },
       Answer::kReceived,
       {7}},
      {"here when the wait goes on",
       1,
       kShort,
       [=](Line& line) {
         QTest::qWait(60);
         line.Arrive({7});
       },
       Answer::kReceived,
       {7}},
      {"none", 1, kShort, [](Line&) {}, Answer::kTimedOut, {}},
      {"half of it", 2, kShort, [](Line& line) { line.Arrive({7}); }, Answer::kTimedOut, {}},
      {"aborted", 1, kLong, [](Line& line) { line.link.Command1_Click(); }, Answer::kAborted, {}},
      {"adapter pulled",
       1,
       kLong,
       [](Line& line) { line.board.Unplug(); },
       Answer::kAborted,
       {},
       "The connection on Comm1"},
      {"an erase inside", 1, kShort, erased, Answer::kTimedOut, {}, kErasedText},
      {"an erase inside, then in time",
       1,
       kLong,
       [=](Line& line) {
         erased(line);
         line.Arrive({7});
       },
       Answer::kReceived,
       {7},
       kErasedText},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Line line;
    QTimer hang;  // a wait that would not end
    QObject::connect(&hang, &QTimer::timeout, [&line] { line.link.Command1_Click(); });
    hang.start(10s);
    {
      Question question(line.link, c.event_bytes);
      question.Send(Bytes{99});
      QTimer::singleShot(0, [&] { c.meanwhile(line); });
      const auto begin = std::chrono::steady_clock::now();
      EXPECT_EQ(question.WaitForAck(c.within), c.answer);
      if (c.answer == Answer::kTimedOut) {
        EXPECT_GE(std::chrono::steady_clock::now() - begin, kShort);
        line.Arrive({8});  // too late
      }
      EXPECT_EQ(question.reply, c.reply);
    }
    EXPECT_FALSE(line.link.Busy());
    EXPECT_EQ(line.box.said.size(), c.said ? 1 : 0);
    EXPECT_TRUE(line.box.said.join("").contains(c.said));
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
