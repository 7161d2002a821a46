// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "details/song_tags.h"
#include "library/folder_scan.h"
#include "library/mp3_tag_editor.h"

namespace tallow {

class TagCache;
class clsMain;

/// Reads the tags of a file. Called on several threads at once, and possibly after the call that it
/// was given to has returned, if a disk never answers; so it must own what it uses.
using ReadTags = std::function<SongTags(const std::string& path)>;

/// What reading the tags of a song gave.
struct ReadSong {
  bool is_answered = false;  ///< false: the song is on a drive that does not answer
  bool has_failed = false;   ///< the file could not be read, and may have tags
  SongTags tags;
};

/// The tags that filing uses of an ID3v1 tag. Texts end at the first NUL, and are then trimmed.
///
/// \param with_album whether to fill the album and the track, too
SongTags TagsOfBlock(const TagBlock& block, bool with_album);

/// Reads the tags of songs for filing, by the switch `newer_tags` of the library.
class SongTagReader {
 public:
  /// \param found_tags sealed cache of ID3v1 tags already read; null for none
  /// \param read       reads newer tags; empty: ID3v1 tags are read instead
  /// \param with_album whether albums and tracks are needed, which `found_tags` does not have
  SongTagReader(clsMain& library, const TagCache* found_tags, ReadTags read, bool with_album);

  /// Reads the tags of songs ahead on worker threads and delivers them in the order of the rows.
  ///
  /// \param consume called with the position, from 0, in `rows`
  /// \param go_on   called while waiting; false throws Stopped out of this call. May be empty
  void Read(const std::vector<std::int32_t>& rows,
            const std::function<void(std::size_t, const ReadSong&)>& consume,
            const GoOn& go_on) const;

 private:
  clsMain& library_;
  const TagCache* found_tags_;
  ReadTags read_;  ///< empty for ID3v1 tags
  bool with_album_;
};

}  // namespace tallow
