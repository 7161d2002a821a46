// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/plain_mp3.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "details/file_kind.h"

namespace tallow {
namespace {

// The header of the tag has ten bytes: "ID3", version, revision, flags and length. That of a frame
// too: ID, length and flags. Lengths do not count the header.
constexpr std::size_t kHeaderBytes = 10;
constexpr std::size_t kIdBytes = 4;
constexpr unsigned kPlainBits = 8;      // of each byte of a length of ID3v2.3
constexpr unsigned kSynchsafeBits = 7;  // of ID3v2.4, and of the length of a tag

unsigned Byte(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

/// A number of four bytes, the highest first, of which each has a number of bits.
std::uint64_t NumberAt(std::string_view bytes, std::size_t at, unsigned bits) {
  std::uint64_t number = 0;
  for (std::size_t k = 0; k < 4; ++k) number = (number << bits) | Byte(bytes, at + k);
  return number;
}

bool IsSynchsafe(std::string_view length) {
  return std::ranges::all_of(length, [](char c) { return (static_cast<unsigned char>(c)) < 0x80; });
}

bool IsFrameId(std::string_view id) {
  return id.size() == kIdBytes && std::ranges::all_of(id, [](char c) {
           return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
         });
}

/// A tag whose frames are checked.
struct CheckedTag {
  BoundedStream& stream;
  bool is_2_4;
  std::uint64_t end;  ///< position behind the tag

  /// The length of a frame with its header; 0 when it is not plain.
  std::uint64_t LengthOfFrame(std::uint64_t at) const {
    const std::string header = stream.Peek(at, kHeaderBytes);
    if (header.size() < kHeaderBytes || !IsFrameId(header.substr(0, kIdBytes))) return 0;
    if (header[8] != 0 || header[9] != 0) return 0;
    const std::uint64_t plain = NumberAt(header, kIdBytes, kPlainBits);
    std::uint64_t length = plain;
    if (is_2_4) {
      if (!IsSynchsafe(std::string_view(header).substr(kIdBytes, 4))) return 0;
      length = NumberAt(header, kIdBytes, kSynchsafeBits);
      // Some programs write a length of ID3v2.3 here. TagLib takes it for one if the ID of a frame
      // is where that ends.
      if (length != plain && IsFrameIdAt(at + kHeaderBytes + plain)) return 0;
    }
    length += kHeaderBytes;
    return length > kHeaderBytes && at + length <= end ? length : 0;
  }
  bool IsFrameIdAt(std::uint64_t at) const {
    return at + kIdBytes <= end && IsFrameId(stream.Peek(at, kIdBytes));
  }

  bool ArePlain() const {
    std::uint64_t at = kHeaderBytes;
    for (int frames = 0; at + kHeaderBytes < end; ++frames) {
      if (stream.Peek(at, 1) == std::string_view("\0", 1)) return true;  // the padding
      const std::uint64_t length = LengthOfFrame(at);
      if (length == 0 || frames == kMaxPlainFrames) return false;
      at += length;
    }
    return true;
  }
};

bool HasApeTag(BoundedStream& stream) {
  // Its last 32 bytes are a footer, which is at the end of the file or before an ID3v1 tag.
  constexpr std::uint64_t kWhereFootersAre = 32 + 128;
  const std::uint64_t length = std::min(stream.Size(), kWhereFootersAre);
  const std::string tail = stream.Peek(stream.Size() - length, static_cast<std::size_t>(length));
  return tail.find("APETAGEX") != std::string::npos;
}

}  // namespace

bool IsPlainMp3(BoundedStream& stream) {
  const std::string header = stream.Peek(0, kHeaderBytes);
  const std::uint64_t end = Id3v2Length(header);
  if (end <= 2 * kHeaderBytes || end > std::min(kMaxPlainTag, stream.Size())) return false;
  const bool is_2_4 = header[3] == 4;
  if ((header[3] != 3 && !is_2_4) || header[4] != 0 || header[5] != 0) return false;
  if (!IsSynchsafe(std::string_view(header).substr(6))) return false;
  if (!CheckedTag{stream, is_2_4, end}.ArePlain()) return false;
  const std::string sync = stream.Peek(end, 2);
  if (sync.size() < 2 || Byte(sync, 0) != 0xFF || (Byte(sync, 1) & 0xE0U) != 0xE0U) return false;
  return !HasApeTag(stream);
}

}  // namespace tallow
