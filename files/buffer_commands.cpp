#include "files/buffer_commands.h"

#include <QFileInfo>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>

#include "core/buffer_file.h"
#include "files/save_file.h"

namespace pelmora {
namespace {

constexpr char kSaveTitle[] = "Save";
constexpr char kLoadTitle[] = "Load";

// Descriptions and patterns in turn, for both dialogs.
constexpr char kFilter[] =
    "Data Files (*.dat)|*.dat|Text Files"
    "(*.txt)|*.txt|All Files (*.*)|*.*";

// The content of a buffer file; null when it can't be read as one.
std::unique_ptr<SequenceTable> Read(const QString& path) {
  // A device or a pipe could keep the window waiting for ever.
  if (!QFileInfo(path).isFile()) return nullptr;
  std::ifstream file(std::filesystem::path(path.toStdU16String()), std::ios::binary);
  return ParseBufferFile(file);
}

}  // namespace

void BufferCommands::SaveBuffer_Click() {
  ++SaveCounter;
  edited_.ResetBreakPoints();
  if (!edited_.BufferToData()) return;
  const std::optional<QString> path = common_dialog_.ShowSave(
      {kFilter, QStringLiteral(".dat"), QStringLiteral("Sequences %1").arg(SaveCounter)});
  if (!path) return;
  if (const std::optional<QString> reason = SaveFile(*path, FormatBufferFile(edited_.Data()))) {
    message_box_.Show(
        QStringLiteral("The sequences could not be saved in %1: %2").arg(*path, *reason),
        kSaveTitle);
    return;
  }
  message_box_.Show(QStringLiteral("Data Saved!"), kSaveTitle);
}

void BufferCommands::LoadBuffer_Click() {
  const History::Change change = edited_.BeginChange("Load Buffer");
  edited_.ClearAll();
  const std::optional<QString> path = common_dialog_.ShowOpen({kFilter, QString(), QString()});
  if (!path) return;
  if (const auto table = Read(*path)) {
    edited_.TakeTable(*table);
    message_box_.Show(QStringLiteral("Data Loaded!"), kLoadTitle);
    return;
  }
  message_box_.Show(QStringLiteral("Format Error! Data Not Loaded!"), kLoadTitle);
  edited_.ClearAll();
}

}  // namespace pelmora
