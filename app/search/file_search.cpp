// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/file_search.h"

#include <future>
#include <utility>

#include "app/recycle_bin.h"
#include "app/search/folder_reader.h"
#include "app/search/player_search.h"
#include "util/path_text.h"
#include "util/read_ahead.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr std::string_view kSongPattern = "*.mp3";

/// How often a loop over the drives yields at each drive: a counter runs from 1 up to here, not
/// included.
constexpr int kYieldLimit = 2000;

}  // namespace

bool IsExcludedFolder(std::string_view folder) {
  return ToLower(folder).find("incomplete") != std::string::npos || IsInRecycleBin(folder);
}

FileSearch::FileSearch(Tallow& tallow, const DriveList& drives, SearchProgress* progress,
                       std::function<std::string()> nearby)
    : tallow_(tallow), drives_(drives), progress_(progress), nearby_(std::move(nearby)) {}

FileSearch::~FileSearch() = default;

void FileSearch::Report(std::string_view status) {
  progress_->SetStatus(status);
  progress_->Repaint();
}

bool FileSearch::PauseAndTestForCancel() {
  if (progress_ != nullptr)
    for (int k = 1; k < kYieldLimit; ++k) progress_->Yield();
  if (!tallow_.SearchCancelled) return false;
  tallow_.SearchCancelled = false;
  return true;
}

bool FileSearch::SearchDrivesForMp3s(bool all_drives, std::string_view folder) {
  FileSearchRequest request{
      .AddToLibrary = true, .Folder = {}, .Pattern = std::string(kSongPattern)};
  if (!all_drives) {
    request.Folder = folder;
    WalkFolderTree(request);
    return true;
  }
  tallow_.found_tags.Clear();
  request.Recurse = true;
  std::string list = drives_.GetLogicalDriveList();
  while (!IsEndOfDriveList(list)) {
    const std::string root = NextDriveFromList(list);
    const std::string_view type = DescribeDriveType(drives_.TypeOf(root), root);
    if (PauseAndTestForCancel()) return false;
    if (IsSplashLoaded()) {
      Report("Looking for Mp3s in " + root);
      progress_->Repaint();
    }
    if (IsSearched(type)) {
      request.Folder = root;
      WalkFolderTree(request);
    }
  }
  return WalkLinkedFolders(request);
}

bool FileSearch::WalkLinkedFolders(FileSearchRequest& request) {
  // A linked folder may hold further links, which join the end of the list.
  for (std::size_t k = 0; k < linked_.size(); ++k) {
    if (!drives_.MayFollow(linked_[k])) continue;
    const auto identity = IdentityOfFolder(linked_[k]);
    if (!identity || visited_.contains(*identity)) continue;
    // It may be a whole disk, so it is announced and can be cancelled as one.
    const std::string folder = EnsureTrailingBackslash(RealPathOfFolder(linked_[k]));
    if (PauseAndTestForCancel()) return false;
    if (IsSplashLoaded()) {
      Report("Looking for Mp3s in " + folder);
      progress_->Repaint();
    }
    request.Folder = folder;
    WalkFolderTree(request);
  }
  return true;
}

bool FileSearch::Visit(const TreeFolder& folder) {
  // A file system without numbers for its folders gives 0 for each.
  const FolderIdentity& identity = folder.listing.identity;
  return folder.listing.opened && (identity.number == 0 || visited_.insert(identity).second);
}

void FileSearch::RememberIfUnread(const FileSearchRequest& request, const TreeFolder& folder) {
  if (folder.listing.problem.empty())
    tallow_.library.ForgetUnread(folder.path);
  else
    tallow_.library.RememberUnread(folder.path, request.Recurse, folder.listing.problem);
}

void FileSearch::SearchUnreadFolders() {
  FileSearchRequest request{
      .Recurse = true, .AddToLibrary = true, .Folder = {}, .Pattern = std::string(kSongPattern)};
  for (const UnreadFolder& folder : tallow_.library.UnreadFoldersNow()) {
    if (!folder.below) continue;
    // What is on a drive that is away is looked at once that is there.
    if (IsGone(folder.path) && tallow_.library.AwayRootOf(folder.path).empty())
      tallow_.library.ForgetUnread(folder.path);
    if (IsGone(folder.path)) continue;
    request.Folder = folder.path;
    WalkFolderTree(request);
  }
}

