// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/file_search.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>

#include "app/search/folder_reader.h"
#include "app/search/music_places.h"
#include "library/excluded_folders.h"
#include "library/folder_scan.h"
#include "library/song_formats.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// Error message for a place that the user has chosen and that is not there.
constexpr std::string_view kIsAway = "It is away: its drive is not connected, or it was removed";

/// The target of a link to a folder.
struct LinkTarget {
  std::optional<FolderIdentity> identity;
  std::string path;
};

/// Whether a folder does not exist any more. If the nearest folder above it is empty, that may be
/// the mount point of a disk that is not mounted.
bool IsFolderGone(const std::string& folder) {
  std::string_view place(folder);
  while (IsGone(std::string(place))) {
    const std::string_view above = FolderOfPath(place.substr(0, place.size() - 1));
    if (above.empty() || above.size() >= place.size()) return false;
    place = above;
  }
  return place != folder && StateOfFolder(std::string(place)) == FolderState::kHasEntries;
}

}  // namespace

FileSearch::FileSearch(Tallow& tallow, const DriveList& drives, SearchProgress* progress,
                       const QuestionLimits& limits)
    : tallow_(tallow),
      drives_(drives),
      questions_(tallow, progress, limits),
      choice_(tallow.preferences) {}

FileSearch::~FileSearch() = default;

std::string FileSearch::SongPatternNow() const {
  return std::string(SongPattern(tallow_.library.Switches()));
}

void FileSearch::ReportPlace(const std::string& place) {
  SearchProgress* const shown = questions_.Shown();
  if (shown == nullptr) return;
  questions_.Report("Looking for " + std::string(SongsInTexts(tallow_.library.Switches())) +
                    " in " + place);
  shown->Repaint();
}

bool FileSearch::SearchDrivesForMp3s(bool all_drives, std::string_view folder) {
  FileSearchRequest request{.AddToLibrary = true, .Folder = {}, .Pattern = SongPatternNow()};
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
    if (questions_.PauseAndTestForCancel()) return false;
    ReportPlace(root);
    // Checks the kind of the drive here, because the drive may not respond.
    if (IsSearchedAndAnswers(root)) WalkPlace(request, root);
    if (questions_.WasStopped()) return questions_.EndStopped();
  }
  if (!WalkChosenPlaces(request) || !WalkLinkedFolders(request)) return false;
  ForgetGoneFolders();
  return !questions_.WasStopped() || questions_.EndStopped();
}

void FileSearch::ForgetGoneFolders() {
  clsMain& library = tallow_.library;
  const std::vector<UnreadFolder> unread = library.UnreadFoldersNow();
  std::vector<std::string> folders = library.Findings().NotVisited();
  std::erase_if(folders, [&](const std::string& folder) {
    return !library.AwayRootOf(folder).empty() || library.Unanswered()->Covers(folder) ||
           std::any_of(unread.begin(), unread.end(),
                       [&](const UnreadFolder& other) { return folder.starts_with(other.path); });
  });
  if (folders.empty()) return;
  const auto gone = questions_.Ask<std::vector<std::string>>(
      [folders] {
        std::vector<std::string> found;
        std::copy_if(folders.begin(), folders.end(), std::back_inserter(found), IsFolderGone);
        return found;
      },
      folders.front());
  if (!gone) return;
  for (const std::string& folder : *gone) library.RememberGone(folder);
}

bool FileSearch::WalkChosenPlaces(FileSearchRequest& request) {
  if (tallow_.has_given_drives) return true;
  for (const MusicPlace& place : MusicPlaces(drives_, &choice_)) {
    const bool is_drive = place.kind == PlaceKind::kAway;
    if (!place.is_ticked || !(is_drive || place.kind == PlaceKind::kFolder)) continue;
    if (questions_.PauseAndTestForCancel()) return false;
    ReportPlace(place.root);
    if (IsChosenAndThere(place.root, is_drive)) WalkPlace(request, place.root);
    if (questions_.WasStopped()) return questions_.EndStopped();
  }
  return true;
}

