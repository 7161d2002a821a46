// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallow {

// Cells, settings and tags store numbers as text. ConvertToInt32 is strict and rejects a text that
// is not a number; NumericValue is lenient and parses the number at the start of a text.

/// Converts a whole text to a 32-bit integer.
///
/// Leading and trailing blanks and a sign are allowed. A fraction is rounded to the nearest
/// integer, halves to the even neighbour. The text ends at its first NUL.
///
/// \throws TypeMismatchError when the text is not a number (the empty text included)
/// \throws OverflowError     when the number does not fit
std::int32_t ConvertToInt32(std::string_view text);

/// ConvertToInt32 without exceptions: returns no value where ConvertToInt32 throws.
std::optional<std::int32_t> TryConvertToInt32(std::string_view text) noexcept;

/// Converts a text to a 16-bit integer: "True" (any case) is -1, "False" is 0; any other text must
/// be a number.
///
/// \throws TypeMismatchError, OverflowError as ConvertToInt32
std::int16_t ConvertToInt16(std::string_view text);

/// Parses the number at the start of a text, after leading blanks; 0 when there is none. The result
/// is clamped to 32 bits.
std::int32_t NumericValue(std::string_view text) noexcept;

/// A number with a comma between groups of three digits: "1,234,567".
std::string GroupedNumber(std::int64_t number);

}  // namespace tallow
