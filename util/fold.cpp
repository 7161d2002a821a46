// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/fold.h"

#include <algorithm>
#include <array>
#include <utf8proc.h>
#include <utility>

#include "util/text.h"

namespace tallow {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr auto kOptions = static_cast<utf8proc_option_t>(
    UTF8PROC_STABLE | UTF8PROC_DECOMPOSE | UTF8PROC_COMPAT | UTF8PROC_CASEFOLD | UTF8PROC_IGNORE);
/// No character decomposes into more.
constexpr std::size_t kMaxDecomposed = 18;

/// A byte of ASCII, folded.
constexpr char FoldAscii(char c) noexcept {
  const auto byte = static_cast<unsigned char>(c);
  if (c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
  if (c == '`') return '\'';
  return byte < 0x20 || byte == 0x7F ? ' ' : c;
}

/// FoldAscii of each byte, which takes less time.
constexpr auto kFoldedAscii = [] {
  std::array<char, 0x80> folded{};
  for (std::size_t k = 0; k < folded.size(); ++k) folded[k] = FoldAscii(static_cast<char>(k));
  return folded;
}();

/// The texts of decomposed characters that keyboards lack; empty for other characters.
std::string_view Plain(char32_t c) noexcept {
  switch (c) {
    case U'æ':
      return "ae";
    case U'œ':
      return "oe";
    case U'ø':
      return "o";
    case U'đ':
    case U'ð':
      return "d";
    case U'ħ':
      return "h";
    case U'ı':
      return "i";
    case U'ł':
      return "l";
    case U'ŧ':
      return "t";
    case U'þ':
      return "th";
    case U'`':
    case U'\u00B4':
    case U'\u02BB':
    case U'\u02BC':
    case U'\u2018':
    case U'\u2019':
    case U'\u201B':
    case U'\u2032':
      return "'";
    case U'\u201C':
    case U'\u201D':
    case U'\u201E':
      return "\"";
    case U'\u2010':
    case U'\u2011':
    case U'\u2012':
    case U'\u2013':
    case U'\u2014':
    case U'\u2015':
    case U'\u2212':
      return "-";
    default:
      return {};
  }
}

/// Marks that are dropped, as ranges in ascending order: accents of Latin, Greek and Cyrillic
/// letters, and the vowel points of Hebrew and Arabic, which are rarely typed. In other scripts,
/// marks are vowels or make other letters, so that texts without them are different words.
constexpr std::array<std::pair<char32_t, char32_t>, 18> kDroppedMarks = {{
    {U'\u0300', U'\u036F'},
    {U'\u0483', U'\u0489'},
    {U'\u0591', U'\u05BD'},
    {U'\u05BF', U'\u05BF'},
    {U'\u05C1', U'\u05C2'},
    {U'\u05C4', U'\u05C5'},
    {U'\u05C7', U'\u05C7'},
    {U'\u0610', U'\u061A'},
    {U'\u064B', U'\u065F'},
    {U'\u0670', U'\u0670'},
    {U'\u06D6', U'\u06DC'},
    {U'\u06DF', U'\u06E4'},
    {U'\u06E7', U'\u06E8'},
    {U'\u06EA', U'\u06ED'},
    {U'\u1AB0', U'\u1AFF'},
    {U'\u1DC0', U'\u1DFF'},
    {U'\u20D0', U'\u20FF'},
    {U'\uFE20', U'\uFE2F'},
}};

bool IsDropped(char32_t c) noexcept {
  if (c < kDroppedMarks.front().first) return false;
  return std::ranges::any_of(
      kDroppedMarks, [c](const auto& range) { return c >= range.first && c <= range.second; });
}

bool IsSeparator(char32_t c) noexcept {
  switch (utf8proc_category(static_cast<utf8proc_int32_t>(c))) {
    case UTF8PROC_CATEGORY_ZS:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
    case UTF8PROC_CATEGORY_CC:
      return true;
    default:
      return false;
  }
}

void AppendFoldedCharacter(std::string& to, char32_t character) {
  // Before it is decomposed, because an acute accent that stands alone becomes a blank and a mark.
  if (const std::string_view plain = Plain(character); !plain.empty()) {
    to += plain;
    return;
  }
  std::array<utf8proc_int32_t, kMaxDecomposed> parts{};
  int boundary = 0;
  const auto count = utf8proc_decompose_char(static_cast<utf8proc_int32_t>(character), parts.data(),
                                             parts.size(), kOptions, &boundary);
  for (std::size_t k = 0; k < parts.size() && static_cast<utf8proc_ssize_t>(k) < count; ++k) {
    const auto part = static_cast<char32_t>(parts[k]);
    if (const std::string_view plain = Plain(part); !plain.empty())
      to += plain;
    else if (IsDropped(part))
      continue;
    else if (IsSeparator(part))
      to += ' ';
    else
      AppendCharacter(to, part);
  }
}

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

bool IsWordCharacter(std::string_view text, std::size_t position) noexcept {
  const char c = text[position];
  if (static_cast<unsigned char>(c) < 0x80) return IsDigit(c) || (c >= 'a' && c <= 'z');
  switch (utf8proc_category(static_cast<utf8proc_int32_t>(NextCharacter(text, position)))) {
    case UTF8PROC_CATEGORY_LU:
    case UTF8PROC_CATEGORY_LL:
    case UTF8PROC_CATEGORY_LT:
    case UTF8PROC_CATEGORY_LM:
    case UTF8PROC_CATEGORY_LO:
    case UTF8PROC_CATEGORY_MN:
    case UTF8PROC_CATEGORY_MC:
    case UTF8PROC_CATEGORY_ME:
    case UTF8PROC_CATEGORY_ND:
    case UTF8PROC_CATEGORY_NL:
    case UTF8PROC_CATEGORY_NO:
      return true;
    default:
      return false;
  }
}

}  // namespace

void AppendFolded(std::string& to, std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t begin = i;
    while (i < text.size() && static_cast<unsigned char>(text[i]) < 0x80) ++i;
    const std::size_t size = to.size();
    to.resize(size + (i - begin));
    std::transform(text.begin() + static_cast<std::ptrdiff_t>(begin),
                   text.begin() + static_cast<std::ptrdiff_t>(i),
                   to.begin() + static_cast<std::ptrdiff_t>(size),
                   [](char c) { return kFoldedAscii[static_cast<std::size_t>(c)]; });
    if (i == text.size()) return;
    const char32_t c = NextCharacter(text, i);
    AppendFoldedCharacter(to, c >= kInvalidByteBase ? kReplacement : c);
  }
}

