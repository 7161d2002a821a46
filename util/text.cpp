// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/text.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utf8proc.h>

namespace tallow {
namespace {

using CaseMapping = utf8proc_int32_t (*)(utf8proc_int32_t);

char LowerAscii(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

char UpperAscii(char c) noexcept {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

void AppendMapped(std::string& to, std::string_view text, CaseMapping mapping) {
  for (std::size_t i = 0; i < text.size();) {
    const char32_t c = NextCharacter(text, i);
    AppendCharacter(to, c >= kInvalidByteBase
                            ? c
                            : static_cast<char32_t>(mapping(static_cast<utf8proc_int32_t>(c))));
  }
}

}  // namespace

char32_t NextCharacter(std::string_view text, std::size_t& position) noexcept {
  const auto byte = static_cast<unsigned char>(text[position]);
  if (byte < 0x80) {
    ++position;
    return byte;
  }
  utf8proc_int32_t code_point = -1;
  const auto length = utf8proc_iterate(
      reinterpret_cast<const utf8proc_uint8_t*>(text.data()) + position,
      static_cast<utf8proc_ssize_t>(std::min<std::size_t>(text.size() - position, 4)), &code_point);
  if (length <= 0 || code_point < 0) {
    ++position;
    return kInvalidByteBase + byte;
  }
  position += static_cast<std::size_t>(length);
  return static_cast<char32_t>(code_point);
}

void AppendCharacter(std::string& text, char32_t character) {
  if (character >= kInvalidByteBase) {
    text += static_cast<char>(character - kInvalidByteBase);
    return;
  }
  utf8proc_uint8_t bytes[4];
  const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(character), bytes);
  text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

bool IsValidUtf8(std::string_view text) noexcept {
  for (std::size_t i = 0; i < text.size();)
    if (NextCharacter(text, i) >= kInvalidByteBase) return false;
  return true;
}

bool IsAscii(std::string_view text) noexcept {
  return std::none_of(text.begin(), text.end(),
                      [](char c) { return static_cast<unsigned char>(c) > 0x7F; });
}

void AppendLower(std::string& to, std::string_view text) {
  if (!IsAscii(text)) {
    AppendMapped(to, text, utf8proc_tolower);
    return;
  }
  const std::size_t begin = to.size();
  to.resize(begin + text.size());
  std::transform(text.begin(), text.end(), to.begin() + static_cast<std::ptrdiff_t>(begin),
                 LowerAscii);
}

std::string ToLower(std::string_view text) {
  std::string lower;
  AppendLower(lower, text);
  return lower;
}

std::string ToUpper(std::string_view text) {
  std::string upper;
  if (IsAscii(text)) {
    upper.resize(text.size());
    std::transform(text.begin(), text.end(), upper.begin(), UpperAscii);
  } else {
    AppendMapped(upper, text, utf8proc_toupper);
  }
  return upper;
}

std::string ToNfc(std::string_view text) {
  if (IsAscii(text) || !IsValidUtf8(text)) return std::string(text);
  utf8proc_uint8_t* composed = nullptr;
  const auto length =
      utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                   static_cast<utf8proc_ssize_t>(text.size()), &composed,
                   static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE));
  const std::unique_ptr<utf8proc_uint8_t, void (*)(void*)> owner(composed, std::free);
  if (length < 0) return std::string(text);
  return {reinterpret_cast<const char*>(composed), static_cast<std::size_t>(length)};
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  if (IsAscii(a) && IsAscii(b))
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
             return LowerAscii(x) == LowerAscii(y);
           });
  return ToLower(a) == ToLower(b);
}

std::string_view Trim(std::string_view text) noexcept {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

std::string_view StripAtNul(std::string_view text) noexcept {
  return text.substr(0, text.find('\0'));
}

}  // namespace tallow
