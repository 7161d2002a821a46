// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "app/search/drive_list.h"
#include "app/search/drive_questions.h"
#include "app/search/music_choice.h"
#include "app/tallow.h"
#include "util/file_system.h"

namespace tallow {

class FolderReader;
class TreeFolder;

/// Input and running totals of a walk.
struct FileSearchRequest {
  bool Recurse = false;         ///< descend into subfolders
  bool AddToLibrary = false;    ///< append matching files to the library and report them
  std::string Folder;           ///< where to search; the walk leaves the last visited folder here
  std::string Pattern;          ///< of the file names, "*.mp3"
  std::int32_t FilesFound = 0;  ///< number of matching files, added or not
  double TotalBytes = 0;        ///< sum of their sizes so far
};

/// Finds songs on the drives.
///
/// One object is one search: it never visits a folder twice. Songs are added to the library of the
/// Tallow passed in; the search does not save the library.
class FileSearch {
 public:
  /// \param progress may be null when there is no window to report to
  FileSearch(Tallow& tallow, const DriveList& drives, SearchProgress* progress,
             const QuestionLimits& limits = {});
  ~FileSearch();

  /// The song search.
  ///
  /// \param all_drives true: walk every fixed disk, then the folders that were only found as links.
  ///                   Unless drives were given, the user may have chosen other places, see
  ///                   MusicChoice. False: search the folder without its subfolders
  /// \param folder     ignored when all drives are searched
  /// \returns false when the search was cancelled
  bool SearchDrivesForMp3s(bool all_drives, std::string_view folder);

  /// Walks the folders that an earlier search could not read. Removes each folder from that list
  /// once the walk has read all of it.
  ///
  /// \param answers whether the disk of a folder responds
  void SearchUnreadFolders(const std::function<bool(const std::string& folder)>& answers);

  /// Walks a folder depth first, its files before its subfolders, each in the order of the system.
  /// Skips folders that cannot be read, folders that were visited before, and snapshots. Does not
  /// enter mount points, which have their own walk. Collects links to folders and junctions, which
  /// SearchDrivesForMp3s enters at its end. A cancel (SearchCancelled) and the end of the program
  /// (is_shutting_down) stop the walk before the next folder.
  ///
  /// \returns the total size of the matching files in bytes
  double WalkFolderTree(FileSearchRequest& request);

  /// Counts the matching files of one folder, and adds them to the library if AddToLibrary is set.
  ///
  /// A file in an excluded folder (IsExcludedFolder), or whose name cannot be a song's (MayBeSong),
  /// is counted but not added.
  /// \returns the total size of the matching files in bytes
  std::int64_t AddFilesInFolder(FileSearchRequest& request);

 private:
  struct HashIdentity {
    std::size_t operator()(const FolderIdentity& identity) const noexcept {
      return std::hash<std::uint64_t>()(identity.number * 0x9E3779B97F4A7C15U ^ identity.device);
    }
  };

  /// File patterns of the songs in the current style.
  std::string SongPatternNow() const;
  void ReportPlace(const std::string& place);
  bool IsSearchedAndAnswers(const std::string& root);
  /// Whether a drive that the user has ticked is there; records one that is not.
  bool IsTickedAndThere(const std::string& root);
  /// Whether a place that is not in the list of drives, and that the user has chosen, is there;
  /// records one that is not.
  bool IsChosenAndThere(const std::string& root, bool is_drive);
  /// Walks the places that the user has chosen and that are not in the list of drives.
  /// \returns false when the search was cancelled
  bool WalkChosenPlaces(FileSearchRequest& request);
  void WalkPlace(FileSearchRequest& request, const std::string& root);
  /// Whether a folder lies on a drive that the user has unticked.
  bool IsOnUntickedDrive(const std::string& folder) const;
  /// Records a drive or link that was given up, so that the next start tries it again.
  void RememberUnresponsive(const std::string& place);
  std::int64_t AddListedFiles(FileSearchRequest& request, const std::string& folder,
                              const FolderListing& listing);
  bool Visit(const TreeFolder& folder);
  void RememberIfUnread(const FileSearchRequest& request, const TreeFolder& folder);
  bool WalkLinkedFolders(FileSearchRequest& request);
  /// Drops what earlier searches have left out in folders that do not exist any more.
  void ForgetGoneFolders();
  /// Processes window events while a folder is being read, and says whether to go on. Empty without
  /// a splash window.
  std::function<bool()> IdleCallback();

  Tallow& tallow_;
  const DriveList& drives_;
  DriveQuestions questions_;
  MusicChoice choice_;
  std::unordered_set<FolderIdentity, HashIdentity> visited_;
  std::vector<std::string> linked_;  ///< folders found as links, in the order found
};

}  // namespace tallow
