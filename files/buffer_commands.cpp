#include "files/buffer_commands.h"

#include <QFileInfo>
#include <filesystem>
#include <fstream>
#include <optional>

#include "files/buffer_file.h"
#include "files/save_file.h"

namespace pelmora {
namespace {

constexpr char kSaveTitle[] = "Save";
constexpr char kLoadTitle[] = "Load";

// Descriptions and patterns in turn, for both dialogs.
constexpr char kFilter[] =
    "Data Files (*.dat)|*.dat|Text Files"
    "(*.txt)|*.txt|All Files (*.*)|*.*";

}  // namespace

BufferCommands::BufferCommands(Declaration& data, SequenceData& sequence_data, StepList& step_list,
                               platform::ListBox& list_sequence, QLabel& label_seq,
                               platform::FileDialog& common_dialog,
                               platform::MessageBox& message_box)
    : data_(data),
      sequence_data_(sequence_data),
      step_list_(step_list),
      list_sequence_(list_sequence),
      label_seq_(label_seq),
      common_dialog_(common_dialog),
      message_box_(message_box) {}

void BufferCommands::SaveBuffer_Click() {
  ++data_.SaveCounter;
  sequence_data_.ResetBreakPoints();
  if (!sequence_data_.BufferToData()) return;
  const std::optional<QString> path = common_dialog_.ShowSave(
      {kFilter, QStringLiteral(".dat"), QStringLiteral("Sequences %1").arg(data_.SaveCounter)});
  if (!path) return;
  if (const std::optional<QString> reason = SaveFile(*path, FormatBufferFile(data_))) {
    message_box_.Show(
        QStringLiteral("The sequences could not be saved in %1: %2").arg(*path, *reason),
        kSaveTitle);
    return;
  }
  message_box_.Show(QStringLiteral("Data Saved!"), kSaveTitle);
}

void BufferCommands::LoadBuffer_Click() {
  sequence_data_.ResetBreakPoints();
  step_list_.CommandClearAll_Click();
  const std::optional<QString> path = common_dialog_.ShowOpen({kFilter, QString(), QString()});
  if (!path) return;
  list_sequence_.Clear();
  if (!Load(*path)) {
    message_box_.Show(QStringLiteral("Format Error! Data Not Loaded!"), kLoadTitle);
    step_list_.CommandClearAll_Click();
    return;
  }
  data_.CurSeq = 0;
  sequence_data_.OffsetCalc();
  sequence_data_.DataToBuffer();
  label_seq_.setText(SequenceCaption(0));
  message_box_.Show(QStringLiteral("Data Loaded!"), kLoadTitle);
}

bool BufferCommands::Load(const QString& path) {
  // A device or a pipe could keep the window waiting for ever.
  if (!QFileInfo(path).isFile()) return false;
  std::ifstream file(std::filesystem::path(path.toStdU16String()), std::ios::binary);
  return file && ParseBufferFile(file, data_);
}

}  // namespace pelmora
