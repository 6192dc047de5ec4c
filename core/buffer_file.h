// The text file that keeps all sequences: "Index", sixteen step counts, then for each sequence a
// "Sequence " line and its step lines. See docs/buffer-file.md for the format. Plain C++: the
// dialogs around it are in files/buffer_commands.h.
#pragma once

#include <istream>
#include <memory>
#include <string>

#include "core/declaration.h"

namespace pelmora {

// The whole file for the table's content, every line ended by carriage return and line feed.
std::string FormatBufferFile(const SequenceTable& table);

// The step counts and steps of a buffer file; the figures of the flash are 0. Null on a format
// error or a failing stream. Takes lines that end in carriage return and line feed or in line feed
// alone; reads in bounded memory whatever the stream holds.
[[nodiscard]] std::unique_ptr<SequenceTable> ParseBufferFile(std::istream& file);

}  // namespace pelmora
