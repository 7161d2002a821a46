// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tallow {

/// Sorts texts by their bytes as unsigned numbers. Eight bytes are compared at a time, from copies
/// that lie beside each other, because texts that are spread over the memory are slow to compare.
///
/// \param texts no text has a byte 0; at most 2^32
/// \returns the indexes of the texts in order; those of equal texts are ascending
std::vector<std::uint32_t> OrderOfTexts(std::span<const std::string_view> texts);

/// The positions of texts in their order, from 1. Equal texts have the same position; empty ones
/// have 0.
std::vector<std::uint32_t> PositionsOfTexts(std::span<const std::string_view> texts);

}  // namespace tallow
