#include "platform/controls/entry_keys.h"

#include <QKeyEvent>

namespace platform {
namespace {

bool IsRedoKey(const QKeyEvent& key) {
  return key.key() == Qt::Key_Y && key.modifiers() == Qt::ControlModifier;
}

bool IsUndoOrRedoKey(const QKeyEvent& key) {
  const Qt::KeyboardModifiers without_shift = key.modifiers() & ~Qt::ShiftModifier;
  return IsRedoKey(key) || (key.key() == Qt::Key_Z && without_shift == Qt::ControlModifier);
}

bool IsClipboardKey(const QKeyEvent& key) {
  if (key.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier)) return key.key() == Qt::Key_C;
  return key.modifiers() == Qt::ControlModifier &&
         (key.key() == Qt::Key_C || key.key() == Qt::Key_X || key.key() == Qt::Key_V);
}

}  // namespace

bool TakeEntryKeys(QLineEdit& entry, QEvent& event) {
  if (event.type() != QEvent::ShortcutOverride && event.type() != QEvent::KeyPress) return false;
  const auto& key = static_cast<const QKeyEvent&>(event);
  if (event.type() == QEvent::ShortcutOverride && IsClipboardKey(key)) {
    event.accept();
    return true;
  }
  if (!IsUndoOrRedoKey(key)) return false;
  const bool edited = entry.isModified() || entry.isRedoAvailable();
  if (event.type() == QEvent::ShortcutOverride) {
    event.setAccepted(edited);
    return true;
  }
  if (!edited || !IsRedoKey(key)) return false;
  entry.redo();
  event.accept();
  return true;
}

}  // namespace platform
