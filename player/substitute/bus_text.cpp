// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/bus_text.h"

#include "util/text.h"

namespace tallow {
namespace {

/// Whether a code point is a Unicode noncharacter, which the bus rejects.
bool IsNoncharacter(char32_t character) {
  constexpr char32_t kPlane = 0xFFFF;
  return (character >= 0xFDD0 && character <= 0xFDEF) || (character & kPlane) >= 0xFFFE;
}

}  // namespace

std::string FileUrl(std::string_view path) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/-._~";
  std::string url = "file://";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (kPlain.find(c) != std::string_view::npos)
      url += c;
    else
      url.append({'%', kDigits[byte >> 4U], kDigits[byte & 15U]});
  }
  return url;
}

std::string BusText(std::string_view text) {
  std::string result;
  for (std::size_t position = 0; position < text.size();) {
    const char32_t character = NextCharacter(text, position);
    AppendCharacter(result,
                    character >= kInvalidByteBase || IsNoncharacter(character) ? U'?' : character);
  }
  return result;
}

}  // namespace tallow
