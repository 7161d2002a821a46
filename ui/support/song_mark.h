// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>

#include <QIcon>
#include <QString>

namespace tallow {

/// What a list shows about the playback of a song. The marks differ in shape; the colour is
/// redundant.
enum class SongMark {
  kNone,
  kPlaying,  ///< a filled triangle
  kPaused,   ///< the outline of the triangle
  kFailed,   ///< an exclamation mark: the song could not be played
};
inline constexpr std::size_t kSongMarks = 4;

/// Whether the song is the one that plays or is paused.
constexpr bool MarkShowsPlaying(SongMark mark) noexcept {
  return mark == SongMark::kPlaying || mark == SongMark::kPaused;
}

/// Returns the icon of a mark, drawn as vectors; empty for none.
QIcon MarkPicture(SongMark mark);

/// The mark in words, for tooltips and screen readers: "playing" or "playing, paused"; empty for
/// the others.
QString SongMarkText(SongMark mark);

/// A sentence that says why a song could not be played.
/// \param reason as PlayerModel::FailureOf returns it; not empty
QString FailureText(const std::string& reason);

}  // namespace tallow
