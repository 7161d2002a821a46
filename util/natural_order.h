// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace tallow {

/// Compares two texts in natural order: letter case is ignored, and numbers are compared by value,
/// so that "Disc 2" comes before "Disc 10". A number is a run of the digits 0 to 9 of any length.
bool NaturalLess(std::string_view a, std::string_view b);

/// The form of a text that NaturalKeyLess compares. Texts that differ only in case or in their
/// Unicode form have equal keys.
std::string NaturalKey(std::string_view text);

/// Compares two texts in natural order by their keys, which is faster than NaturalLess.
bool NaturalKeyLess(std::string_view a, std::string_view b) noexcept;

}  // namespace tallow
