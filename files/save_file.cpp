#include "files/save_file.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QSaveFile>
#include <cerrno>
#include <csignal>

namespace pelmora {
namespace {

using Failure = std::optional<QString>;

constexpr char kUnchanged[] = "\n\nThe earlier file of this name is unchanged.";
constexpr char kDamaged[] =
    "\n\nThe earlier file of this name is damaged: its folder takes no new files, so it had to be "
    "written over.";

constexpr int kPatience = 1000;  // ms, for the reader of a pipe

// A pipe without a reader and a file that grew too long end the program by a signal unless it is
// ignored; ignored, they are errors of the write.
class IgnoredSignal {
 public:
  explicit IgnoredSignal(int signal) : signal_(signal) {
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(signal, &ignore, &former_);
  }
  ~IgnoredSignal() { sigaction(signal_, &former_, nullptr); }
  IgnoredSignal(const IgnoredSignal&) = delete;
  IgnoredSignal& operator=(const IgnoredSignal&) = delete;

 private:
  const int signal_;
  struct sigaction former_ {};
};

// Writes all of it to an open file. 0, or the system's number of the error.
int WriteAll(int file, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = write(file, content.data(), content.size());
    if (written >= 0) {
      content.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      pollfd pipe{file, POLLOUT, 0};
      if (poll(&pipe, 1, kPatience) == 0) return EAGAIN;
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

// Whether the open file is that one.
bool IsFile(int file, const struct stat& other) {
  struct stat status {};
  return fstat(file, &status) == 0 && status.st_dev == other.st_dev &&
         status.st_ino == other.st_ino;
}

Failure WriteInPlace(const QString& path, std::string_view content) {
  // Non-blocking: a pipe that nobody reads would keep the window waiting for ever.
  const int file = open(QFile::encodeName(path).constData(),
                        O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC, 0666);
  if (file < 0) return qt_error_string(errno);
  const int error = WriteAll(file, content);
  const bool closed = close(file) == 0;
  if (error != 0) return qt_error_string(error);
  return closed ? Failure() : qt_error_string(errno);
}

}  // namespace

Failure SaveFile(const QString& path, std::string_view content) {
  const IgnoredSignal pipe(SIGPIPE);
  const IgnoredSignal too_long(SIGXFSZ);
  struct stat earlier {};
  const bool exists = stat(QFile::encodeName(path).constData(), &earlier) == 0;
  if (!exists && errno != ENOENT) return qt_error_string(errno);
  if (exists && !S_ISREG(earlier.st_mode)) return WriteInPlace(path, content);

  QSaveFile file(path);
  file.setDirectWriteFallback(true);
  // The toolkit forgets the reason when a part could still be written, as on a disk that becomes
  // full, and does not tell whether the content has reached the disk.
  int error = 0;
  bool in_place = false;
  if (file.open(QIODevice::WriteOnly)) {
    in_place = IsFile(file.handle(), earlier);
    error = WriteAll(file.handle(), content);
    if (error == 0 && fsync(file.handle()) != 0) error = errno;
    if (error != 0) file.cancelWriting();
    if (file.commit() && error == 0) return std::nullopt;
  }
  const QString reason = error != 0 ? qt_error_string(error) : file.errorString();
  if (!exists) return reason;
  return reason + (in_place ? kDamaged : kUnchanged);
}

}  // namespace pelmora
