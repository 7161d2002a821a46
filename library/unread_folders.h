// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

// Folders that a search could not read are stored in "Unread.json". The next start scans them again
// even if no known song is in them. The file is JSON in UTF-8, one folder per line:
//
//   {"format":"Tallow unread folders","version":1,"folders":[
//   {"path":"/m/abba/","below":true}]}
//
// "below" says that the subfolders must be searched too. Texts are encoded by AppendJsonText.

/// A folder that could not be read.
struct UnreadFolder {
  std::string path;     ///< ends in a separator
  bool below = false;   ///< the subfolders must be searched too
  std::string problem;  ///< the system's error; empty when read from the file
};

/// The folders that could not be read, sorted by path.
class UnreadFolders {
 public:
  /// Maximum number of folders stored. A user who lacks permission for more is probably searching
  /// another user's disk.
  static constexpr std::size_t kMax = 10'000;

  void Add(UnreadFolder folder);
  /// Whether a folder is stored with `below` set.
  bool HasBelow(std::string_view path) const;
  /// Removes a folder.
  void Remove(std::string_view path);

  std::vector<UnreadFolder> Folders() const;
  std::size_t size() const noexcept { return folders_.size(); }

  /// Whether anything has changed since Decode or MarkSaved.
  bool IsDirty() const noexcept { return is_dirty_; }
  void MarkSaved() noexcept { is_dirty_ = false; }

  std::string Encode() const;
  /// Parses the content of the file.
  /// \throws std::exception describing the error; nothing has changed then
  void Decode(const std::string& bytes);

 private:
  std::map<std::string, UnreadFolder, std::less<>> folders_;
  bool is_dirty_ = false;
};

}  // namespace tallow
