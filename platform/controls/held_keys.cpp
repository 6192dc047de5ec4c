#include "platform/controls/held_keys.h"

#include <QCoreApplication>
#include <QWidget>
#include <QWindow>

namespace platform {
namespace {

// A key reaches the window first, then the control in it.
const QObject* WindowOf(const QObject* target) {
  if (const auto* widget = qobject_cast<const QWidget*>(target)) {
    return widget->window()->windowHandle();
  }
  return qobject_cast<const QWindow*>(target);
}

}  // namespace

HeldKeys::HeldKeys() {
  QCoreApplication::instance()->installEventFilter(this);
}

bool HeldKeys::eventFilter(QObject* target, QEvent* event) {
  const bool press = event->type() == QEvent::KeyPress;
  const bool release = event->type() == QEvent::KeyRelease;
  const bool shortcut = event->type() == QEvent::ShortcutOverride;  // asked before the press
  if (!press && !release && !shortcut) return false;
  auto& key = static_cast<QKeyEvent&>(*event);
  if (release && !key.isAutoRepeat()) {
    released_ = key.key();
    release_time_ = key.timestamp();
  }
  if (release) return false;
  const QObject* window = WindowOf(target);
  if (window == nullptr) return false;
  const bool same_time = key.timestamp() != 0 && key.timestamp() == release_time_;
  if (!key.isAutoRepeat() && !(same_time && key.key() == released_)) {
    window_ = window;
    return false;
  }
  if (window != window_ || (shortcut && !key.isAutoRepeat())) {
    event->accept();  // of a shortcut this says that it isn't one
    return true;
  }
  if (key.isAutoRepeat()) return false;
  QKeyEvent repetition(QEvent::KeyPress, key.key(), key.modifiers(), key.nativeScanCode(),
                       key.nativeVirtualKey(), key.nativeModifiers(), key.text(), true,
                       static_cast<quint16>(key.count()), key.device());
  repetition.setTimestamp(key.timestamp());
  QCoreApplication::sendEvent(target, &repetition);
  event->setAccepted(repetition.isAccepted());
  return true;
}

}  // namespace platform
