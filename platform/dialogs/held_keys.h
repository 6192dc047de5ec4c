// Keys that are held down.
#pragma once

#include <QObject>

namespace platform {

// Makes a dialog deaf to repetitions of a held key: the one that opened it would press its default
// button.
class IgnoreHeldKeys : public QObject {
  Q_OBJECT
 public:
  // Belongs to the dialog from now on.
  explicit IgnoreHeldKeys(QObject* dialog);

 protected:
  bool eventFilter(QObject* target, QEvent* event) override;
};

}  // namespace platform