void FileSearch::WalkPlace(FileSearchRequest& request, const std::string& root) {
  struct ShownPlace {
    std::string& shown;
    ~ShownPlace() { shown.clear(); }
  };
  tallow_.place_being_searched = root;
  const ShownPlace place{tallow_.place_being_searched};
  request.Folder = root;
  WalkFolderTree(request);
  if (!questions_.WasStopped()) choice_.MarkRead(root);
}

bool FileSearch::WalkLinkedFolders(FileSearchRequest& request) {
  // A linked folder may hold further links, which are appended to the list.
  for (std::size_t k = 0; k < linked_.size(); ++k) {
    // The target may be on a share that does not respond.
    const auto target = questions_.Ask<LinkTarget>(
        [link = linked_[k]]() -> LinkTarget {
          const auto identity = IdentityOfFolder(link);
          return {identity, identity ? RealPathOfFolder(link) : std::string()};
        },
        linked_[k]);
    if (questions_.WasStopped()) return questions_.EndStopped();
    if (!target) RememberUnresponsive(linked_[k]);
    if (!target || !target->identity || visited_.contains(*target->identity)) continue;
    if (!drives_.MayFollow(linked_[k])) continue;
    // The target may be a whole disk, so its search is announced and can be cancelled like a
    // disk's.
    const std::string folder = EnsureTrailingBackslash(target->path);
    if (LiesInSkippedFolder(folder) || IsOnUntickedDrive(folder)) continue;
    if (questions_.PauseAndTestForCancel()) return false;
    ReportPlace(folder);
    request.Folder = folder;
    WalkFolderTree(request);
    if (questions_.WasStopped()) return questions_.EndStopped();
  }
  return true;
}

void FileSearch::RememberUnresponsive(const std::string& place) {
  tallow_.library.RememberUnread(EnsureTrailingBackslash(place), true, std::string(kDoesNotAnswer));
}

bool FileSearch::IsOnUntickedDrive(const std::string& folder) const {
  return !tallow_.has_given_drives && !choice_.IsDefault() &&
         choice_.IsUnticked(DriveOfPath(drives_, folder));
}

bool FileSearch::IsTickedAndThere(const std::string& root) {
  const auto is_there = questions_.Ask<bool>([root] { return FolderExists(root); }, root);
  if (questions_.WasStopped()) return false;
  tallow_.library.ForgetUnread(root);
  if (!is_there) RememberUnresponsive(root);
  if (is_there == false) tallow_.library.RememberUnread(root, true, kIsAway);
  return is_there == true;
}

bool FileSearch::IsChosenAndThere(const std::string& root, bool is_drive) {
  const auto state = questions_.Ask<FolderState>([root] { return StateOfFolder(root); }, root);
  if (questions_.WasStopped()) return false;
  tallow_.library.ForgetUnread(root);
  if (!state) RememberUnresponsive(root);
  if (!state) return false;
  // The mount point of a drive that is not mounted is an empty folder. An automounter has mounted
  // the drive now.
  const bool is_there =
      is_drive ? *state == FolderState::kHasEntries : *state != FolderState::kNotThere;
  if (!is_there) tallow_.library.RememberUnread(root, true, kIsAway);
  return is_there;
}

bool FileSearch::IsSearchedAndAnswers(const std::string& root) {
  if (!tallow_.has_given_drives && choice_.IsUnticked(root)) return false;
  if (!tallow_.has_given_drives && choice_.IsTicked(root, false)) return IsTickedAndThere(root);
  const std::optional<bool> is_searched = questions_.IsSearched(drives_, root);
  if (!is_searched && !questions_.WasStopped()) RememberUnresponsive(root);
  return is_searched.value_or(false);
}

bool FileSearch::Visit(const TreeFolder& folder) {
  // A file system without folder numbers reports 0 for every folder.
  const FolderIdentity& identity = folder.listing.identity;
  return folder.listing.opened && (identity.number == 0 || visited_.insert(identity).second);
}

void FileSearch::RememberIfUnread(const FileSearchRequest& request, const TreeFolder& folder) {
  if (!folder.listing.problem.empty())
    tallow_.library.RememberUnread(folder.path, request.Recurse, folder.listing.problem);
}

