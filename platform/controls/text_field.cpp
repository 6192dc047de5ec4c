#include "platform/controls/text_field.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <algorithm>

#include "platform/controls/entry_keys.h"

namespace platform {
namespace {

constexpr int kBackspace = 8;
constexpr int kEnter = 13;

bool IsChord(const QKeyEvent& event) {
  return (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0;
}

// The toolkit inserts the letter of Alt+Z; of chords with Control, and Shift perhaps, it inserts
// none and some are its clipboard shortcuts.
bool IsTypedByToolkit(const QKeyEvent& event) {
  return IsChord(event) &&
         (event.modifiers() & ~(Qt::ControlModifier | Qt::ShiftModifier)) != Qt::NoModifier;
}

// The key types characters; the control characters of Enter, Tab or Ctrl+V are none.
bool IsTyping(const QKeyEvent& event) {
  return std::ranges::any_of(event.text(),
                             [](QChar c) { return c.unicode() >= 32 && c.unicode() != 127; });
}

}  // namespace

TextField::TextField(QWidget* parent) : QLineEdit(parent) {
  setAttribute(Qt::WA_InputMethodEnabled, false);
  setAcceptDrops(false);
}

bool TextField::Discards(int key) const {
  if (KeyPress) KeyPress(key);
  return key == 0;
}

bool TextField::event(QEvent* event) {
  return TakeEntryKeys(*this, *event) || QLineEdit::event(event);
}

void TextField::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isReadOnly() && event->key() == Qt::Key_Space && !IsChord(*event)) {
    if (!event->isAutoRepeat()) emit Click();
    event->accept();
    return;
  }
  bool discarded = false;
  if (enter) {
    discarded = Discards(kEnter);
  } else if (event->key() == Qt::Key_Backspace) {
    discarded = Discards(kBackspace);
  } else if (IsTyping(*event)) {
    if (IsTypedByToolkit(*event)) {
      event->ignore();
      return;
    }
    discarded = !IsChord(*event) && std::ranges::any_of(event->text(), [this](QChar c) {
      return Discards(c.unicode());
    });
  }
  if (discarded) {
    event->accept();
    return;
  }
  QLineEdit::keyPressEvent(event);
  if (enter) selectAll();
}

void TextField::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  const Qt::FocusReason reason = event->reason();
  if (reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason ||
      reason == Qt::ActiveWindowFocusReason) {
    return;
  }
  if (LostFocus) LostFocus();
}

void TextField::mousePressEvent(QMouseEvent* event) {
  QLineEdit::mousePressEvent(event);
  if (event->button() == Qt::LeftButton) emit Click();
}

// The toolkit turns input methods on again by itself, for instance when a field becomes writable.
void TextField::inputMethodEvent(QInputMethodEvent* event) {
  event->ignore();
}

QVariant TextField::inputMethodQuery(Qt::InputMethodQuery query) const {
  if (query == Qt::ImEnabled) return false;
  return QLineEdit::inputMethodQuery(query);
}

}  // namespace platform
