// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "util/file_system.h"

namespace tallow {

/// Where the search for new folders beside known ones ends.
struct WalkLimits {
  /// The user's home folder, ending in a separator; empty when it is unknown.
  std::string home;
  /// Reads the folders at which something is mounted, each ending in a separator, in addition to
  /// the drives that the library knows. May be empty.
  std::function<std::vector<std::string>()> mount_points;
};

/// Decides which folders a scan of the known folders lists in addition, so that it finds new ones.
///
/// A folder leads to songs if it is known, or if a known folder lies below it on the same drive.
/// The scan lists
/// 1. the known folders;
/// 2. a parent, at any height, of known folders: if at least two of its subfolders lead to songs
///    (a folder of artists, or of albums), or if one of its subfolders is known and at least half
///    of its subfolders lead to songs (an artist with an old and a new album, or with one album
///    that was renamed). Of the roots of drives and shares and the mount points, only one with at
///    least two subfolders that lead to songs, if these are more than half of those that rule 3
///    enters (a disk of music, but neither "/" nor "C:\");
/// 3. the subfolders of all listed folders, which makes this a search of everything below them.
///
/// This costs no call for a known folder, because its listing shows its subfolders. The first half
/// of rule 2 needs only the paths of the known folders; for the rest of it, parents that are not
/// found by the other rules are listed, at most one for each known folder, and one for each root.
///
/// Rule 2 ignores folders that hold much besides songs: the home folder and those above it. Of the
/// folders that are no roots, it also ignores those beside the home folder, and folders of the
/// system or with settings of programs ("/usr/", "C:\Windows\", "~/.local/").
/// Rule 3 never enters links, which could lead in circles, mount points and other drives, nor
/// folders that searches exclude (IsExcludedFolder). It does not enter subfolders of folders above
/// the home folder, nor settings of programs below it, even if a song lies beside them.
class NewFolders {
 public:
  /// \param known each ending in a separator
  /// \param home  see WalkLimits
  /// \param roots of drives, shares and mount points, each ending in a separator
  NewFolders(const std::vector<std::string>& known, std::string_view home,
             const std::vector<std::string>& roots);

  /// What a folder is that was listed.
  enum class Role {
    kKnown,
    kParent,   ///< of known folders, by rule 2
    kNew,      ///< by rule 3
    kIgnored,  ///< a parent of a known folder, too few of whose subfolders lead to songs
  };

  /// Takes the listing of a known folder, or of one that TakeNext has returned.
  Role Visit(const std::string& folder, const std::vector<SubfolderEntry>& subfolders);

  /// The folders to list next, in the order in which they were found. Returns each only once, and
  /// nothing when all are listed. To be called when all known folders, and all that it has returned
  /// before, were visited.
  std::vector<std::string> TakeNext();

 private:
  /// A folder above known folders.
  struct Parent {
    std::string path;
    std::size_t leading = 0;  ///< number of subfolders that lead to songs
    bool has_known = false;   ///< whether one of these is known
  };

  void AddParentsOf(const std::string& known);
  bool IsEnd(std::string_view folder) const;
  bool IsTop(std::string_view folder) const;
  bool IsEntered(const std::string& folder, std::string_view name) const;

  std::unordered_set<std::string> ends_;  ///< keys of the roots, of the home folder and those above
  std::string home_;                      ///< key of the home folder; empty when unknown
  std::string above_home_;                ///< key of the folder above it
  std::unordered_map<std::string, Role> roles_;  ///< by key; of all folders listed or to be listed
  std::vector<Parent> parents_;                  ///< in the order found
  std::unordered_map<std::string, std::size_t> parent_index_;  ///< by key
  std::vector<std::string> next_;
  bool has_taken_parents_ = false;
  bool has_taken_undecided_ = false;
};

}  // namespace tallow
