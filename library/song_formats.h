// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

#include "library/folder_scan.h"
#include "library/switches.h"

namespace tallow {

/// File patterns of the songs in the modern style, see MatchesFilePattern.
inline constexpr std::string_view kModernSongPattern =
    "*.mp3;*.flac;*.ogg;*.oga;*.opus;*.spx;*.m4a;*.m4b;*.mp4;*.aac;*.wma;*.wav;*.aif;*.aiff;*.ape;"
    "*.wv;*.mpc";

/// File patterns of the songs with these switches.
constexpr std::string_view SongPattern(const Switches& switches) noexcept {
  return switches.more_formats ? kModernSongPattern : kSongPattern;
}

/// File patterns of songs of other formats, when files of the pattern are listed; empty when they
/// are songs of all formats, or no songs.
constexpr std::string_view OtherSongs(std::string_view pattern) noexcept {
  return pattern == kSongPattern ? kModernSongPattern : std::string_view();
}

/// Whether a file name is that of a song with these switches; see also MayBeSong.
bool IsSongName(std::string_view name, const Switches& switches);

/// What searches call the songs: "Mp3s", or "songs" when there are other formats.
constexpr std::string_view SongsInTexts(const Switches& switches) noexcept {
  return switches.more_formats ? "songs" : "Mp3s";
}

}  // namespace tallow
