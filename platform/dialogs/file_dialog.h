// The Open / Save file dialog.
#pragma once

#include <QAbstractFileIconProvider>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <memory>
#include <optional>

#include "platform/system/main_loop.h"

namespace platform {

struct FileRequest {
  // Descriptions and patterns in turn, separated by bars: "Data Files (*.dat)|*.dat|...". The
  // first entry is the selected one.
  QString filter;
  // Appended to a name to be written that was typed without one of the filter's extensions
  // (".dat"); while the entry for all files is selected, whatever follows a dot is an extension.
  QString default_extension;
  QString proposed_name;
};

class FileDialog {
 public:
  virtual ~FileDialog() = default;

  // Asks for a file to write (no question before an existing one is replaced) or to read (which may
  // turn out not to exist). The full path, or nothing when the operator cancels.
  virtual std::optional<QString> ShowSave(const FileRequest& request) = 0;
  virtual std::optional<QString> ShowOpen(const FileRequest& request) = 0;
};

// The one on the screen. It deletes nothing. A line in it names the file that saving would replace.
// It opens in the folder used last in this run and remembers nothing beyond it. Once the program is
// ending it shows nothing, and an open one closes as cancelled.
class ModalFileDialog : public FileDialog {
 public:
  explicit ModalFileDialog(MainLoop& main_loop);

  // The main window, once there is one.
  void SetParent(QWidget* parent) { parent_ = parent; }

  std::optional<QString> ShowSave(const FileRequest& request) override {
    return Show(request, true);
  }
  std::optional<QString> ShowOpen(const FileRequest& request) override {
    return Show(request, false);
  }

 private:
  std::optional<QString> Show(const FileRequest& request, bool save);

  MainLoop& main_loop_;
  const std::unique_ptr<QAbstractFileIconProvider> types_;  // of the files that are listed
  QPointer<QWidget> parent_;
  QString folder_;
};

}  // namespace platform
