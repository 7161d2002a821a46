// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fstream>
#include <iterator>
#include <string>

#include "library/tag_text.h"
#include "util/text.h"

namespace tallow {

/// Reference implementation of the ID3v1 texts that filing uses: reads the whole file, and each
/// field byte by byte.
struct LiteralTag {
  explicit LiteralTag(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    const std::string file{std::istreambuf_iterator<char>(stream), {}};
    if (file.size() < 128 || file.compare(file.size() - 128, 3, "TAG") != 0) return;
    found = true;
    const std::string tag = file.substr(file.size() - 128);
    artist = Field(tag.substr(33, 30));
    album = Field(tag.substr(63, 30));
    year = Field(tag.substr(93, 4));
    genra = static_cast<unsigned char>(tag[127]);
  }

  bool found = false;
  std::string artist;
  std::string album;
  std::string year;
  int genra = 255;

 private:
  static std::string Field(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
      if (byte == '\0') break;
      text += byte;
    }
    text = Decoded(text);
    while (!text.empty() && text.front() == ' ') text.erase(0, 1);
    while (!text.empty() && text.back() == ' ') text.pop_back();
    return text;
  }

  /// UTF-8 with a character of several bytes, of which the last may lack up to three; else
  /// Windows-1252.
  static std::string Decoded(const std::string& bytes) {
    for (std::size_t lacking = 0; lacking <= 3; ++lacking)
      for (const char any : {'\x80', '\xBF'})
        if (IsValidUtf8(bytes + std::string(lacking, any)))
          if (std::string whole = WithoutLast(bytes, lacking); !IsAscii(whole)) return whole;
    std::string text;
    // A single byte is never UTF-8.
    for (const char byte : bytes) text += DecodeTagField({&byte, 1});
    return text;
  }

  /// The text without its last character if that lacks bytes.
  static std::string WithoutLast(std::string text, std::size_t lacking) {
    if (lacking == 0) return text;
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80)
      text.pop_back();
    if (!text.empty()) text.pop_back();
    return text;
  }
};

}  // namespace tallow
