// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "library/state_file.h"

namespace tallow {

// The file "Queue.json" holds what was to be played when Tallow ended: the song that played, and
// those that would have followed. It is JSON in UTF-8, one song per line:
//
//   {"format":"Tallow queue","version":1,"position":61500,"songs":[
//   "/m/a.mp3",
//   "/m/b.mp3"],"list":12,"entries":[4,5]}
//
// "position" is the position in the first song, in ms. "list" is how many songs the player's list
// had, and "entries" are the numbers of the songs in it: a Tallow that was killed leaves its player
// behind, and the next start names the songs of that player by them. Texts are encoded by
// AppendJsonText.

/// What was to be played.
struct SavedSongs {
  std::vector<std::string> paths;  ///< the first is that of the current song
  std::int64_t position = 0;       ///< in the current song, in ms
  std::size_t list = 0;            ///< number of songs in the player's list; 0 when unknown
  /// The numbers of the songs in the player's list; as many as `paths`, or none.
  std::vector<std::uint64_t> entries = {};

  friend bool operator==(const SavedSongs&, const SavedSongs&) = default;
};

/// The file of the queue. A damaged one is renamed to end in ".bak"; one that cannot be read is
/// never replaced.
class SavedQueue {
 public:
  /// Songs after these are not stored.
  static constexpr std::size_t kMaxSongs = 1'000'000;

  /// \param folder of the file; ends in a separator
  explicit SavedQueue(const std::string& folder) : path_(folder + "Queue.json") {}

  /// What the last run stored; nothing when there is no such file.
  SavedSongs Load();
  /// Replaces the file, unless it has the same content or cannot be read. Does not create a file
  /// without songs.
  void Store(const SavedSongs& songs);

  /// Removes and returns sentences on what could not be read or stored.
  std::vector<std::string> TakeProblems();

 private:
  void LoadOnce();

  const std::string path_;
  StateFile file_;
  bool is_loaded_ = false;
  SavedSongs songs_;          ///< the content of the file
  std::string save_problem_;  ///< of the last Store; empty when it succeeded
  std::vector<std::string> problems_;
};

}  // namespace tallow
