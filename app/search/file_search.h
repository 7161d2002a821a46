// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "app/search/drive_list.h"
#include "app/search/player_search.h"
#include "app/search/search_progress.h"
#include "app/tallow.h"
#include "util/file_system.h"

namespace tallow {

class FolderReader;
struct TreeFolder;

/// What a walk is to do, and what it has found so far.
struct FileSearchRequest {
  bool Recurse = false;       ///< descend into subfolders
  bool AddToLibrary = false;  ///< append matching files to the library and report them
  std::string Folder;         ///< where to search; the walk leaves the last folder it visited here
  std::string Pattern;        ///< of the files' names, "*.mp3"
  std::int32_t FilesFound = 0;  ///< matching files, added or not
  double TotalBytes = 0;        ///< their sizes, as far as the walk has come
};

/// Finds songs and the player on the drives.
///
/// One object is one search: what it has visited is not visited again. Songs go to the library of
/// the Tallow it works for; they are not saved here.
class FileSearch {
 public:
  /// \param progress may be null when there is no window to report to
  /// \param nearby   finds the player where no disk has to be searched, see FindPlayerNearby
  FileSearch(Tallow& tallow, const DriveList& drives, SearchProgress* progress,
             std::function<std::string()> nearby = FindPlayerNearby);
  ~FileSearch();

  /// The song search.
  ///
  /// \param all_drives true: walk every fixed disk, then the folders that were only met as links.
  ///                   False: search the folder without its subfolders
  /// \param folder     ignored when all drives are searched
  /// \returns false when it was cancelled
  bool SearchDrivesForMp3s(bool all_drives, std::string_view folder);

  /// Walks the folders that an earlier search could not read. Each is forgotten once all of it was walked.
  ///
  /// \param answers whether the disk of a folder answers
  void SearchUnreadFolders(const std::function<bool(const std::string& folder)>& answers);

  /// The player search: beside the program and on the path where the platform has that, then in the
  /// tree of each fixed disk. The first find goes to the settings, which are saved; without a find,
  /// or when cancelled, nothing is stored.
  /// \returns false when it was cancelled
  bool SearchDrivesForWinamp();

  /// Walks a folder depth first, its files before its subfolders, each in the order of the system.
  /// Folders that cannot be read are skipped, and so is one that was visited before. Links to
  /// folders and junctions are kept for SearchDrivesForMp3s to enter at its end; what is mounted
  /// below is left to its own walk, and snapshots are left out. A cancel (SearchCancelled) and the end of the
  /// program (is_ending) stop it before the next folder.
  ///
  /// \returns the bytes of the matching files
  double WalkFolderTree(FileSearchRequest& request);

  /// Counts, and if asked for adds, the matching files of one folder.
  ///
  /// A file in an excluded folder (IsExcludedFolder), or whose name is that of no song (MayBeSong), is
  /// counted but not added.
  /// \returns the bytes of the matching files
  std::int64_t AddFilesInFolder(FileSearchRequest& request);

 private:
  struct HashIdentity {
    std::size_t operator()(const FolderIdentity& identity) const noexcept {
      return std::hash<std::uint64_t>()(identity.number * 0x9E3779B97F4A7C15U ^ identity.device);
    }
  };

  bool IsSplashLoaded() const { return progress_ != nullptr && progress_->IsLoaded(); }
  void Report(std::string_view status);
  bool PauseAndTestForCancel();
  /// Whether the search was cancelled; clears the flag.
  bool TakeCancel();
  /// Asks the file system on another thread.
  ///
  /// \param place is given up after a while if it does not answer; empty where the work may take long
  /// \returns no value when the place was given up, or when the search is to end first (was_stopped_)
  template <typename Answer>
  std::optional<Answer> AskInBackground(std::function<Answer()> ask, const std::string& place = {});
  bool IsSearchedAndAnswers(const std::string& root, bool for_songs);
  /// The next start looks again at a drive or link that was given up.
  void RememberSilent(const std::string& place);
  bool EndStopped();
  std::int64_t AddListedFiles(FileSearchRequest& request, const std::string& folder,
                              const FolderListing& listing);
  bool Visit(const TreeFolder& folder);
  void RememberIfUnread(const FileSearchRequest& request, const TreeFolder& folder);
  bool WalkLinkedFolders(FileSearchRequest& request);
  std::string FindWinampInBackground(const std::string& root);
  void StorePlayer(const std::string& path);

  Tallow& tallow_;
  const DriveList& drives_;
  SearchProgress* progress_;
  std::function<std::string()> nearby_;
  std::unordered_set<FolderIdentity, HashIdentity> visited_;
  std::vector<std::string> linked_;  ///< folders met as links, in the order met
  bool was_stopped_ = false;         ///< by a cancel or the end of the program, before its end
};

}  // namespace tallow
