// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// The differences between the classic and the modern style, each of which the user can switch. All
/// false is the classic style.
struct Switches {
  /// Tags: everything that TagLib reads, ID3v1 where there is nothing else, and the album artist
  /// before the artist. Classic: ID3v1.
  bool newer_tags = false;
  /// Songs are files of all formats in kModernSongPattern. Classic: "*.mp3".
  bool more_formats = false;
  /// A song is a path, and only missing songs move; away songs wait for their drive. Classic: a
  /// song is a file name.
  bool songs_by_path = false;
  /// A song belongs to the artist folder whose whole text is its artist, ignoring case, Unicode
  /// form and blanks at the ends. Classic: to the first whose text is the beginning.
  bool whole_artists = false;
  /// A year is the first group of exactly four digits of the date. Classic: the text of the tag.
  bool four_digit_years = false;
  /// Decades from 1920 to 2009, then "2010's" and later ones, added when needed. Classic: "20's" to
  /// "00's" by the third digit.
  bool all_decades = false;
  /// "Album" is an automatic folder of new sample jukeboxes, and of jukeboxes where it is marked
  /// so.
  bool albums = false;
  /// Folders below automatic folders are in the natural order of their names. Classic: in the order
  /// in which they were added.
  bool natural_order = false;
  /// The search of the known folders finds new subfolders of them.
  bool new_subfolders = false;
  /// "New Jukebox" fills "All Songs" at once.
  bool fills_new_jukeboxes = false;
  /// A start opens all jukeboxes that were open. Classic: the one saved last.
  bool reopens_jukeboxes = false;
  /// A double click or Enter plays the folder from the song on, and Space pauses and resumes.
  /// Classic: the one song.
  bool plays_on = false;
  /// Lists begin with the columns of a song's details, and the status bar has their sums. Classic:
  /// label and record number.
  bool columns_of_details = false;
  /// A field of the toolbar finds songs while the user types. Classic: only the find dialog.
  bool find_field = false;
  /// Songs are put in order by hand and ranked by keys, "No Rank" takes a rank away, properties are
  /// shown, and the tree's pop-up menu renames and plays. Classic: none of it.
  bool more_commands = false;

  friend bool operator==(const Switches&, const Switches&) = default;
};

inline constexpr Switches kClassicStyle{};
inline constexpr Switches kModernStyle{.newer_tags = true,
                                       .more_formats = true,
                                       .songs_by_path = true,
                                       .whole_artists = true,
                                       .four_digit_years = true,
                                       .all_decades = true,
                                       .albums = true,
                                       .natural_order = true,
                                       .new_subfolders = true,
                                       .fills_new_jukeboxes = true,
                                       .reopens_jukeboxes = true,
                                       .plays_on = true,
                                       .columns_of_details = true,
                                       .find_field = true,
                                       .more_commands = true};

}  // namespace tallow
