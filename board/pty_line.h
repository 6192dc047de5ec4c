// The board's end of a pseudo terminal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace simboard {

class PtyLine {
 public:
  // Makes a raw pseudo terminal: nothing is echoed or translated even before the PC configures its
  // side. Throws std::system_error.
  PtyLine();
  // Hangs up: whoever has the other side open reads end of file or EIO.
  ~PtyLine();
  PtyLine(const PtyLine&) = delete;
  PtyLine& operator=(const PtyLine&) = delete;

  const std::string& DevicePath() const { return path_; }
  // For poll(): the line can be read or written.
  int Descriptor() const { return master_; }

  // Appends up to `limit` (above 0) of the bytes that are waiting, none as a rule, without waiting
  // for more. False when the line is broken.
  bool Read(std::vector<std::uint8_t>& bytes, std::size_t limit);
  // Writes as many bytes as the line takes without waiting, and says how many.
  std::size_t Write(std::span<const std::uint8_t> bytes);

 private:
  int master_ = -1;
  // While nobody has the other side open, reading the master fails and poll() returns at once. An
  // open descriptor of our own keeps the line quiet then.
  int slave_ = -1;
  std::string path_;
};

}  // namespace simboard
