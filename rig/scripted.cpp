#include "rig/scripted.h"

#include <utility>

namespace rig {
namespace {

QString Message(const QString& title, const QString& text) {
  return title + ": " + text;
}

}  // namespace

void ScriptedMessageBox::Expect(const QString& title, const QString& text,
                                std::function<void()> meanwhile) {
  if (!anything_) expected_.push_back({Message(title, text), std::move(meanwhile)});
}

void ScriptedMessageBox::Show(const QString& text, const QString& title,
                              const platform::MessageOptions&) {
  if (main_loop_.Ending()) return;
  said.append(Message(title, text));
  if (Shown) Shown(text);
  if (anything_) return;
  const QString message = Message(title, text);
  if (expected_.empty()) return complain_("unexpected message: " + message);
  const Expected expected = std::move(expected_.front());
  expected_.pop_front();
  if (message != expected.message) complain_(message + "\ninstead of\n" + expected.message);
  if (expected.meanwhile) expected.meanwhile();
}

std::optional<QString> ScriptedFileDialog::ShowSave(const platform::FileRequest& request) {
  requests.push_back(request);
  return answer;
}

std::optional<QString> ScriptedFileDialog::ShowOpen(const platform::FileRequest& request) {
  requests.push_back(request);
  return answer;
}

void ManualTimer::SetEnabled(bool enabled) {
  enabled_ = enabled;
  if (!enabled) return;
  ++starts_;
  wait_ = interval_;
}

void ManualTimer::Elapse() {
  if (!enabled_) return;
  const int starts = starts_;
  emit Timer();
  if (starts_ == starts) wait_ = interval_;
}

}  // namespace rig
