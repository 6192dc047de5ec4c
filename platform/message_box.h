// The modal message box: a text, an information icon, one OK button, a title.
#pragma once

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QString>
#include <vector>

#include "platform/events.h"

namespace platform {

class MessageBox {
 public:
  virtual ~MessageBox() = default;

  // Shows the box and returns when the operator has closed it; events are processed meanwhile.
  virtual void Show(const QString& text, const QString& title) = 0;
};

// The one on the screen. Once the program is ending it shows nothing, and an open one closes.
//
// It is modal by itself: it keeps pointer and keyboard from all other windows. The toolkit's own
// modality would also keep the operator from closing the main window while a box is open.
class ModalMessageBox : public QObject, public MessageBox {
  Q_OBJECT
 public:
  explicit ModalMessageBox(Events& events) : events_(events) {}

  void Show(const QString& text, const QString& title) override;

 protected:
  bool eventFilter(QObject* target, QEvent* event) override;

 private:
  Events& events_;
  std::vector<QPointer<QMessageBox>> open_;  // the innermost last
};

}  // namespace platform