double FileSearch::WalkFolderTree(FileSearchRequest& request) {
  FolderReader reader(
      request.Pattern, request.Recurse,
      [this](const std::string& folder) { return !drives_.IsMountPoint(folder); },
      // Songs that join the library are filed next; their tags are best read while the folder is
      // open.
      [add = request.AddToLibrary](const std::string& folder) {
        return add && !IsExcludedFolder(folder);
      });

  /// A folder whose files are done and whose subfolders are being gone through.
  struct Level {
    std::shared_ptr<TreeFolder> folder;
    std::size_t next = 0;  ///< of the subfolders
    double total = 0;      ///< bytes of its own files and of the subfolders that are done
  };
  std::vector<Level> levels;
  std::function<void()> live;
  if (IsSplashLoaded()) live = [this] { progress_->VisitFolder({}); };
  const auto enter = [&](std::shared_ptr<TreeFolder> folder) {
    reader.Take(*folder, live);
    if (request.AddToLibrary && !IsExcludedFolder(folder->path)) RememberIfUnread(request, *folder);
    if (!Visit(*folder)) return;
    reader.Enter(*folder);
    if (IsSplashLoaded()) progress_->VisitFolder(folder->path);
    for (const SubfolderEntry& entry : folder->listing.subfolders)
      if (entry.linked) linked_.push_back(folder->path + entry.name);
    const auto total = static_cast<double>(AddListedFiles(request, folder->path, folder->listing));
    request.TotalBytes = total;
    folder->listing = {};
    levels.push_back({std::move(folder), 0, total});
  };

  const std::shared_ptr<TreeFolder> root = reader.Root(request.Folder);
  enter(root);
  double total = 0;
  while (!levels.empty() && !tallow_.is_ending) {
    Level& level = levels.back();
    if (level.next < level.folder->subfolders.size()) {
      std::shared_ptr<TreeFolder> subfolder = std::move(level.folder->subfolders[level.next++]);
      request.Folder = subfolder->path.substr(0, subfolder->path.size() - 1);
      enter(std::move(subfolder));
      continue;
    }
    total = level.total;
    levels.pop_back();
    if (!levels.empty()) {
      levels.back().total += total;
      request.TotalBytes = levels.back().total;
    }
  }
  return total;
}

std::int64_t FileSearch::AddFilesInFolder(FileSearchRequest& request) {
  const std::string folder = EnsureTrailingBackslash(request.Folder);
  return AddListedFiles(request, folder,
                        ListFolder(folder, {.pattern = request.Pattern, .sizes = true}));
}

std::int64_t FileSearch::AddListedFiles(FileSearchRequest& request, const std::string& folder,
                                        const FolderListing& listing) {
  if (listing.files.empty()) return 0;
  const bool add = request.AddToLibrary && !IsExcludedFolder(folder);
  clsMain& library = tallow_.library;
  std::int64_t total = 0;
  for (const FileEntry& file : listing.files) {
    ++request.FilesFound;
    total += static_cast<std::int64_t>(file.size);
    if (!add) continue;
    const std::int32_t row =
        library.AddSong(folder, file.name, static_cast<std::int64_t>(file.size));
    tallow_.found_tags.Add(folder, file.name, file.tail);
    if (IsSplashLoaded()) {
      progress_->SetFound("Found " + std::to_string(row) + " Mp3s");
      progress_->Repaint();
      progress_->Repaint();
      progress_->YieldAfterSong();
    }
  }
  return total;
}

bool FileSearch::SearchDrivesForWinamp() {
  std::string found = nearby_();
  std::string list = found.empty() ? drives_.GetLogicalDriveList() : std::string();
  while (found.empty() && !IsEndOfDriveList(list)) {
    const std::string root = NextDriveFromList(list);
    const std::string_view type = DescribeDriveType(drives_.TypeOf(root), root);
    if (progress_ != nullptr) Report("Looking for WinAmp in " + root);
    if (IsSearched(type)) {
      found = FindWinampWhileLiving(root);
      if (!found.empty()) break;
    }
    if (PauseAndTestForCancel()) return false;
  }
  if (!found.empty()) StorePlayer(found);
  return true;
}

std::string FileSearch::FindWinampWhileLiving(const std::string& root) {
  // A disk takes minutes, and its search does not stop in between.
  auto search = std::async(std::launch::async, [&] { return FindWinampUnder(root, drives_); });
  while (search.wait_for(kLiveEvery) == std::future_status::timeout)
    if (progress_ != nullptr) progress_->VisitFolder({});
  return search.get();
}

void FileSearch::StorePlayer(const std::string& path) {
  if (IsSplashLoaded()) Report("Found WinAmp!!");
  // The settings keep paths one a line.
  if (HasLineBreak(path)) return;
  tallow_.settings.LocOfWinAmpExe(path);
  tallow_.SaveSettings();
}

}  // namespace tallow
