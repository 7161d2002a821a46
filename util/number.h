// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tallow {

// Cells, settings and tags hold their numbers as text. Two conversions read them: the strict one,
// which refuses what is no number, and the lenient one, which takes what number the text begins
// with.

/// Converts a whole text to a 32-bit integer.
///
/// Leading and trailing blanks are allowed, and so is a sign. A fraction is rounded to the nearest
/// integer, halves to the even neighbour. The text ends at its first NUL.
///
/// \throws TypeMismatchError when the text is no number (the empty text included)
/// \throws OverflowError     when the number does not fit
std::int32_t ConvertToInt32(std::string_view text);

/// ConvertToInt32 without exceptions: no value where that one throws.
std::optional<std::int32_t> TryConvertToInt32(std::string_view text) noexcept;

/// Converts a text to a 16-bit integer: "True" (any case) is -1, "False" is 0, else a number.
///
/// \throws TypeMismatchError, OverflowError as ConvertToInt32
std::int16_t ConvertToInt16(std::string_view text);

/// The number a text begins with, behind blanks; 0 when it begins with none. Kept within the range
/// of the type.
std::int32_t NumericValue(std::string_view text) noexcept;

}  // namespace tallow
