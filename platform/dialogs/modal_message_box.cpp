#include "platform/dialogs/modal_message_box.h"

#include <QMessageBox>
#include <QPointer>

#include "platform/dialogs/modal.h"

namespace platform {

void ModalMessageBox::Show(const QString& text, const QString& title) {
  if (events_.Ending()) return;
  // On the heap and watched: the window that owns the box may go away while the box is open.
  const QPointer<QMessageBox> box =
      new QMessageBox(QMessageBox::Information, title, text, QMessageBox::Ok, DialogParent());
  box->setObjectName("MessageBox");
  box->setTextFormat(Qt::PlainText);
  RunModal(*box, events_);
  delete box.data();
}

}  // namespace platform
