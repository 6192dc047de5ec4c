#include "platform/controls/text_field.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <algorithm>
#include <utility>

#include "platform/controls/entry_keys.h"

namespace platform {
namespace {

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
  // From a menu or another window the focus may go on to another control without coming back here.
  connect(qApp, &QApplication::focusChanged, &focus_watch_, [this](QWidget*, QWidget* to) {
    if (!focus_is_elsewhere_ || !to || to == this || to->window() != window()) return;
    if (!qobject_cast<QMenuBar*>(to)) Leave();
  });
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
    return;
  }
  const bool escape = event->key() == Qt::Key_Escape;
  bool discarded = false;
  if (enter || escape || event->key() == Qt::Key_Backspace) {
    discarded = Discards(enter ? kEnter : escape ? kEscape : kBackspace);
  } else if (IsTyping(*event)) {
    if (IsTypedByToolkit(*event)) {
      event->ignore();
      return;
    }
    discarded = !IsChord(*event) && std::ranges::any_of(event->text(), [this](QChar c) {
      return Discards(c.unicode());
    });
  }
  if (!discarded) QLineEdit::keyPressEvent(event);
  if (discarded ? escape : enter) selectAll();
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

QVariant TextField::inputMethodQuery(Qt::InputMethodQuery query) const {
  return query == Qt::ImEnabled ? QVariant(false) : QLineEdit::inputMethodQuery(query);
}

}  // namespace platform
