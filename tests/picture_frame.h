// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>

namespace tallow {

/// A number in four bytes, the highest first, with a number of bits in each.
inline std::string FourBytes(std::size_t number, unsigned bits) {
  std::string bytes;
  for (int k = 3; k >= 0; --k)
    bytes += static_cast<char>((number >> (static_cast<unsigned>(k) * bits)) & ((1U << bits) - 1));
  return bytes;
}

/// A frame of ID3v2.4 with a picture.
/// \param type 3 for the front cover
inline std::string PictureFrame(const std::string& picture, char type = 3,
                                const std::string& mime = "image/png") {
  const std::string body =
      std::string(1, '\0') + mime + '\0' + type + std::string("note\0", 5) + picture;
  return "APIC" + FourBytes(body.size(), 7) + std::string(2, '\0') + body;
}

/// An ID3v2 tag of frames, which precedes the audio of a file.
/// \param version 2 to 4
inline std::string TagOfFrames(const std::string& frames, char version = 4) {
  return std::string("ID3") + version + std::string(2, '\0') + FourBytes(frames.size(), 7) + frames;
}

}  // namespace tallow
