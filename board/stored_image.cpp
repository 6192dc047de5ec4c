#include "board/stored_image.h"

#include <algorithm>

namespace simboard {

std::size_t StoredImage::Word(std::size_t offset) const {
  return static_cast<std::size_t>(header[offset] << 8 | header[offset + 1]);
}

std::size_t StoredImage::AnnouncedBytes() const {
  return Word(0);
}

std::size_t StoredImage::Steps(std::size_t sequence) const {
  const std::size_t count = Word(2 + 4 * sequence);
  const std::size_t offset = Word(4 + 4 * sequence);
  if (offset >= data.size()) return 0;
  return std::min(count, (data.size() - offset) / kStepSize);
}

std::span<const std::uint8_t, StoredImage::kStepSize> StoredImage::Step(std::size_t sequence,
                                                                        std::size_t step) const {
  const std::size_t first = Word(4 + 4 * sequence) + step * kStepSize;
  return std::span<const std::uint8_t, kStepSize>(data.data() + first, kStepSize);
}

std::vector<std::uint8_t> StoredImage::ReadOut() const {
  std::vector<std::uint8_t> bytes(header.begin(), header.end());
  bytes.insert(bytes.end(), data.begin(),
               data.begin() + static_cast<std::ptrdiff_t>(std::min(data.size(), AnnouncedBytes())));
  bytes.resize(kHeaderSize + AnnouncedBytes());
  return bytes;
}

}  // namespace simboard
