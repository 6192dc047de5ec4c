// Writing a file so that a failed save costs the operator nothing.
#pragma once

#include <QString>
#include <optional>
#include <string_view>

namespace pelmora {

// Replaces the file at `path`, or makes it. The new content is complete on the disk, in a file of
// its own beside the old one, before it takes the old one's place. Permissions are kept, and a
// symbolic link stays one: its target is replaced. Written in place are what is no plain file (a
// device, a pipe, for whose reader it waits a second at the most) and a file in a folder that takes
// no new one.
//
// When that fails, returns the reason in the operator's words and what has become of an earlier
// file; nothing is left behind.
[[nodiscard]] std::optional<QString> SaveFile(const QString& path, std::string_view content);

}  // namespace pelmora
