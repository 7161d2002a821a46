// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/text_order.h"

#include <algorithm>
#include <cstddef>

namespace tallow {
namespace {

constexpr std::size_t kPart = 8;
constexpr unsigned kByteBits = 8;

/// A text, and eight bytes of it.
struct Entry {
  std::uint64_t part;
  std::uint32_t index;
};

/// The bytes of a text from a position on, the first in the highest bits; 0 after its end.
std::uint64_t PartAt(std::string_view text, std::size_t position) noexcept {
  std::uint64_t part = 0;
  for (std::size_t k = position; k < position + kPart; ++k)
    part = part << kByteBits | (k < text.size() ? static_cast<unsigned char>(text[k]) : 0U);
  return part;
}

/// Sorts entries whose texts are equal up to a position.
void SortFrom(std::span<Entry> entries, std::span<const std::string_view> texts,
              std::size_t position) {
  for (Entry& entry : entries) entry.part = PartAt(texts[entry.index], position);
  std::ranges::sort(entries, [](const Entry& a, const Entry& b) {
    return a.part != b.part ? a.part < b.part : a.index < b.index;
  });
  for (std::size_t begin = 0; begin < entries.size();) {
    std::size_t end = begin + 1;
    while (end < entries.size() && entries[end].part == entries[begin].part) ++end;
    // A part that ends in 0 is at the end of its texts, which are then equal.
    const bool has_more = (entries[begin].part & 0xFFU) != 0;
    if (has_more && end - begin > 1)
      SortFrom(entries.subspan(begin, end - begin), texts, position + kPart);
    begin = end;
  }
}

}  // namespace

std::vector<std::uint32_t> OrderOfTexts(std::span<const std::string_view> texts) {
  std::vector<Entry> entries(texts.size());
  for (std::size_t k = 0; k < texts.size(); ++k) entries[k].index = static_cast<std::uint32_t>(k);
  SortFrom(entries, texts, 0);
  std::vector<std::uint32_t> order(texts.size());
  std::ranges::transform(entries, order.begin(), &Entry::index);
  return order;
}

std::vector<std::uint32_t> PositionsOfTexts(std::span<const std::string_view> texts) {
  std::vector<std::uint32_t> positions(texts.size());
  std::uint32_t position = 0;
  std::string_view last;
  for (const std::uint32_t index : OrderOfTexts(texts)) {
    // An empty text comes first, and is equal to `last`.
    if (texts[index] != last) ++position;
    last = texts[index];
    positions[index] = position;
  }
  return positions;
}

}  // namespace tallow
