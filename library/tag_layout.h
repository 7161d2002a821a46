// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string_view>

namespace tallow {

// An ID3v1 tag is the last 128 bytes of an MP3 file (offsets from its first byte):
//
// | Offset | Bytes | Content |
// |---|---|---|
// | 0 | 3 | "TAG" |
// | 3 | 30 | title |
// | 33 | 30 | artist |
// | 63 | 30 | album |
// | 93 | 4 | year |
// | 97 | 30 | comment |
// | 127 | 1 | genre number, 0 to 255 |
//
// This program pads texts with blanks; other programs pad with NULs. See tag_text.h for the
// encoding.

/// Size of an ID3v1 tag in bytes.
inline constexpr std::size_t kTagBytes = 128;

/// Marker at the start of a tag; case-sensitive.
inline constexpr std::string_view kTagMarker = "TAG";

/// Offset of each field from the tag's first byte.
enum TagOffset : std::size_t {
  kTitleAt = 3,
  kArtistAt = 33,
  kAlbumAt = 63,
  kYearAt = 93,
  kCommentAt = 97,
  kGenraAt = 127,
};

}  // namespace tallow
