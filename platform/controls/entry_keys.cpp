#include "platform/controls/entry_keys.h"

#include <QKeyEvent>
#include <algorithm>

namespace platform {
namespace {

constexpr QKeyCombination kRedo = Qt::CTRL | Qt::Key_Y;
constexpr QKeyCombination kUndoAndRedo[] = {Qt::CTRL | Qt::Key_Z, Qt::CTRL | Qt::SHIFT | Qt::Key_Z,
                                            kRedo};
constexpr QKeyCombination kClipboard[] = {Qt::CTRL | Qt::Key_C, Qt::CTRL | Qt::Key_X,
                                          Qt::CTRL | Qt::Key_V, Qt::CTRL | Qt::SHIFT | Qt::Key_C};

}  // namespace

bool TakeEntryKeys(QLineEdit& entry, QEvent& event) {
  const bool asked = event.type() == QEvent::ShortcutOverride;  // whose the chord is
  if (!asked && event.type() != QEvent::KeyPress) return false;
  const QKeyCombination chord = static_cast<const QKeyEvent&>(event).keyCombination();
  const bool edited = entry.isModified() || entry.isRedoAvailable();
  const bool clipboard = std::ranges::count(kClipboard, chord) > 0;
  if (asked && (clipboard || std::ranges::count(kUndoAndRedo, chord) > 0)) {
    event.setAccepted(clipboard || edited);
    return true;
  }
  if (asked || chord != kRedo || !edited) return false;
  entry.redo();
  event.accept();
  return true;
}

}  // namespace platform
