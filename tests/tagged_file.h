// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace tallow {

/// The texts of an ID3v1 tag, and the byte that pads them.
struct TagTexts {
  std::string title = {};
  std::string artist = {};
  std::string album = {};
  std::string year = {};
  std::string comment = {};
  unsigned char genra = 255;
  char padding = ' ';
};

/// The 128 bytes of an ID3v1 tag.
inline std::string Tag(const TagTexts& texts) {
  std::string tag = "TAG";
  const auto add = [&](std::string field, std::size_t length) {
    field.resize(length, texts.padding);
    tag += field;
  };
  add(texts.title, 30);
  add(texts.artist, 30);
  add(texts.album, 30);
  add(texts.year, 4);
  add(texts.comment, 30);
  tag += static_cast<char>(texts.genra);
  return tag;
}

/// Bytes that look like MP3 frames and hold no tag.
inline std::string Audio(std::size_t length) {
  constexpr std::string_view kFrame("\xFF\xFB\x90\x64\x55\x55\x55\x55", 8);
  std::string audio;
  while (audio.size() < length) audio += kFrame;
  audio.resize(length);
  return audio;
}

}  // namespace tallow
