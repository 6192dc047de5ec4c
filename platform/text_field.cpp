#include "platform/text_field.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <algorithm>

#include "platform/undo_keys.h"

namespace platform {
namespace {

constexpr int kBackspace = 8;
constexpr int kEnter = 13;

bool IsChord(const QKeyEvent& event) {
  // Control and Alt together are how some systems report AltGr, which types characters.
  const auto chord = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  return chord != 0 && chord != (Qt::ControlModifier | Qt::AltModifier);
}

bool IsControl(QChar c) {
  return c.unicode() < 32 || c.unicode() == 127;
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
  return TakeUndoKeys(*this, *event) || QLineEdit::event(event);
}

void TextField::keyPressEvent(QKeyEvent* event) {
  bool discarded = false;
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    discarded = Discards(kEnter);
  } else if (event->key() == Qt::Key_Backspace) {
    discarded = Discards(kBackspace);
  } else if (const QString typed = event->text();
             !IsChord(*event) && !typed.isEmpty() && !std::ranges::any_of(typed, IsControl)) {
    discarded = std::ranges::any_of(typed, [this](QChar c) { return Discards(c.unicode()); });
  }
  if (discarded) {
    event->accept();
    return;
  }
  QLineEdit::keyPressEvent(event);
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
