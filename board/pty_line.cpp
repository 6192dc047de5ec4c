#include "board/pty_line.h"

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

namespace simboard {
namespace {

[[noreturn]] void Fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

PtyLine::PtyLine() {
  // A child process that inherited the master would keep the line from hanging up.
  master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (master_ < 0) Fail("No pseudo terminal for the simulated board");
  try {
    std::array<char, 128> path{};
    if (grantpt(master_) != 0 || unlockpt(master_) != 0 ||
        ptsname_r(master_, path.data(), path.size()) != 0) {
      Fail("The simulated board's pseudo terminal cannot be used");
    }
    path_ = path.data();
    slave_ = open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (slave_ < 0) Fail("The simulated board's pseudo terminal cannot be opened");
    termios settings{};
    if (tcgetattr(slave_, &settings) != 0) Fail("The simulated board's line cannot be set up");
    cfmakeraw(&settings);
    if (tcsetattr(slave_, TCSANOW, &settings) != 0)
      Fail("The simulated board's line cannot be set up");
  } catch (...) {
    if (slave_ >= 0) close(slave_);
    close(master_);
    throw;
  }
}

PtyLine::~PtyLine() {
  close(master_);
  close(slave_);
}

bool PtyLine::Read(std::vector<std::uint8_t>& bytes, std::size_t limit) {
  std::array<std::uint8_t, 4096> chunk;
  const ssize_t count = read(master_, chunk.data(), std::min(chunk.size(), limit));
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  bytes.insert(bytes.end(), chunk.begin(), chunk.begin() + count);
  return count > 0;
}

std::size_t PtyLine::Write(std::span<const std::uint8_t> bytes) {
  const ssize_t count = write(master_, bytes.data(), bytes.size());
  return count < 0 ? 0 : static_cast<std::size_t>(count);
}

}  // namespace simboard