void FileSearch::SearchUnreadFolders(const std::function<bool(const std::string&)>& answers) {
  FileSearchRequest request{
      .Recurse = true, .AddToLibrary = true, .Folder = {}, .Pattern = SongPatternNow()};
  for (const UnreadFolder& folder : tallow_.library.UnreadFoldersNow()) {
    clsMain& library = tallow_.library;
    // Folders on a drive that is away are searched once the drive is back.
    if (!folder.below || !library.AwayRootOf(folder.path).empty() || !answers(folder.path))
      continue;
    if (IsGone(folder.path)) {
      const std::string_view path(folder.path);
      const std::string above(FolderOfPath(path.substr(0, path.size() - 1)));
      // If the folder above is empty, it may be the mount point of a disk that is not mounted.
      if (StateOfFolder(above) == FolderState::kHasEntries) library.ForgetUnread(folder.path);
      continue;
    }
    library.ForgetUnread(folder.path);
    request.Folder = folder.path;
    WalkFolderTree(request);
    if (!questions_.WasStopped()) continue;
    library.RememberUnread(folder.path, true, folder.problem);
    return;
  }
}

std::function<bool()> FileSearch::IdleCallback() {
  if (questions_.Shown() == nullptr) return {};
  return [this] { return questions_.ProcessEvents(); };
}

double FileSearch::WalkFolderTree(FileSearchRequest& request) {
  const Switches& switches = tallow_.library.Switches();
  // Filing has no use for these tags if it needs others.
  const bool reads = request.AddToLibrary && !switches.newer_tags && !switches.albums;
  FolderReader reader(
      request.Pattern, request.Recurse,
      [this](const std::string& folder) {
        const std::string_view path(folder);
        return !IsSkippedFolderName(NameOfPath(path.substr(0, path.size() - 1))) &&
               !drives_.IsMountPoint(folder);
      },
      // Reads the ID3v1 tags of songs along with the folder, because songs added to the library are
      // filed next.
      [reads](const std::string& folder) { return reads && !IsExcludedFolder(folder); });

  /// A folder whose files are done and whose subfolders are being walked.
  struct Level {
    std::shared_ptr<TreeFolder> folder;
    std::size_t next = 0;  ///< index of the next subfolder
    double total = 0;      ///< bytes of its own files and of the subfolders that are done
  };
  std::vector<Level> levels;
  questions_.BeginWalk();
  const std::function<bool()> go_on = IdleCallback();
  const auto enter = [&](std::shared_ptr<TreeFolder> folder) {
    if (!reader.WaitFor(folder, go_on)) return;
    if (request.AddToLibrary && !HoldsNoSongs(folder->path)) RememberIfUnread(request, *folder);
    if (!Visit(*folder)) return;
    reader.Enter(*folder);
    if (SearchProgress* const shown = questions_.Shown()) shown->VisitFolder(folder->path);
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
  while (!levels.empty() && !questions_.WasStopped()) {
    Level& level = levels.back();
    if (level.next < level.folder->subfolders.size()) {
      // A cancel during the last folder of the last drive stops the next search.
      if (questions_.MustStop()) break;
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
                        ListFolder(folder, {.pattern = request.Pattern,
                                            .counted = OtherSongs(request.Pattern),
                                            .sizes = true}));
}

std::int64_t FileSearch::AddListedFiles(FileSearchRequest& request, const std::string& folder,
                                        const FolderListing& listing) {
  const bool add = request.AddToLibrary && !IsExcludedFolder(folder);
  clsMain& library = tallow_.library;
  if (add && listing.opened && listing.problem.empty())
    library.RememberVisit(folder, listing.counted);
  std::int64_t total = 0;
  for (const FileEntry& file : listing.files) {
    ++request.FilesFound;
    const std::int64_t size =
        file.size != kNoLimit ? static_cast<std::int64_t>(file.size) : kUnknownSize;
    total += std::max<std::int64_t>(size, 0);
    if (!add || !MayBeSong(file.name)) continue;
    const std::int32_t row = library.AddSong(folder, file.name, size);
    tallow_.found_tags.Add(folder, file.name, file.tail);
    if (SearchProgress* const shown = questions_.Shown()) {
      shown->SetFound("Found " + std::to_string(row) + " " +
                      std::string(SongsInTexts(library.Switches())));
      shown->Repaint();
      shown->Repaint();
      shown->YieldAfterSong();
    }
  }
  return total;
}

}  // namespace tallow
