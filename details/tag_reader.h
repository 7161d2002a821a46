// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "details/bounded_stream.h"
#include "details/song_details.h"
#include "details/song_tags.h"

namespace tallow {

// Reads what the tags of a song file say, with TagLib. Any bytes may be in the file: it is read
// through a BoundedStream, and no function here throws. They may run on any threads at once.
//
// Which tags count, by precedence; each fills what the ones before it left empty:
//
// | Files | Tags |
// |---|---|
// | MP3 | ID3v2; APE if there is no ID3v2 with any of the fields; ID3v1 |
// | FLAC | Vorbis comments; ID3v2; ID3v1 |
// | Ogg files | Vorbis comments |
// | MP4, WMA | their own |
// | WAV | ID3v2; INFO |
// | AIFF | ID3v2 |
// | APE, WavPack, Musepack | APE; ID3v1 |
// | AAC | ID3v2; ID3v1 |
//
// Texts that are declared as Latin-1 are decoded as those of ID3v1 (tag_text.h), because many of
// them are UTF-8.

/// Reads the tags alone, not the audio properties, so that hardly more than the tags is read.
///
/// \returns the tags; SongTags::unread when the file cannot be opened or read
SongTags ReadSongTags(const std::string& path, const ReadLimits& limits = {});

/// Reads the tags if the file is an MP3 file as IsPlainMp3 describes it. Such a file may be read in
/// the program's own process.
///
/// \returns no value for other files, and when a limit was exceeded
std::optional<SongTags> ReadPlainTags(const std::string& path, const ReadLimits& limits = {});

/// Reads everything. SongDetails::failed tells that the file could not be read, or that a limit was
/// exceeded.
SongDetails ReadSongDetails(const std::string& path, const ReadLimits& limits = {});

}  // namespace tallow
