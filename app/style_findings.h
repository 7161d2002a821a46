// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tallow {

class Preferences;
class Tallow;

/// What the classic style makes of a collection that the modern style would take differently.
struct StyleCounts {
  std::int64_t songs = 0;       ///< of the library
  std::int64_t newer_tags = 0;  ///< of these: songs that are known to carry only newer tags
  /// Files left out because a song of that file name is there, and songs set aside because of one.
  std::int64_t left_out = 0;
  /// Files of other formats than MP3, whether or not they are songs that are set aside.
  std::int64_t other_formats = 0;

  bool HasAny() const noexcept { return newer_tags > 0 || left_out > 0 || other_formats > 0; }
  friend bool operator==(const StyleCounts&, const StyleCounts&) = default;
};

/// The counts of what scans have left out (clsMain::Findings), of the songs that are set aside, and
/// of the song details read so far. Cost: O(folders with findings + songs) if another style was
/// ever used, else O(1).
StyleCounts CountStyleFindings(const Tallow& tallow);

/// CountStyleFindings for repeated calls: while no song changes, a call is O(1).
class StyleCounter {
 public:
  /// \param tallow has to outlive this object
  explicit StyleCounter(const Tallow& tallow) : tallow_(tallow) {}

  /// The counts of now.
  StyleCounts Count();
  /// Call after a scan and after clsMain::LoadFindings, because the files that are left out may
  /// have changed without a change of a song.
  void Refresh() noexcept { version_.reset(); }

 private:
  const Tallow& tallow_;
  std::optional<std::uint64_t> version_;  ///< clsMain::Version of the counts; none: count again
  StyleCounts counts_;
};

/// The counts above 0 as a sentence: "90 of 264 songs carry only newer tags, 32 were left out
/// because a song of that file name is there, 61 are of other formats." Without a song: "61 music
/// files are not MP3 files, so the classic style does not show them." Empty when there are none.
std::string TextOf(const StyleCounts& counts);

/// A part of the list behind the counts.
struct StyleFindings {
  struct Row {
    std::string path;  ///< of a file, or a text with that of a folder; any bytes
    std::string note;  ///< empty without `has_notes`
  };
  std::string heading;  ///< with the numbers of what is listed
  std::size_t rows = 0;
  /// Returns a row. \param index 0 to rows - 1
  std::function<Row(std::size_t index)> row;
  bool has_notes = false;
};

/// The songs and files of each count, and the songs whose details could not be read; only parts
/// with rows. Valid until the library changes.
std::vector<StyleFindings> ListStyleFindings(const Tallow& tallow);

/// Decides when the user is told of songs that could not be read: in both styles, once a run, and
/// only of more songs than the last time.
class UnreadableNotice {
 public:
  /// \param preferences keeps the number of the last time; has to outlive this object
  explicit UnreadableNotice(Preferences& preferences) : preferences_(preferences) {}

  /// \param songs how many songs could not be read, once all others are
  /// \returns the line to show; empty for none
  std::string Update(std::size_t songs);

 private:
  Preferences& preferences_;
  bool was_shown_ = false;
};

/// Decides when the counts are shown to the user: in classic style, when there is something to say,
/// at most once in a run, and not before a count has grown since the user has declined. Not in a
/// run that had another style.
class StyleHint {
 public:
  /// \param preferences keeps the counts of the time when the user has declined; has to outlive
  ///   this
  explicit StyleHint(Preferences& preferences) : preferences_(preferences) {}

  /// Takes new counts.
  ///
  /// \param are_final whether the details of all songs are known. After the user has declined,
  ///                  counts that are not final may still grow to their final values
  /// \returns whether to show them
  bool Update(const StyleCounts& counts, bool are_final);

  /// The user wants to see no more of them until a count grows.
  void Decline();

  /// Hides the counts for the rest of this run.
  void Close() noexcept { state_ = State::kDone; }

 private:
  enum class State {
    kWaiting,   ///< there was nothing to say yet
    kShown,     ///< shown now
    kDeclined,  ///< declined, but the counts were not final
    kDone,
  };

  /// Whether a count is larger than when it was declined.
  bool HasGrown(std::int64_t StyleCounts::*count, const char* key) const;
  void StoreDeclined();

  Preferences& preferences_;
  State state_ = State::kWaiting;
  StyleCounts counts_;
  bool are_final_ = false;
};

}  // namespace tallow
