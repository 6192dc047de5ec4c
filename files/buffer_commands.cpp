#include "files/buffer_commands.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include "files/buffer_file.h"

namespace pelmora {
namespace {

constexpr char kSaveTitle[] = "Save";
constexpr char kLoadTitle[] = "Load";

// Descriptions and patterns in turn, for both dialogs.
constexpr char kFilter[] =
    "Data Files (*.dat)|*.dat|Text Files"
    "(*.txt)|*.txt|All Files (*.*)|*.*";

// Writes the file. The reason when that fails; what was written so far stays in the file.
std::optional<QString> Write(const QString& path, std::string_view content) {
  // Non-blocking: a pipe that nobody reads would keep the window waiting for ever.
  const int file = open(QFile::encodeName(path).constData(),
                        O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC, 0666);
  if (file < 0) return qt_error_string(errno);
  std::optional<QString> reason;
  // QFile forgets the reason when a part could still be written, as on a disk that becomes full.
  while (!content.empty() && !reason) {
    const ssize_t written = write(file, content.data(), content.size());
    if (written >= 0) {
      content.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      reason = qt_error_string(errno);
    }
  }
  if (close(file) != 0 && !reason) reason = qt_error_string(errno);
  return reason;
}

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
  if (const std::optional<QString> reason = Write(*path, FormatBufferFile(data_))) {
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