std::string Folded(std::string_view text) {
  std::string folded;
  AppendFolded(folded, text);
  return folded;
}

bool IsWordStart(std::string_view folded, std::size_t position) noexcept {
  if (position == 0) return true;
  std::size_t before = position - 1;
  while (before > 0 && (static_cast<unsigned char>(folded[before]) & 0xC0U) == 0x80) --before;
  return !IsWordCharacter(folded, before);
}

void AppendNaturalBytes(std::string& to, std::string_view folded) {
  // No byte of a key is 0: the length is counted from 1.
  constexpr std::size_t kMaxLength = 0xFE;
  for (std::size_t i = 0; i < folded.size();) {
    if (!IsDigit(folded[i])) {
      to += folded[i++];
      continue;
    }
    // A number becomes a digit, which compares with other characters as the number does, its length
    // in bytes of at most kMaxLength, and its digits.
    while (i < folded.size() && folded[i] == '0') ++i;
    const std::size_t begin = i;
    while (i < folded.size() && IsDigit(folded[i])) ++i;
    std::size_t length = i - begin;
    to += '0';
    for (; length >= kMaxLength; length -= kMaxLength) to += static_cast<char>(kMaxLength + 1);
    to += static_cast<char>(length + 1);
    to += folded.substr(begin, i - begin);
  }
}

}  // namespace tallow
