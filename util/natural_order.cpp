// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/natural_order.h"

#include <cstddef>

#include "util/text.h"

namespace tallow {
namespace {

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

/// Parses the digits at a position and moves the position past them. Leading zeros are skipped and
/// not returned.
std::string_view ParseNumber(std::string_view text, std::size_t& position) noexcept {
  while (position < text.size() && text[position] == '0') ++position;
  const std::size_t begin = position;
  while (position < text.size() && IsDigit(text[position])) ++position;
  return text.substr(begin, position - begin);
}

}  // namespace

bool NaturalLess(std::string_view a, std::string_view b) {
  return NaturalKeyLess(ToLower(a), ToLower(b));
}

std::string NaturalKey(std::string_view text) { return ToLower(ToNfc(text)); }

bool NaturalKeyLess(std::string_view a, std::string_view b) noexcept {
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < a.size() && j < b.size()) {
    if (IsDigit(a[i]) && IsDigit(b[j])) {
      const std::string_view m = ParseNumber(a, i);
      const std::string_view n = ParseNumber(b, j);
      if (m.size() != n.size()) return m.size() < n.size();
      if (m != n) return m < n;
      continue;
    }
    const char32_t c = NextCharacter(a, i);
    const char32_t d = NextCharacter(b, j);
    if (c != d) return c < d;
  }
  return j < b.size();
}

}  // namespace tallow
