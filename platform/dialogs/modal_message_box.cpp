#include "platform/dialogs/modal_message_box.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QKeyEvent>
#include <QMessageBox>
#include <chrono>
#include <optional>

#include "platform/dialogs/modal.h"

namespace platform {
namespace {

constexpr std::chrono::milliseconds kUnread{500};

// Ignores what is typed from now on until a message can have been read. Chords still count: nobody
// types them into a text.
class TypingPause : public QObject {
 public:
  TypingPause() { qApp->installEventFilter(this); }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
      return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (end_.hasExpired() || key.modifiers().testFlag(Qt::ControlModifier)) return false;
    event->accept();
    return true;
  }

 private:
  const QDeadlineTimer end_{kUnread};
};

}  // namespace

void ModalMessageBox::Show(const QString& text, const QString& title,
                           const MessageOptions& options) {
  if (main_loop_.Ending()) return;
  QWidget* parent = ModalParent(options.parent ? options.parent : parent_.data());
  // On the heap: the window that owns the box may go away while the box is open.
  auto* box = new QMessageBox(QMessageBox::Information, title, text, QMessageBox::Ok, parent);
  box->setObjectName("MessageBox");
  box->setTextFormat(Qt::PlainText);
  box->setAttribute(Qt::WA_DeleteOnClose);
  std::optional<TypingPause> pause;
  if (options.by_itself) pause.emplace();
  RunModal(*box, main_loop_);
}

}  // namespace platform
