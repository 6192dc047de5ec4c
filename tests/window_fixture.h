// The real window on the off-screen platform, with the simulated board on "Comm1" over a pseudo
// terminal, and everything that a test replaces: message boxes, file dialogs and the timer.
#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <QStringList>
#include <QTimer>
#include <deque>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>

#include "board/simulated_board.h"
#include "core/declaration.h"
#include "demo/operator.h"
#include "platform/events.h"
#include "platform/file_dialog.h"
#include "platform/hi_timer.h"
#include "platform/message_box.h"
#include "platform/port_directory.h"
#include "ui/form1.h"

namespace pelmora {

using Bytes = std::vector<std::uint8_t>;

// A text with decimal points as the operator's locale writes it.
QString Local(QString text);

// A message as "title: text".
QString Message(const QString& title, const QString& text);

// Answers expected messages at once; one that is not expected fails the test.
class ScriptedMessageBox : public platform::MessageBox {
 public:
  explicit ScriptedMessageBox(const platform::Events& events) : events_(events) {}

  // The next message must be this one; `meanwhile` is done while the box is open.
  void Expect(const QString& title, const QString& text, std::function<void()> meanwhile = {});
  // Messages expected and not yet shown.
  std::size_t Outstanding() const { return expected_.size(); }
  void Show(const QString& text, const QString& title) override;

 private:
  struct Expected {
    QString message;
    std::function<void()> meanwhile;
  };
  const platform::Events& events_;
  std::deque<Expected> expected_;
};

// Gives the prepared answer and keeps what was asked.
class ScriptedFileDialog : public platform::FileDialog {
 public:
  std::optional<QString> answer;
  std::vector<platform::FileRequest> requests;

  std::optional<QString> ShowSave(const platform::FileRequest& request) override;
  std::optional<QString> ShowOpen(const platform::FileRequest& request) override;
};

// A timer that ticks when the test says so.
class ManualTimer : public platform::HiTimer {
 public:
  void SetInterval(int milliseconds) override { interval_ = milliseconds; }
  int Interval() const override { return interval_; }
  void SetEnabled(bool enabled) override;
  bool Enabled() const override { return enabled_; }

  // The interval has passed: ticks if the timer is enabled.
  void Elapse();
  int Starts() const { return starts_; }  // how often the wait was begun anew

 private:
  int interval_ = 0;
  int starts_ = 0;
  bool enabled_ = false;
};

class BoardPorts : public platform::PortDirectory {
 public:
  explicit BoardPorts(const simboard::SimulatedBoard& board) : board_(board) {}
  QString DeviceFor(int number) const override;

 private:
  const simboard::SimulatedBoard& board_;
};

// What a test works with: all of it made anew for each test.
class WindowTest : public testing::Test {
 protected:
  explicit WindowTest(simboard::Pace pace = simboard::Pace::kUnpaced);
  ~WindowTest() override;

  // Chooses "Comm1". Call once; nothing is sent by it.
  void Connect();

  // All bytes that the board received since the last call, once `count` have come and the line has
  // been quiet for a moment.
  Bytes Sent(std::size_t count);

  // The exact bytes on the line since the last look.
  void ExpectSent(const Bytes& bytes);

  void ExpectMessage(const QString& text, std::function<void()> meanwhile = {}) {
    box.Expect("Program", text, std::move(meanwhile));
  }

  // The message that the board's port, open now, has been lost.
  void ExpectLoss(std::function<void()> meanwhile = {});

  // Adds a step with channel `channel` at `position`, the others as they stand.
  void AddStep(int channel, int position, int duration_ms);

  const Declaration& Data() const { return form->Data(); }
  QStringList Lines() const { return hands->ReadLines("ListSequence"); }
  // The first angle field of each line: enough to tell steps apart.
  QStringList FirstAngles() const;
  int Selected() const;
  void Select(int line);
  bool Enabled(const QString& control) const;

  simboard::SimulatedBoard board;
  platform::Events events;
  ScriptedMessageBox box;
  ScriptedFileDialog files;
  ManualTimer timer;
  BoardPorts ports;
  std::unique_ptr<Form1> form;
  std::unique_ptr<demo::Operator> hands;

 private:
  QTimer watchdog_;
};

}  // namespace pelmora
