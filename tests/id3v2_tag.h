// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace tallow {

/// An ID3v2.4 tag of texts in UTF-8, which precedes the audio of a file.
///
/// \param frames IDs of four characters, such as "TPE1", and texts
inline std::string Id3v2Tag(const std::vector<std::pair<std::string, std::string>>& frames) {
  const auto number = [](std::size_t value) {
    std::string bytes;
    for (const unsigned shift : {21U, 14U, 7U, 0U})
      bytes += static_cast<char>((value >> shift) & 0x7FU);
    return bytes;
  };
  std::string body;
  for (const auto& [id, text] : frames)
    body += id + number(text.size() + 1) + std::string("\0\0\x03", 3) + text;
  return std::string("ID3\x04\0\0", 6) + number(body.size()) + body;
}

}  // namespace tallow
