// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

/// How well a word matches a text, or all words a song.
enum class WordMatch : unsigned char { kNone, kInside, kAtWordStart };

/// The words of a typed text, folded; a word ends at a blank.
std::vector<std::string> WordsOf(std::string_view typed);

/// How well a word matches a folded text.
/// \param word not empty
WordMatch MatchOf(std::string_view word, std::string_view folded) noexcept;

/// The set of the pairs of adjacent bytes of a text, one of 64 bits for each pair. A text can
/// contain a word only if its set contains the word's. Empty for a single byte.
std::uint64_t BytePairsOf(std::string_view text) noexcept;

}  // namespace tallow
