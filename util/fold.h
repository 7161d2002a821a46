// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallow {

// The form of texts in which they are searched and sorted: without case and accents. Typed texts
// and the texts of songs are converted alike.

/// Appends the folded form of a text, as UTF-8.
///
/// - Characters are decomposed (NFKD), accents are dropped, and case is folded: "Beyoncé" and
///   "BEYONCE" are equal. So are Hebrew and Arabic texts with and without vowel points. Marks of
///   other scripts are kept: they are vowels, as in Hindi and Thai, or make other letters, as the
///   voiced sound mark of Japanese.
/// - Letters that Unicode does not decompose although readers take them for another ("ø", "ł",
///   "æ") become that letter or two. So do typographic apostrophes, quotation marks and dashes,
///   which keyboards do not have, and accents that stand alone for an apostrophe.
/// - Separators and control characters become a blank (20 hex), so no other byte below that is in a
///   folded text.
/// - A byte that is not valid UTF-8 becomes U+FFFD.
void AppendFolded(std::string& to, std::string_view text);

std::string Folded(std::string_view text);

/// Whether a word begins at a position of a folded text: no letter, digit or mark is directly
/// before it.
bool IsWordStart(std::string_view folded, std::size_t position) noexcept;

/// Appends a key whose bytes, compared as unsigned numbers, put texts in natural order without case
/// and accents: numbers by value. Texts of equal keys differ only in case, accents and leading
/// zeros. No byte of a key is 0.
///
/// \param folded a folded text
void AppendNaturalBytes(std::string& to, std::string_view folded);

}  // namespace tallow
