// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/json_text.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>

#include "util/text.h"

namespace tallow {
namespace {

/// Base of the code points that encode bytes outside valid UTF-8, see json_text.h.
constexpr char32_t kByteBase = 0x10FE00;
constexpr char32_t kFirstByte = kByteBase + 0x80;
constexpr char32_t kLastByte = kByteBase + 0xFF;

bool StandsForByte(char32_t character) noexcept {
  return character >= kFirstByte && character <= kLastByte;
}

/// Encodes arbitrary bytes as UTF-8.
std::string ToUtf8(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t begin = position;
    const char32_t character = NextCharacter(text, position);
    if (character < kInvalidByteBase && !StandsForByte(character)) {
      result.append(text.substr(begin, position - begin));
      continue;
    }
    for (std::size_t k = begin; k < position; ++k)
      AppendCharacter(result, kByteBase + static_cast<unsigned char>(text[k]));
  }
  return result;
}

}  // namespace

std::string BytesOfJsonText(std::string text) {
  // The code points that encode bytes all start with this byte in UTF-8; other texts rarely contain
  // it.
  if (text.find('\xF4') == std::string::npos) return text;
  std::string result;
  result.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t begin = position;
    const char32_t character = NextCharacter(text, position);
    if (StandsForByte(character))
      result.push_back(static_cast<char>(character - kByteBase));
    else
      result.append(text, begin, position - begin);
  }
  return result;
}

void AppendJsonText(std::string& to, std::string_view text) {
  const auto is_plain = [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; };
  if (std::all_of(text.begin(), text.end(), is_plain)) {
    to += '"';
    to += text;
    to += '"';
    return;
  }
  to += nlohmann::json(IsValidUtf8(text) && text.find('\xF4') == std::string_view::npos
                           ? std::string(text)
                           : ToUtf8(text))
            .dump();
}

}  // namespace tallow
