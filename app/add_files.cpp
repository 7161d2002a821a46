// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/add_files.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "library/cls_main.h"
#include "library/excluded_folders.h"
#include "util/file_system.h"
#include "util/like.h"
#include "util/number.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {
namespace {

/// Maps the songs' names in lower case to their rows. Of two songs with the same name the first is
/// used, and a song that is there is preferred to a song that is away.
std::unordered_map<std::string, std::int32_t> RowsByName(const clsMain& library) {
  std::unordered_map<std::string, std::int32_t> rows;
  rows.reserve(static_cast<std::size_t>(library.UBoundOfMp3Array()));
  for (const bool away : {false, true})
    for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
      if (library.IsPresent(row) && library.IsAway(row) == away)
        rows.emplace(ToLower(library.Mp3Info(kFileName, row)), row);
  return rows;
}

/// Collects the files for the given paths; never queries an unresponsive disk twice.
class FileCollector {
 public:
  FileCollector(clsMain& library, AddedFiles& taken, const GoOn& go_on)
      : library_(library), taken_(taken), go_on_(go_on) {}

  /// \returns the files; after a cancel, those found before it
  std::vector<std::string> Of(std::span<const std::string> paths) {
    for (std::size_t k = 0; k < paths.size(); ++k) {
      if (ShouldContinue(paths[k])) Add(paths[k]);
      if (!is_cancelled_) continue;
      left_ = paths.size() - k;
      break;
    }
    return std::move(files_);
  }
  /// Number of paths that were not checked.
  std::size_t left() const { return left_; }

  bool ShouldContinue(const std::string& path) {
    is_cancelled_ = is_cancelled_ || (go_on_ && !go_on_(path));
    return !is_cancelled_;
  }
  /// Once a local disk has responded for a folder, checks the folder's other files on this thread.
  FileStatus LookAt(const std::string& path) {
    const std::string_view folder = FolderOfPath(path);
    if (folder == answered_ && !library_.IsOnNetwork(path)) return CheckFile(path);
    const FileStatus look =
        library_.LookAt(path, [&](std::string_view) { return ShouldContinue(path); }, {});
    if (!library_.Unanswered()->Covers(path)) answered_ = folder;
    return look;
  }

 private:
  void Add(const std::string& path) {
    const FileStatus look = LookAt(path);
    if (is_cancelled_) return;
    const auto leave_out = [&](const std::string& why) { taken_.problems.push_back(path + why); };
    if (library_.Unanswered()->Covers(path))
      leave_out(" is on a drive that does not answer, and was left out.");
    else if (FolderExists(path))
      AddFolder(path);
    else if (!MatchesFilePattern(NameOfPath(path), kSongPattern))
      leave_out(" is no MP3 file and was left out.");
    else if (!MayBeSong(NameOfPath(path)))
      leave_out(" holds no music but what macOS keeps beside a file, and was left out.");
    else if (look.presence == FilePresence::kUnknown)
      leave_out(" cannot be read (" + look.problem + ") and was left out.");
    else if (look.presence == FilePresence::kNotThere)
      leave_out(" cannot be found and was left out.");
    else
      files_.push_back(path);
  }

  void AddFolder(const std::string& path) {
    const std::string folder = EnsureTrailingBackslash(path);
    FolderListing listing = ListFolder(folder, {.pattern = kSongPattern});
    std::erase_if(listing.files, [](const FileEntry& file) { return !MayBeSong(file.name); });
    std::sort(listing.files.begin(), listing.files.end(),
              [](const FileEntry& a, const FileEntry& b) { return a.name < b.name; });
    if (!listing.problem.empty())
      taken_.problems.push_back(
          path + " cannot be read (" + listing.problem +
          "), so songs in it may be left out. Make it readable and add it again.");
    else if (listing.files.empty())
      taken_.problems.push_back(path + " holds no MP3 file.");
    for (const FileEntry& file : listing.files) files_.push_back(folder + file.name);
  }

  clsMain& library_;
  AddedFiles& taken_;
  const GoOn& go_on_;
  std::vector<std::string> files_;
  std::string answered_;  ///< the last folder for which its disk has responded
  std::size_t left_ = 0;
  bool is_cancelled_ = false;
};

}  // namespace

AddedFiles AddFiles(std::span<const std::string> paths, clsMain& library, const GoOn& go_on) {
  AddedFiles taken;
  library.BeginScan(ScanKind::kFiles);
  FileCollector meant(library, taken, go_on);
  const std::vector<std::string> files = meant.Of(paths);
  std::int32_t old_count = library.UBoundOfMp3Array();
  auto known = RowsByName(library);
  std::vector<std::string> names;
  std::size_t left = meant.left() + files.size();
  for (const std::string& path : files) {
    if (!meant.ShouldContinue(path)) break;
    --left;
    // Resolves links as a search does: a link may point to a removable drive.
    const std::string folder =
        EnsureTrailingBackslash(AbsolutePath(std::string(FolderOfPath(path))));
    if (IsExcludedFolder(folder)) {
      taken.problems.push_back(
          path +
          " lies in a folder of unfinished or deleted files, or in a snapshot, and was left out.");
      continue;
    }
    names.push_back(ToLower(NameOfPath(path)));
    const auto found = known.find(names.back());
    // Checks the song with that name, because its file may have disappeared since the last search.
    // If the song is away, adds the file as new; the size decides, once all files have been added,
    // whether both are the same song. A song found in a recycle bin is replaced by the dropped
    // file.
    const bool counts = found != known.end() &&
                        !HoldsNoSongs(library.Mp3Info(kFileLocation, found->second)) &&
                        (found->second > old_count || library.CheckSong(found->second) ||
                         (library.IsPresent(found->second) && !library.IsAway(found->second)));
    if (counts) {
      library.LeaveOut(folder + std::string(NameOfPath(path)), found->second);
      continue;
    }
    const FileStatus look = meant.LookAt(path);
    known[names.back()] =
        library.AddSong(folder, NameOfPath(path),
                        look.presence == FilePresence::kThere ? static_cast<std::int64_t>(look.size)
                                                              : kUnknownSize);
    taken.has_new_songs = true;
  }
  if (left > 0)
    taken.problems.push_back("The drop was cancelled: " + std::to_string(left) +
                             (left == 1 ? " file was" : " files were") + " not looked at.");
  if (taken.has_new_songs) {
    library.DeleteIdenticalFileNamesAndPaths(old_count);
    taken.has_new_songs = library.UBoundOfMp3Array() > old_count;
    library.WriteOutMp3DirectoryLocations();
    if (!library.SaveError().empty())
      taken.problems.push_back("The new songs could not be saved. " + library.SaveError() + ".");
    known = RowsByName(library);
  }
  taken.returned = library.TakeReturned();
  taken.report = library.FinishScan(false, go_on);
  for (const std::string& problem : library.TakeProblems()) taken.problems.push_back(problem);
  for (const std::string& name : names)
    if (const auto found = known.find(name); found != known.end())
      taken.songs.emplace_back(found->second,
                               NumericValue(library.Mp3Info(kSongRank, found->second)));
  return taken;
}

}  // namespace tallow
