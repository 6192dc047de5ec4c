// Replacements for message boxes and file dialogs, with answers prepared by a test or a
// measurement, and for the timer, which ticks when it is told to.
#pragma once

#include <QString>
#include <QStringList>
#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "platform/dialogs/file_dialog.h"
#include "platform/system/hi_timer.h"
#include "platform/system/main_loop.h"
#include "platform/system/message_box.h"

namespace rig {

// Called with a description when something happens that was not prepared for.
using Complaint = std::function<void(const QString& problem)>;

// Answers expected messages at once and complains of any other. Like the real one it shows nothing
// once the program is ending.
class ScriptedMessageBox : public platform::MessageBox {
 public:
  ScriptedMessageBox(const platform::MainLoop& main_loop, Complaint complain)
      : main_loop_(main_loop), complain_(std::move(complain)) {}

  // The next message must be this one; `meanwhile` is done while the box is open.
  void Expect(const QString& title, const QString& text, std::function<void()> meanwhile = {});
  // From now on any message will do.
  void ExpectAnything() { anything_ = true; }
  // Messages expected and not yet shown.
  std::size_t Outstanding() const { return expected_.size(); }
  // Called with the text of each message that is shown.
  std::function<void(const QString& text)> Shown;
  // Every message so far, "Program: Data Flash Read!".
  QStringList said;
  void Show(const QString& text, const QString& title,
            const platform::MessageOptions& options = {}) override;

 private:
  struct Expected {
    QString message;
    std::function<void()> meanwhile;
  };
  const platform::MainLoop& main_loop_;
  const Complaint complain_;
  std::deque<Expected> expected_;
  bool anything_ = false;
};

// Gives the prepared answer, which is to cancel unless set, and keeps what was asked.
class ScriptedFileDialog : public platform::FileDialog {
 public:
  std::optional<QString> answer;
  std::vector<platform::FileRequest> requests;

  std::optional<QString> ShowSave(const platform::FileRequest& request) override;
  std::optional<QString> ShowOpen(const platform::FileRequest& request) override;
};

// A timer that ticks only by `Elapse`.
class ManualTimer : public platform::HiTimer {
 public:
  void SetInterval(int milliseconds) override { interval_ = milliseconds; }
  int Interval() const { return interval_; }
  void SetEnabled(bool enabled) override;
  bool Enabled() const override { return enabled_; }

  // The interval has passed: ticks if the timer is enabled.
  void Elapse();
  // The interval of the wait that is running: one that is set meanwhile counts from the next.
  int Wait() const { return wait_; }
  int Starts() const { return starts_; }  // how often the wait was begun anew

 private:
  int interval_ = 0;
  int wait_ = 0;
  int starts_ = 0;
  bool enabled_ = false;
};

}  // namespace rig
