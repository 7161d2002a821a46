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

// The drives on which songs were found are remembered in "Drives.json", JSON in UTF-8, a drive a line:
//
//   {"format":"Tallow drives","version":1,"drives":[
//   {"root":"/media/stick/","mountPoint":true,"volume":"uuid 1234-ABCD","inside":"/","folders":["abba/",""]}]}
//
// "root" is the place where the drive was seen last: a mount point, a drive letter, a share, or a folder that
// was given as a drive. "volume" and "inside" tell which folder of which file system that was (VolumeFolder);
// both are empty where nothing told. "folders" are those in which its songs were seen last, below the root.
// Two drives may have one root: sticks that are plugged in in turn.

/// A drive on which songs were found.
struct KnownDrive {
  std::string root;  ///< ends in a separator
  bool mount_point = false;
  VolumeFolder folder;
  std::set<std::string>
      folders;  ///< below the root, each ending in a separator, or empty: the root itself

  bool away = false;         ///< at the last LookAtDrives
  bool automounter = false;  ///< and of it only an automounter is there
  std::string moved_to;      ///< where it is shown now instead of at its root; empty: nowhere else
};

/// The drives on which songs were found, and whether they are there.
///
/// A drive is away when its root is not there, when the root was a mount point and is none now, when it is
/// an empty folder, or when another file system is known to be shown there. What has no identity is never
/// another one.
class KnownDrives {
 public:
  /// \param given roots that were given as drives, each ending in a separator
  explicit KnownDrives(std::vector<std::string> given = {}) : given_(std::move(given)) {}

  const std::vector<KnownDrive>& Drives() const noexcept { return drives_; }

  /// Looks into folders as StateOfFolder does. No value for one that does not answer.
  using AskFolders =
      std::function<std::vector<std::optional<FolderState>>(const std::vector<std::string>&)>;

  /// Finds out which drives are away. A root that shows only an automounter is opened once first. A drive
  /// that does not answer is away.
  void LookAtDrives(const LookAtVolumes& look, const AskFolders& ask = AskAtOnce);
  /// An AskFolders that waits as long as it takes.
  static std::vector<std::optional<FolderState>> AskAtOnce(const std::vector<std::string>& folders);

  /// Whether a path lies on a drive of the network.
  bool IsOnNetwork(std::string_view path) const;

  /// What is given up when a path does not answer: the drive that it lies on, or of the file system that
  /// holds everything else the folder. Ends in a separator.
  std::string RootToSkip(std::string_view path) const;

  /// The drives at a root, and those below it, are away until the next LookAtDrives.
  void MarkAway(std::string_view root);

  /// What is known of a song that was not found in a folder.
  enum class Verdict {
    kMissing,       ///< the drives of the folder are there
    kAway,          ///< one of them is away
    kUnremembered,  ///< no drive of the folder is remembered
  };
  struct FolderVerdict {
    Verdict verdict = Verdict::kUnremembered;
    std::string away_root;              ///< of the drive that is away
    std::vector<std::string> moved_to;  ///< where the folder may be now, each ending in a separator
  };
  FolderVerdict VerdictOf(std::string_view folder) const;

  /// Songs were found in these folders, and in `kept` are songs of which nobody can tell. Drives keep no
  /// other folders.
  ///
  /// \param complete false: more folders than these hold songs, so none is dropped
  void SongsSeen(const std::vector<std::string>& seen, const std::vector<std::string>& kept,
                 bool complete);

  /// The root of a drive that is away on which a path lies; empty for none.
  std::string AwayRootOf(std::string_view path) const;

  /// Whether a folder lies on a drive of which only an automounter is there: looking into it may take long,
  /// and tells nothing.
  bool IsBehindAutomounter(std::string_view folder) const;

  /// A drive that has moved is at its new root from now on.
  void TakeNewRoots();

  /// Forgets the drives of a root that are away.
  void Forget(std::string_view root);

  /// Whether a root is that of a drive, or a folder of one.
  bool Knows(std::string_view root) const;

  bool IsDirty() const noexcept { return is_dirty_; }
  void MarkSaved() noexcept { is_dirty_ = false; }
  std::string Encode() const;
  /// Takes over the content of a file.
  /// \throws std::exception saying what is wrong with it; nothing has changed then
  void Decode(const std::string& bytes);

 private:
  void Index();
  bool IsAway(const KnownDrive& drive, const std::optional<FolderState>& root) const;
  /// The drive of a folder where songs were found: its root, and what is shown there.
  KnownDrive DriveAt(std::string_view folder) const;

  std::vector<std::string> given_;
  std::vector<std::string> absent_given_;  ///< that are not there, or are empty
  std::vector<KnownDrive> drives_;
  MountedVolumes volumes_;  ///< at the last LookAtDrives
  /// Places in drives_ by PathKey of the folder's full path.
  std::unordered_map<std::string, std::vector<std::size_t>> by_folder_;
  bool is_dirty_ = false;
};

}  // namespace tallow
