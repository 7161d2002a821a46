// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/tag_date.h"

#include <cstddef>

namespace tallow {
namespace {

constexpr std::size_t kYearDigits = 4;

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

}  // namespace

std::string_view FourDigitYear(std::string_view date) noexcept {
  for (std::size_t begin = 0; begin < date.size();) {
    std::size_t end = begin;
    while (end < date.size() && IsDigit(date[end])) ++end;
    const std::string_view digits = date.substr(begin, end - begin);
    if (digits.size() == kYearDigits) return digits == "0000" ? std::string_view() : digits;
    begin = end + 1;
  }
  return {};
}

std::int32_t YearOfDate(std::string_view date) noexcept {
  std::int32_t year = 0;
  for (const char digit : FourDigitYear(date)) year = year * 10 + (digit - '0');
  return year;
}

}  // namespace tallow
