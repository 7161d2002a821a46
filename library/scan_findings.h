// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "library/duplicate_removal.h"
#include "library/song_table.h"
#include "library/state_file.h"

namespace tallow {

// What searches have left out is stored in "LeftOut.json", JSON in UTF-8, one folder per line:
//
//   {"format":"Tallow left out","version":1,"folders":[
//   {"path":"/m/abba/","otherFormats":2,"files":[["a.mp3","/m/best/a.mp3"]]}]}
//
// "otherFormats" is the number of files of other formats directly in the folder. "files" are the
// files that were left out because a song has their name, each with the path of that song. Texts
// are encoded by AppendJsonText. The file is a cache: searches of all folders find the same again.

/// The music files that scans have seen but not added: files of formats that the switches leave
/// out, and files whose name a song has.
///
/// What was found in a folder holds until a scan visits the folder again or finds it gone, also
/// over the end of the program. The file is loaded late, because a start does not need it; until
/// then this holds only what the scans of this run have seen.
class ScanFindings {
 public:
  /// The findings directly in a folder.
  struct Folder {
    std::size_t other_formats = 0;  ///< number of files
    /// The path of the song for which a file was left out, by file name.
    std::map<std::string, std::string, std::less<>> left_out;

    bool IsEmpty() const noexcept { return other_formats == 0 && left_out.empty(); }
    friend bool operator==(const Folder&, const Folder&) = default;
  };
  /// By the folder's path, which ends in a separator. None is empty.
  using Folders = std::map<std::string, Folder, std::less<>>;

  /// A scan has read a folder completely. Call before LeaveOut for its files.
  void Visit(std::string_view folder, std::size_t other_formats);
  /// A folder does not exist any more, nor what was below it.
  void MarkGone(std::string_view folder);
  /// A file was left out, in a folder that was visited or not.
  void LeaveOut(const LeftOutFile& file);

  /// Reads the findings of earlier runs. A damaged file is renamed to end in ".bak".
  ///
  /// \param problems receives error messages, one sentence each
  void Load(const std::string& path, std::vector<std::string>& problems);
  bool IsLoaded() const noexcept { return is_loaded_; }

  /// Brings ByFolder and the counts up to date with the calls above, leaves out files that are
  /// songs, and writes the file if anything has changed. If it cannot be written, the next run goes
  /// on from the earlier one. Does nothing before Load.
  ///
  /// Cost: O(rows of the table) if there are findings
  void Settle(const SongTable& table);

  // As of the last Settle:
  const Folders& ByFolder() const noexcept { return folders_; }
  std::size_t OtherFormats() const noexcept { return other_formats_; }  ///< number of files
  std::size_t LeftOut() const noexcept { return left_out_; }            ///< number of files
  /// The folders that were not visited since, sorted.
  std::vector<std::string> NotVisited() const;

 private:
  /// What scans have seen of a folder since the last Settle.
  struct Seen {
    bool was_visited = false;  ///< it replaces what was known
    bool is_gone = false;      ///< as well as what was known below it
    Folder findings;
  };

  void Merge();
  void DropSongs(const SongTable& table);
  std::string Encode() const;
  void Decode(const std::string& bytes);

  Folders folders_;
  std::map<std::string, Seen, std::less<>> seen_;
  std::size_t other_formats_ = 0;
  std::size_t left_out_ = 0;
  StateFile file_;
  bool is_loaded_ = false;
  bool is_dirty_ = false;
};

}  // namespace tallow
