// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/text_lines.h"

namespace tallow {

std::vector<std::string_view> SplitLines(std::string_view text) {
  const bool own = text.find(kLineEnd) != std::string_view::npos;
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = own ? text.find(kLineEnd) : text.find_first_of(kLineEnd);
    lines.push_back(text.substr(0, end));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + (own ? kLineEnd.size() : 1));
  }
  return lines;
}

}  // namespace tallow
