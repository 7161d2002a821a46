// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/find/find_words.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "util/fold.h"

namespace tallow {

std::vector<std::string> WordsOf(std::string_view typed) {
  const std::string folded = Folded(typed);
  std::vector<std::string> words;
  for (std::size_t begin = 0; begin < folded.size();) {
    const std::size_t end = std::min(folded.find(' ', begin), folded.size());
    if (end > begin) words.push_back(folded.substr(begin, end - begin));
    begin = end + 1;
  }
  return words;
}

WordMatch MatchOf(std::string_view word, std::string_view folded) noexcept {
  WordMatch best = WordMatch::kNone;
  std::size_t at = 0;
  while (at + word.size() <= folded.size()) {
    const std::size_t starts = folded.size() - word.size() + 1 - at;
    const void* const found = std::memchr(folded.data() + at, word.front(), starts);
    if (found == nullptr) break;
    at = static_cast<std::size_t>(static_cast<const char*>(found) - folded.data());
    if (std::memcmp(folded.data() + at, word.data(), word.size()) == 0) {
      if (IsWordStart(folded, at)) return WordMatch::kAtWordStart;
      best = WordMatch::kInside;
    }
    ++at;
  }
  return best;
}

std::uint64_t BytePairsOf(std::string_view text) noexcept {
  constexpr std::uint32_t kFactor = 0x9E3779B1;
  constexpr unsigned kByteBits = 8;
  constexpr unsigned kShift = 26;  // leaves six bits
  std::uint64_t pairs = 0;
  for (std::size_t k = 1; k < text.size(); ++k) {
    const std::uint32_t pair = static_cast<std::uint32_t>(static_cast<unsigned char>(text[k - 1]))
                                   << kByteBits |
                               static_cast<unsigned char>(text[k]);
    pairs |= std::uint64_t{1} << (pair * kFactor >> kShift);
  }
  return pairs;
}

}  // namespace tallow
