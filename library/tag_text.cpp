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

/// Length of the UTF-8 sequence that a byte starts; 0 for a byte that starts no sequence of several
/// bytes.
std::size_t LengthFromFirstByte(char first) noexcept {
  const auto byte = static_cast<unsigned char>(first);
  if (byte >= 0xC2 && byte <= 0xDF) return 2;
  if (byte >= 0xE0 && byte <= 0xEF) return 3;
  return byte >= 0xF0 && byte <= 0xF4 ? 4 : 0;
}

/// The bytes without the beginning of a UTF-8 character whose remaining bytes were cut off.
std::string_view WithoutCutCharacter(std::string_view bytes) noexcept {
  constexpr std::size_t kMaxCut = 3;
  for (std::size_t cut = 1; cut <= std::min(kMaxCut, bytes.size()); ++cut) {
    const char byte = bytes[bytes.size() - cut];
    if ((static_cast<unsigned char>(byte) & 0xC0U) == 0x80) continue;
    return LengthFromFirstByte(byte) > cut ? bytes.substr(0, bytes.size() - cut) : bytes;
  }
  return bytes;
}

/// The part of a field before the NULs that pad it.
std::string_view WithoutPadding(std::string_view bytes) noexcept {
  return bytes.substr(0, bytes.find_last_not_of('\0') + 1);
}

bool LooksLikeUtf8(std::string_view bytes) noexcept {
  const std::string_view whole = WithoutCutCharacter(WithoutPadding(bytes));
  return !IsAscii(whole) && IsValidUtf8(whole);
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
  if (IsAscii(bytes)) return std::string(bytes);
  std::string text;
  if (LooksLikeUtf8(bytes)) {
    const std::string_view unpadded = WithoutPadding(bytes);
    text = WithoutCutCharacter(unpadded);
    return text.append(bytes.size() - unpadded.size(), '\0');
  }
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
