// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/tag_text.h"

#include <algorithm>
#include <array>
#include <optional>

#include "util/text.h"

namespace tallow {
namespace {

constexpr unsigned kFirstSpecial = 0x80;

/// The code points of the bytes 80 to 9F hex in Windows-1252; all other bytes are as in Latin-1.
constexpr std::array<char32_t, 32> kSpecial = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

char32_t CharacterOf(unsigned char byte) noexcept {
  const bool special = byte >= kFirstSpecial && byte < kFirstSpecial + kSpecial.size();
  return special ? kSpecial[byte - kFirstSpecial] : byte;
}

std::optional<char> ByteOf(char32_t character) noexcept {
  const auto* const found = std::find(kSpecial.begin(), kSpecial.end(), character);
  if (found != kSpecial.end())
    return static_cast<char>(kFirstSpecial + static_cast<unsigned>(found - kSpecial.begin()));
  if (character < kFirstSpecial || (character >= 0xA0 && character <= 0xFF))
    return static_cast<char>(character);
  // This byte came from an invalid UTF-8 sequence in a tag or file name; keep it unchanged.
  if (character >= kInvalidByteBase) return static_cast<char>(character - kInvalidByteBase);
  return std::nullopt;
}

bool LooksLikeUtf8(std::string_view bytes) noexcept {
  return !IsAscii(bytes) && IsValidUtf8(bytes);
}

std::string Fit(std::string bytes, std::size_t length) {
  bytes.resize(length, ' ');
  return bytes;
}

std::string CutUtf8(std::string_view text, std::size_t length) {
  std::size_t end = 0;
  for (std::size_t next = 0; next < text.size();) {
    NextCharacter(text, next);
    if (next > length) break;
    end = next;
  }
  return std::string(text.substr(0, end));
}

}  // namespace

std::string DecodeTagField(std::string_view bytes) {
  if (IsAscii(bytes) || LooksLikeUtf8(bytes)) return std::string(bytes);
  std::string text;
  for (const char byte : bytes)
    AppendCharacter(text, CharacterOf(static_cast<unsigned char>(byte)));
  return text;
}

std::string EncodeTagField(std::string_view text, std::size_t length) {
  if (IsAscii(text)) return Fit(std::string(text), length);
  std::string bytes;
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = ByteOf(NextCharacter(text, i));
    if (!byte) return Fit(CutUtf8(text, length), length);
    bytes += *byte;
  }
  bytes = Fit(std::move(bytes), length);
  return LooksLikeUtf8(bytes) ? Fit(CutUtf8(text, length), length) : bytes;
}

}  // namespace tallow
