#include "platform/controls/text_field.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenuBar>
#include <algorithm>
#include <utility>

#include "platform/controls/entry_keys.h"

namespace platform {
namespace {

constexpr int kBackspace = 8;
constexpr int kEnter = 13;
constexpr int kEscape = 27;

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
  setAcceptDrops(false);
  connect(qApp, &QApplication::focusChanged, &focus_watch_,
          [this](const QWidget*, const QWidget* to) { FocusMoved(to); });
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
  } else if (event->key() == Qt::Key_Escape) {
    discarded = Discards(kEscape);
    if (discarded) selectAll();
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

void TextField::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  focus_is_elsewhere_ = false;
  if (event->reason() != Qt::MouseFocusReason) editing_ = true;
}

void TextField::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  const Qt::FocusReason reason = event->reason();
  focus_is_elsewhere_ = reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason ||
                        reason == Qt::ActiveWindowFocusReason;
  if (!focus_is_elsewhere_) Leave();
}

// From a menu or another window the focus may go on to another control without coming back here.
void TextField::FocusMoved(const QWidget* to) {
  if (!focus_is_elsewhere_ || !to || to == this || to->window() != window()) return;
  if (!qobject_cast<const QMenuBar*>(to)) Leave();
}

void TextField::Leave() {
  focus_is_elsewhere_ = false;
  editing_ = false;
  emit LostFocus();
}

void TextField::mousePressEvent(QMouseEvent* event) {
  const bool left = event->button() == Qt::LeftButton;
  click_selects_ = left && !editing_;
  editing_ = true;
  if (click_selects_) {
    selectAll();
  } else {
    QLineEdit::mousePressEvent(event);
  }
  if (left) emit Click();
}

void TextField::mouseMoveEvent(QMouseEvent* event) {
  if (!click_selects_) QLineEdit::mouseMoveEvent(event);
}

void TextField::mouseReleaseEvent(QMouseEvent* event) {
  if (!std::exchange(click_selects_, false)) QLineEdit::mouseReleaseEvent(event);
}

// The toolkit selects a word, without its sign.
void TextField::mouseDoubleClickEvent(QMouseEvent* event) {
  click_selects_ = event->button() == Qt::LeftButton;
  if (click_selects_) selectAll();
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
