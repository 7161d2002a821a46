// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/wide_text_windows.h"

#include <algorithm>
#include <windows.h>

#include "util/path_text.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr char32_t kFirstSurrogate = 0xD800;
constexpr char32_t kLowSurrogate = 0xDC00;
constexpr char32_t kBehindSurrogates = 0xE000;
constexpr char32_t kFirstSupplementary = 0x10000;

/// The surrogate encoded by the three bytes at a position; 0 when there is none.
char32_t SurrogateAt(std::string_view text, std::size_t at) noexcept {
  if (at + 3 > text.size()) return 0;
  const auto byte = [&](std::size_t k) {
    return static_cast<char32_t>(static_cast<unsigned char>(text[at + k]));
  };
  if (byte(0) != 0xED || (byte(1) & 0xE0U) != 0xA0U || (byte(2) & 0xC0U) != 0x80U) return 0;
  return kFirstSurrogate | ((byte(1) & 0x1FU) << 6U) | (byte(2) & 0x3FU);
}

}  // namespace

std::wstring ToWide(std::string_view text) {
  std::wstring wide;
  wide.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    if (const char32_t surrogate = SurrogateAt(text, i)) {
      wide += static_cast<wchar_t>(surrogate);
      i += 3;
      continue;
    }
    char32_t c = NextCharacter(text, i);
    if (c >= kInvalidByteBase) c -= kInvalidByteBase;
    if (c >= kFirstSupplementary) {
      c -= kFirstSupplementary;
      wide += static_cast<wchar_t>(kFirstSurrogate | (c >> 10U));
      wide += static_cast<wchar_t>(kLowSurrogate | (c & 0x3FFU));
    } else {
      wide += static_cast<wchar_t>(c);
    }
  }
  return wide;
}

std::string FromWide(std::wstring_view wide) {
  std::string text;
  text.reserve(wide.size());
  for (std::size_t i = 0; i < wide.size(); ++i) {
    char32_t c = static_cast<char16_t>(wide[i]);
    if (c >= kFirstSurrogate && c < kLowSurrogate && i + 1 < wide.size()) {
      const char32_t low = static_cast<char16_t>(wide[i + 1]);
      if (low >= kLowSurrogate && low < kBehindSurrogates) {
        c = kFirstSupplementary + ((c & 0x3FFU) << 10U) + (low & 0x3FFU);
        ++i;
      }
    }
    if (c >= kFirstSurrogate && c < kBehindSurrogates) {
      text += static_cast<char>(0xE0U | (c >> 12U));
      text += static_cast<char>(0x80U | ((c >> 6U) & 0x3FU));
      text += static_cast<char>(0x80U | (c & 0x3FU));
    } else {
      AppendCharacter(text, c);
    }
  }
  return text;
}

std::wstring ToWidePath(std::string_view path) {
  std::wstring wide = ToWide(path);
  // With the prefix \\?\ Windows does not convert slashes, so convert them here.
  std::replace(wide.begin(), wide.end(), L'/', L'\\');
  if (wide.starts_with(L"\\\\?\\") || !IsAbsolutePath(path)) return wide;
  if (wide.starts_with(L"\\\\")) return L"\\\\?\\UNC" + wide.substr(1);
  if (wide.starts_with(L"\\")) return wide;
  return L"\\\\?\\" + wide;
}

std::string SystemErrorText(unsigned long error) {
  wchar_t buffer[512];
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                     buffer, sizeof buffer / sizeof buffer[0], nullptr);
  std::string text = FromWide({buffer, length});
  // The message is inserted into a sentence, so remove the full stop and the line break.
  const std::size_t end = text.find_last_not_of(". \r\n");
  text.resize(end == std::string::npos ? 0 : end + 1);
  return text.empty() ? "error " + std::to_string(error) : text;
}

}  // namespace tallow
