// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

#include "details/song_tags.h"
#include "util/file_system.h"

namespace tallow {

/// All that a file says of its song.
struct SongDetails {
  SongTags tags = {};
  std::string comment = {};      ///< as the texts of SongTags
  std::int32_t length_ms = 0;    ///< milliseconds; 0 when not known
  std::int32_t bit_rate = 0;     ///< kilobits per second; 0 when not known
  std::int32_t sample_rate = 0;  ///< Hz; 0 when not known
  /// What the file is by its content: "MP3", "FLAC", "Ogg Vorbis"; empty when not known.
  std::string format = {};
  /// The file ends in an ID3v1 tag, the only kind of tag that the classic style reads.
  bool has_id3v1 = false;
  /// Size and time of change of the file that was read; empty when SongTags::unread.
  FileStamp stamp = {};
  /// The file could not be read, or a limit was exceeded. The other members have what was found
  /// before.
  bool failed = false;

  /// Whether the file has tags, but no ID3v1 tag.
  bool HasOnlyNewerTags() const noexcept { return tags.found && !has_id3v1; }

  friend bool operator==(const SongDetails&, const SongDetails&) = default;
};

}  // namespace tallow
