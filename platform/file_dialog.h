// The Open / Save file dialog.
#pragma once

#include <QString>
#include <optional>

#include "platform/events.h"

namespace platform {

struct FileRequest {
  // Descriptions and patterns in turn, separated by bars: "Data Files (*.dat)|*.dat|...". The
  // first entry is the selected one.
  QString filter;
  // Appended to a name to be written that was typed without an extension (".dat").
  QString default_extension;
  QString proposed_name;
};

class FileDialog {
 public:
  virtual ~FileDialog() = default;

  // Asks for a file to write (no question before an existing one is replaced) or to read. The full
  // path, or nothing when the operator cancels.
  virtual std::optional<QString> ShowSave(const FileRequest& request) = 0;
  virtual std::optional<QString> ShowOpen(const FileRequest& request) = 0;
};

// The one on the screen. It opens in the folder used last in this run. Once the program is ending
// it shows nothing, and an open one closes as cancelled.
class ModalFileDialog : public FileDialog {
 public:
  explicit ModalFileDialog(Events& events) : events_(events) {}

  std::optional<QString> ShowSave(const FileRequest& request) override;
  std::optional<QString> ShowOpen(const FileRequest& request) override;

 private:
  std::optional<QString> Show(const FileRequest& request, bool save);

  Events& events_;
  QString folder_;
};

}  // namespace platform
