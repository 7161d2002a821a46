// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace tallow {

/// Between the file name and the title in a song's own text; in no folded text.
inline constexpr char kBetweenTexts = '\n';
inline constexpr std::size_t kMaxOwnText = std::numeric_limits<std::uint16_t>::max();

/// Makes the own texts of songs, see FindIndex; keeps the memory of one between songs.
class OwnTextMaker {
 public:
  /// The own text of a song, valid until the next call.
  std::string_view Make(std::string_view name, std::string_view title);

 private:
  std::string text_;
  std::string title_;
};

}  // namespace tallow
