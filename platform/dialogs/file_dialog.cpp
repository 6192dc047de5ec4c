#include "platform/dialogs/file_dialog.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMimeDatabase>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QShortcut>
#include <QStringList>
#include <QTreeView>
#include <algorithm>

#include "platform/dialogs/modal.h"
#include "platform/look/colours.h"

namespace platform {
namespace {

constexpr QLatin1String kAnyName("*.*");
constexpr int kLongestName = 300;  // pixels, of a file's name in a line of text

// An entry of the list of file types: what is shown, and its patterns.
struct Entry {
  QString description;
  QStringList patterns;
};

std::vector<Entry> Entries(const QString& filter) {
  const QStringList parts = filter.split('|');
  std::vector<Entry> types;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    types.push_back({parts[i], parts[i + 1].split(';')});
  }
  return types;
}

// Tells a file's type by its name. The toolkit reads the beginning of every file that it lists,
// which keeps the window waiting in a folder of many files or on a slow disk.
class TypesByName : public QFileIconProvider {
 public:
  using QFileIconProvider::icon;
  QIcon icon(const QFileInfo& info) const override {
    return info.isFile() ? icon(File) : QFileIconProvider::icon(info);
  }
  QString type(const QFileInfo& info) const override {
    if (!info.isFile()) return QFileIconProvider::type(info);
    const QMimeType type = QMimeDatabase().mimeTypeForFile(info, QMimeDatabase::MatchExtension);
    return type.isDefault() ? QStringLiteral("File") : type.comment();
  }
};

// The toolkit's dialog, which finds the file that is meant by itself: the toolkit takes a name with
// quotation marks for several names, and asks about names that do not exist.
class Dialog : public QFileDialog {
 public:
  // `types` outlives the dialog.
  Dialog(const FileRequest& request, bool save, const QString& folder,
         QAbstractFileIconProvider& types, QWidget* parent)
      : QFileDialog(parent),
        types_(Entries(request.filter)),
        extension_(request.default_extension) {
    setObjectName("FileDialog");
    setOption(DontUseNativeDialog);
    setIconProvider(&types);
    setOption(HideNameFilterDetails);
    setAcceptMode(save ? AcceptSave : AcceptOpen);
    setFileMode(AnyFile);
    QStringList filters;
    for (const Entry& type : types_) {
      // The toolkit reads an entry's patterns from the last brackets and shows what stands before
      // them. By "*.*" it would leave out names without a dot.
      filters += type.description + " (" + type.patterns.join(' ').replace(kAnyName, "*") + ")";
    }
    setNameFilters(filters);
    if (!folder.isEmpty()) setDirectory(folder);
    selectFile(request.proposed_name);
    ShowDatesInFull();
    ForbidDeleting();
    // The toolkit would refuse a name in a folder that does not exist without a word.
    connect(&Name(), &QLineEdit::textChanged, this, [this](const QString& typed) {
      const auto accept =
          acceptMode() == AcceptSave ? QDialogButtonBox::Save : QDialogButtonBox::Open;
      findChild<QDialogButtonBox*>()->button(accept)->setEnabled(!typed.isEmpty());
    });
    if (save) AddReplacedLine();
  }

  // Full path of the file that was chosen.
  const QString& Path() const { return path_; }

  void accept() override {
    if (Name().text().isEmpty()) return;
    const QString path = TypedPath();
    if (QFileInfo(path).isDir()) {
      setDirectory(path);
      Name().clear();
      return;
    }
    path_ = acceptMode() == AcceptSave ? Completed(path) : path;
    done(Accepted);
  }

 private:
  QLineEdit& Name() const { return *findChild<QLineEdit*>("fileNameEdit"); }

  QString TypedPath() const {
    QString typed = Name().text();
    if (typed == "~" || typed.startsWith("~/")) typed.replace(0, 1, QDir::homePath());
    return QDir::cleanPath(directory().absoluteFilePath(typed));
  }

  // A line below the dialog's own that names the file which saving would replace.
  void AddReplacedLine() {
    replaced_ = new QLabel(this);
    replaced_->setObjectName("LabelReplaced");
    replaced_->setTextFormat(Qt::PlainText);
    QPalette colours = replaced_->palette();
    colours.setColor(QPalette::WindowText, kWarningColour);
    replaced_->setPalette(colours);
    auto& grid = *qobject_cast<QGridLayout*>(layout());
    grid.addWidget(replaced_, grid.rowCount(), 1, 1, grid.columnCount() - 1);
    connect(this, &QFileDialog::directoryEntered, this, &Dialog::ShowReplaced);
    connect(&Name(), &QLineEdit::textChanged, this, &Dialog::ShowReplaced);
    ShowReplaced();
  }

  void ShowReplaced() {
    const QFileInfo file(Completed(TypedPath()));
    QString line;
    if (!Name().text().isEmpty() && file.isFile()) {
      const QString name = fontMetrics().elidedText(file.fileName(), Qt::ElideMiddle, kLongestName);
      line =
          QStringLiteral("Replaces %1 of %2")
              .arg(name, QLocale(QLocale::English)
                             .toString(file.lastModified(), QStringLiteral("d MMM yyyy, HH:mm")));
    }
    replaced_->setText(line);
    Name().setAccessibleDescription(line);
  }

  // The toolkit's columns cut dates off and leave names what remains of a fixed width.
  void ShowDatesInFull() {
    auto* files = findChild<QTreeView*>("treeView");
    if (!files) return;  // the name is the toolkit's own affair
    files->header()->setStretchLastSection(false);
    files->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    files->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  }

  // The toolkit deletes a folder, with everything in it and for good, by a key and one question.
  void ForbidDeleting() {
    for (auto* shortcut : findChildren<QShortcut*>()) {
      if (shortcut->key() == QKeySequence(Qt::Key_Delete)) shortcut->setEnabled(false);
    }
    if (auto* item = findChild<QAction*>("qt_delete_action")) item->setVisible(false);
  }

  // The path with the default extension, unless its name has one: one of the file types that are
  // offered, or any when all files are shown.
  QString Completed(const QString& path) const {
    const QString name = QFileInfo(path).fileName();
    for (const Entry& type : types_) {
      for (const QString& pattern : type.patterns) {
        const QString extension = QString(pattern).remove('*');
        const bool has_it = pattern == kAnyName
                                ? name.contains('.') && selectedNameFilter() == type.description
                                : name.endsWith(extension, Qt::CaseInsensitive);
        if (has_it) return path;
      }
    }
    return path + extension_;
  }

  const std::vector<Entry> types_;
  const QString extension_;
  QString path_;
  QLabel* replaced_ = nullptr;
};

}  // namespace

ModalFileDialog::ModalFileDialog(MainLoop& main_loop)
    : main_loop_(main_loop), types_(std::make_unique<TypesByName>()) {
  // The toolkit's dialog keeps the folders of earlier runs in a settings file. Here it keeps none:
  // there can be no file below this one.
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

std::optional<QString> ModalFileDialog::Show(const FileRequest& request, bool save) {
  if (main_loop_.Ending()) return std::nullopt;
  const QPointer<Dialog> dialog = new Dialog(request, save, folder_, *types_, ModalParent(parent_));
  std::optional<QString> path;
  if (RunModal(*dialog, main_loop_)) {
    path = dialog->Path();
    folder_ = QFileInfo(*path).absolutePath();
  }
  delete dialog.data();
  return path;
}

}  // namespace platform
