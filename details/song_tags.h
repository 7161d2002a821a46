// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace tallow {

/// What the tags of a file say, as far as filing uses it. Texts are UTF-8 without NUL, trimmed;
/// empty when the tags do not have them.
struct SongTags {
  bool found = false;  ///< the file has a tag of any kind
  /// The file could not be opened, or the disk reported an error or did not answer in time. What
  /// the tags say is then not known, and another attempt may succeed.
  bool unread = false;
  std::string title = {};
  std::string artist = {};  ///< several artists are joined by "; "
  std::string album_artist = {};
  std::string album = {};
  std::string date = {};   ///< as the tag has it: "1999", "12/05/1999", "1999-05-12"
  std::string genre = {};  ///< the name; of several, the first
  std::int32_t disc = 0;   ///< from 1; 0 when not known
  std::int32_t track = 0;  ///< from 1; 0 when not known

  /// The artist whose folder the song belongs to: the album artist, or else the artist.
  const std::string& FolderArtist() const noexcept {
    return album_artist.empty() ? artist : album_artist;
  }

  friend bool operator==(const SongTags&, const SongTags&) = default;
};

}  // namespace tallow
