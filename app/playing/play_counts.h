// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace tallow {

// The file "PlayCounts.json" holds how often the user has played each song. It lies beside the
// library, because nothing but the user's plays can make it. It is JSON in UTF-8, one song per
// line, in the order of the paths:
//
//   {"format":"Tallow play counts","version":1,"songs":[
//   {"path":"/m/a.mp3","count":12,"last":"2026-11-23"}]}
//
// "last" is the day of the last play, in UTC. Texts are encoded by AppendJsonText.

/// How often a song was played.
struct PlayCount {
  std::int32_t count = 0;
  std::chrono::sys_days last;  ///< the day of the last play

  friend bool operator==(const PlayCount&, const PlayCount&) = default;
};

/// The play counts, by path. Each change is stored at once; the file that it replaces is kept with
/// its name followed by ".bak".
///
/// - In place of a damaged or missing file the one that ends in ".bak" is used. The damaged one is
///   renamed to end in ".damaged".
/// - A file that cannot be read is never replaced. The changes then last until the program ends.
class PlayCounts {
 public:
  /// A larger file is damaged.
  static constexpr std::uint64_t kMaxBytes = std::uint64_t{1} << 30U;
  static constexpr const char* kFileName = "PlayCounts.json";

  /// \param folder of the file; ends in a separator
  explicit PlayCounts(const std::string& folder) : path_(folder + kFileName) {}

  /// The count of a song; all 0 for a song that was not played.
  PlayCount Of(const std::string& path);
  std::size_t Songs();

  /// Counts a play of a song.
  void Add(const std::string& path, std::chrono::sys_days today);

  /// Removes and returns sentences on what could not be read or stored.
  std::vector<std::string> TakeProblems();

 private:
  using Counts = std::unordered_map<std::string, PlayCount>;

  void LoadOnce();
  /// \returns whether the file was there and is good
  bool Load(const std::string& path);
  void SetAside(const std::string& path);
  void Save();
  void AddSaveProblem(std::string problem);

  const std::string path_;
  bool is_loaded_ = false;
  bool may_replace_ = true;  ///< false when there is a file that could not be read
  Counts counts_;
  std::string save_problem_;  ///< of the last Save; empty when it succeeded
  std::vector<std::string> problems_;
};

}  // namespace tallow
