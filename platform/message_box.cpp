#include "platform/message_box.h"

#include <QApplication>
#include <QMessageBox>

#include "platform/dialog_parent.h"

namespace platform {

void ModalMessageBox::Show(const QString& text, const QString& title) {
  if (events_.Ending()) return;
  // On the heap and watched: the window that owns the box may go away while the box is open.
  const QPointer<QMessageBox> box =
      new QMessageBox(QMessageBox::Information, title, text, QMessageBox::Ok, DialogParent());
  box->setObjectName("MessageBox");
  box->setTextFormat(Qt::PlainText);
  QObject::connect(&events_, &Events::Ended, box.data(), &QDialog::reject);
  box->exec();
  delete box.data();
}

}  // namespace platform
