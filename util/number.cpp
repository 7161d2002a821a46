// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/number.h"

#include <limits>

#include "util/errors.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr std::int64_t kMax = std::numeric_limits<std::int32_t>::max();
/// The magnitude is clamped to this value; such a number does not fit whatever digits follow.
constexpr std::int64_t kTooLarge = kMax + 2;

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

enum class Reading { kNumber, kMismatch, kOverflow };

struct Sign {
  bool negative = false;
};

Sign TakeSign(std::string_view& text) noexcept {
  if (text.empty() || (text.front() != '+' && text.front() != '-')) return {};
  const Sign sign{text.front() == '-'};
  text.remove_prefix(1);
  return sign;
}

/// Parses the digits at the beginning of a text and removes them. The magnitude is clamped to
/// kTooLarge.
std::int64_t TakeDigits(std::string_view& text) noexcept {
  std::int64_t magnitude = 0;
  while (!text.empty() && IsDigit(text.front())) {
    if (magnitude < kTooLarge) magnitude = magnitude * 10 + (text.front() - '0');
    text.remove_prefix(1);
  }
  return magnitude < kTooLarge ? magnitude : kTooLarge;
}

/// Whether a fraction (the digits after the point) rounds the whole number up; halves go to even.
bool RoundsUp(std::string_view fraction, std::int64_t whole) noexcept {
  if (fraction.empty() || fraction.front() < '5') return false;
  if (fraction.front() > '5') return true;
  return fraction.find_first_not_of('0', 1) != std::string_view::npos || whole % 2 != 0;
}

Reading Read(std::string_view text, std::int32_t& result) noexcept {
  text = Trim(StripAtNul(text));
  const Sign sign = TakeSign(text);
  const std::size_t before = text.size();
  std::int64_t magnitude = TakeDigits(text);
  bool any_digit = text.size() != before;
  if (!text.empty() && text.front() == '.') {
    text.remove_prefix(1);
    std::string_view fraction = text;
    TakeDigits(text);
    fraction.remove_suffix(text.size());
    any_digit = any_digit || !fraction.empty();
    if (RoundsUp(fraction, magnitude)) ++magnitude;
  }
  if (!any_digit || !text.empty()) return Reading::kMismatch;
  if (magnitude > kMax + (sign.negative ? 1 : 0)) return Reading::kOverflow;
  result = static_cast<std::int32_t>(sign.negative ? -magnitude : magnitude);
  return Reading::kNumber;
}

}  // namespace

std::int32_t ConvertToInt32(std::string_view text) {
  std::int32_t result = 0;
  switch (Read(text, result)) {
    case Reading::kNumber:
      return result;
    case Reading::kOverflow:
      throw OverflowError(text);
    case Reading::kMismatch:
      break;
  }
  throw TypeMismatchError(text);
}

std::optional<std::int32_t> TryConvertToInt32(std::string_view text) noexcept {
  std::int32_t result = 0;
  if (Read(text, result) != Reading::kNumber) return std::nullopt;
  return result;
}

std::int16_t ConvertToInt16(std::string_view text) {
  const std::string_view word = Trim(text);
  if (EqualsIgnoringCase(word, "True")) return -1;
  if (EqualsIgnoringCase(word, "False")) return 0;
  const std::int32_t value = ConvertToInt32(text);
  if (value < std::numeric_limits<std::int16_t>::min() ||
      value > std::numeric_limits<std::int16_t>::max())
    throw OverflowError(text);
  return static_cast<std::int16_t>(value);
}

std::int32_t NumericValue(std::string_view text) noexcept {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  const Sign sign = TakeSign(text);
  std::int64_t magnitude = TakeDigits(text);
  if (magnitude > kMax + (sign.negative ? 1 : 0)) magnitude = kMax + (sign.negative ? 1 : 0);
  return static_cast<std::int32_t>(sign.negative ? -magnitude : magnitude);
}

std::string GroupedNumber(std::int64_t number) {
  constexpr std::size_t kGroup = 3;
  std::string text = std::to_string(number);
  const std::size_t first = number < 0 ? 1 : 0;
  for (std::size_t at = text.size(); at > first + kGroup;) {
    at -= kGroup;
    text.insert(at, 1, ',');
  }
  return text;
}

}  // namespace tallow
