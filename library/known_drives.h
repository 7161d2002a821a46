// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "library/mounted_volumes.h"
#include "util/file_system.h"

namespace tallow {

// The drives on which songs were found are stored in "Drives.json", JSON in UTF-8, one drive per
// line:
//
//   {"format":"Tallow drives","version":1,"drives":[
//   {"root":"/mnt/","mountPoint":true,"volume":"uuid 12-AB","inside":"/","folders":["abba/",""]}]}
//
// "root" is the path where the drive was last seen: a mount point, a drive letter, a share, or a
// folder that was given as a drive. "volume" and "inside" identify the file system and the folder
// in it that was mounted there (VolumeFolder); both are empty when unknown. "folders" are the
// folders in which songs were last seen, relative to the root. Two drives may have the same root,
// e.g. USB sticks plugged in alternately.

/// A drive on which songs were found.
struct KnownDrive {
  std::string root;  ///< ends in a separator
  bool mount_point = false;
  VolumeFolder folder;
  /// Relative to root, each ending in a separator; the empty text is the root itself.
  std::set<std::string> folders;

  bool away = false;         ///< as of the last CheckDrives
  bool automounter = false;  ///< away, and an automounter is waiting at the root
  std::string moved_to;      ///< current path if mounted elsewhere than at root; empty otherwise
};

/// The drives on which songs were found, and whether they are mounted.
///
/// A drive is away when its root does not exist or is an empty folder, when the root was a mount
/// point and no longer is, or when another file system is mounted there. Without a volume identity,
/// a drive is recognized by its root only.
class KnownDrives {
 public:
  /// \param given roots that were given as drives, each ending in a separator
  explicit KnownDrives(std::vector<std::string> given = {}) : given_(std::move(given)) {}

  const std::vector<KnownDrive>& Drives() const noexcept { return drives_; }

  /// Callback that gets the state of folders, see StateOfFolder. No value for a folder that does
  /// not answer.
  using AskFolders =
      std::function<std::vector<std::optional<FolderState>>(const std::vector<std::string>&)>;

  /// Determines which drives are away. A root with an automounter is first opened once, to trigger
  /// the mount. A drive that does not answer is away.
  void CheckDrives(const ReadMountedVolumes& read_volumes, const AskFolders& ask = AskAtOnce);
  /// An AskFolders without a timeout.
  static std::vector<std::optional<FolderState>> AskAtOnce(const std::vector<std::string>& folders);

  /// Whether a path is on a network drive.
  bool IsOnNetwork(std::string_view path) const;

  /// The root to give up when a path does not answer: the root of its drive, or the path's folder
  /// when it is on the root file system. Ends in a separator.
  std::string RootToGiveUp(std::string_view path) const;

  /// Marks the drives at or below a root as away until the next CheckDrives.
  void MarkAway(std::string_view root);

  /// What to conclude about a song that was not found in its folder.
  enum class Verdict {
    kMissing,       ///< the folder's drives are mounted, so the song is missing
    kAway,          ///< at least one of the folder's drives is away
    kNoKnownDrive,  ///< no drive is known for the folder
  };
  struct FolderVerdict {
    Verdict verdict = Verdict::kNoKnownDrive;
    std::string away_root;              ///< root of the away drive
    std::vector<std::string> moved_to;  ///< new paths of the folder, each ending in a separator
  };
  FolderVerdict VerdictOf(std::string_view folder) const;

  /// Updates the folders of each drive: `seen` are folders where songs were found, `kept` are
  /// folders with songs that are away. All other folders are dropped.
  ///
  /// \param complete false when other folders may contain songs too; then no folder is dropped
  void UpdateFolders(const std::vector<std::string>& seen, const std::vector<std::string>& kept,
                     bool complete);

  /// The root of the away drive that contains a path; empty for none.
  std::string AwayRootOf(std::string_view path) const;

  /// Whether a folder is on a drive that only has an automounter at its root. Checking the folder
  /// may take long and give no result.
  bool IsBehindAutomounter(std::string_view folder) const;

  /// Sets the root of each drive mounted elsewhere to its new path.
  void ApplyNewRoots();

  /// Forgets the away drives with this root.
  void Forget(std::string_view root);

  /// The roots of all drives, known, given or mounted as of the last CheckDrives. Some may be there
  /// several times.
  std::vector<std::string> Roots() const;

  /// Whether this is the root of a known drive, or a folder with songs on one.
  bool Knows(std::string_view root) const;

  bool IsDirty() const noexcept { return is_dirty_; }
  void MarkSaved() noexcept { is_dirty_ = false; }
  std::string Encode() const;
  /// Parses the content of the file.
  /// \throws std::exception describing the error; nothing has changed then
  void Decode(const std::string& bytes);

 private:
  void Index();
  bool IsAway(const KnownDrive& drive, const std::optional<FolderState>& root) const;
  /// The drive of a folder with songs: its root, and what is mounted there.
  KnownDrive DriveAt(std::string_view folder) const;

  std::vector<std::string> given_;
  std::vector<std::string> absent_given_;  ///< roots that do not exist or are empty
  std::vector<KnownDrive> drives_;
  MountedVolumes volumes_;  ///< as of the last CheckDrives
  /// Indexes in drives_ by PathKey of the folder's full path.
  std::unordered_map<std::string, std::vector<std::size_t>> by_folder_;
  bool is_dirty_ = false;
};

}  // namespace tallow
