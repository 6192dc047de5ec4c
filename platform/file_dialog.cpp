#include "platform/file_dialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QListView>
#include <QPointer>
#include <QStringList>

#include "platform/dialog_parent.h"

namespace platform {
namespace {

bool HasExtension(const QString& name) {
  return QFileInfo(name).fileName().contains('.');
}

// The toolkit reads an entry's patterns from the last brackets and shows what stands before them.
QStringList NameFilters(const QString& filter) {
  const QStringList parts = filter.split('|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    // "*.*" means every file; the toolkit would leave out names without a dot.
    const QString pattern = parts[i + 1] == "*.*" ? QStringLiteral("*") : parts[i + 1];
    filters += parts[i] + " (" + QString(pattern).replace(';', ' ') + ")";
  }
  return filters;
}

class Dialog : public QFileDialog {
 public:
  Dialog(const FileRequest& request, bool save, const QString& folder)
      : QFileDialog(DialogParent()), extension_(request.default_extension) {
    setObjectName("FileDialog");
    setOption(DontUseNativeDialog);
    setOption(DontConfirmOverwrite);
    setOption(HideNameFilterDetails);
    setAcceptMode(save ? AcceptSave : AcceptOpen);
    setFileMode(save ? AnyFile : ExistingFile);
    setNameFilters(NameFilters(request.filter));
    if (!folder.isEmpty()) setDirectory(folder);
    selectFile(request.proposed_name);
  }

  // Completes a name typed without its extension, but for a folder, which is entered.
  void accept() override {
    auto* name_edit = findChild<QLineEdit*>("fileNameEdit");
    if (!name_edit) return QFileDialog::accept();
    const QString typed = name_edit->text();
    if (acceptMode() == AcceptSave && !typed.isEmpty() && !HasExtension(typed) &&
        !QFileInfo(directory(), typed).isDir()) {
      name_edit->setText(typed + extension_);
      // While the list of completions has the focus, a file of the bare name stays selected, and
      // it would be taken instead of what is typed.
      if (auto* list = findChild<QListView*>("listView")) list->clearSelection();
    }
    QFileDialog::accept();
  }

 private:
  QString extension_;
};

}  // namespace

std::optional<QString> ModalFileDialog::ShowSave(const FileRequest& request) {
  return Show(request, true);
}

std::optional<QString> ModalFileDialog::ShowOpen(const FileRequest& request) {
  return Show(request, false);
}

std::optional<QString> ModalFileDialog::Show(const FileRequest& request, bool save) {
  if (events_.Ending()) return std::nullopt;
  const QPointer<Dialog> dialog = new Dialog(request, save, folder_);
  QObject::connect(&events_, &Events::Ended, dialog.data(), &QDialog::reject);
  const bool accepted = dialog->exec() == QDialog::Accepted;
  std::optional<QString> path;
  if (dialog && accepted && !dialog->selectedFiles().isEmpty()) {
    path = dialog->selectedFiles().constFirst();
    folder_ = QFileInfo(*path).absolutePath();
  }
  delete dialog.data();
  return path;
}

}  // namespace platform
