// The tab-separated fields of a line.
#pragma once

#include <string_view>

namespace pelmora {

// Takes the next field, and the tab that ends it, off `rest`. Past the last field there are empty
// ones, which read as no number.
inline std::string_view TakeField(std::string_view& rest) {
  const std::size_t tab = rest.find('\t');
  const std::string_view field = rest.substr(0, tab);
  rest.remove_prefix(tab == std::string_view::npos ? rest.size() : tab + 1);
  return field;
}

}  // namespace pelmora
