// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/add_files.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "library/cls_main.h"
#include "library/excluded_folders.h"
#include "library/song_formats.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {
namespace {

/// The key by which a file is recognized as a song: its name in lower case, or where a song is a
/// path, that.
std::string SongKey(const clsMain& library, std::string_view folder, std::string_view name) {
  return library.Switches().songs_by_path ? PathKey(std::string(folder) + std::string(name))
                                          : ToLower(name);
}

/// Maps the songs' keys to their rows. Of two songs with the same key the first is used, and a
/// present song is preferred to a song that is away.
std::unordered_map<std::string, std::int32_t> RowsByKey(const clsMain& library) {
  std::unordered_map<std::string, std::int32_t> rows;
  rows.reserve(static_cast<std::size_t>(library.UBoundOfMp3Array()));
  for (const bool away : {false, true})
    for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row) {
      const SongView song = library.Song(row);
      if (song.IsPresent() && song.IsAway() == away)
        rows.emplace(SongKey(library, song.Folder(), song.Name()), row);
    }
  return rows;
}

/// Collects the files for the given paths; never queries an unresponsive disk twice.
class FileCollector {
 public:
  FileCollector(clsMain& library, AddedFiles& added, const GoOn& go_on, const ExpandFolder& expand)
      : library_(library), added_(added), go_on_(go_on), expand_(expand) {}

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
  FileStatus CheckPath(const std::string& path) {
    const std::string_view folder = FolderOfPath(path);
    if (folder == answered_ && !library_.IsOnNetwork(path)) return CheckFile(path);
    const FileStatus status =
        library_.CheckPath(path, [&](std::string_view) { return ShouldContinue(path); }, {});
    if (!library_.Unanswered()->Covers(path)) answered_ = folder;
    return status;
  }

 private:
  void Add(const std::string& path) {
    const FileStatus status = CheckPath(path);
    if (is_cancelled_) return;
    const auto leave_out = [&](const std::string& why) { added_.problems.push_back(path + why); };
    if (library_.Unanswered()->Covers(path))
      leave_out(" is on a drive that does not answer and was skipped.");
    else if (FolderExists(path))
      AddFolders(path);
    else if (!IsSongName(NameOfPath(path), library_.Switches()))
      leave_out(library_.Switches().more_formats ? " is not a music file and was skipped."
                                                 : " is not an MP3 file and was skipped.");
    else if (!MayBeSong(NameOfPath(path)))
      leave_out(" is a macOS metadata file without music and was skipped.");
    else if (status.presence == FilePresence::kUnknown)
      leave_out(" cannot be read (" + status.problem + ") and was skipped.");
    else if (status.presence == FilePresence::kNotThere)
      leave_out(" cannot be found and was skipped.");
    else
      files_.push_back(path);
  }

  void AddFolders(const std::string& path) {
    if (!expand_) return AddFolder(path);
    const GoOn go_on = [this](std::string_view folder) {
      return ShouldContinue(std::string(folder));
    };
    const std::vector<std::string> folders = expand_(path, go_on, added_.problems);
    if (is_cancelled_) return;
    // A folder that stays as it is keeps the spelling in which it was dropped.
    if (folders.size() == 1 && folders.front() == EnsureTrailingBackslash(path))
      return AddFolder(path);
    for (const std::string& folder : folders) AddFolder(folder);
  }

  void AddFolder(const std::string& path) {
    const std::string folder = EnsureTrailingBackslash(path);
    FolderListing listing = ListFolder(folder, {.pattern = SongPattern(library_.Switches())});
    std::erase_if(listing.files, [](const FileEntry& file) { return !MayBeSong(file.name); });
    std::sort(listing.files.begin(), listing.files.end(),
              [](const FileEntry& a, const FileEntry& b) { return a.name < b.name; });
    if (!listing.problem.empty())
      added_.problems.push_back(
          path + " cannot be read (" + listing.problem +
          "), so songs in it may be left out. Make it readable and add it again.");
    else if (listing.files.empty())
      added_.problems.push_back(path + (library_.Switches().more_formats ? " holds no music file."
                                                                         : " holds no MP3 file."));
    for (const FileEntry& file : listing.files) files_.push_back(folder + file.name);
  }

  clsMain& library_;
  AddedFiles& added_;
  const GoOn& go_on_;
  const ExpandFolder& expand_;
  std::vector<std::string> files_;
  std::string answered_;  ///< the last folder whose disk has responded
  std::size_t left_ = 0;
  bool is_cancelled_ = false;
};

/// Adds files to the library one by one. A file is left out if the library has a song of the same
/// file name, or path, that is present; this song is then used for the file.
class FileAdder {
 public:
  FileAdder(clsMain& library, AddedFiles& added, FileCollector& collector)
      : library_(library), added_(added), collector_(collector), known_(RowsByKey(library)) {}

  void Add(const std::string& path) {
    // Resolves links as a search does: a link may point to a removable drive.
    const std::string folder =
        EnsureTrailingBackslash(AbsolutePath(std::string(FolderOfPath(path))));
    if (IsExcludedFolder(folder)) {
      added_.problems.push_back(
          path +
          " lies in a folder of unfinished or deleted files, or in a snapshot, and was skipped.");
      return;
    }
    const std::string_view name = NameOfPath(path);
    keys_.push_back(SongKey(library_, folder, name));
    const auto found = known_.find(keys_.back());
    if (found != known_.end() && StandsFor(found->second)) {
      library_.LeaveOut(folder + std::string(name), found->second);
      return;
    }
    const FileStatus status = collector_.CheckPath(path);
    known_[keys_.back()] = library_.AddSong(folder, name,
                                            status.presence == FilePresence::kThere
                                                ? static_cast<std::int64_t>(status.size)
                                                : kUnknownSize);
    added_.has_new_songs = true;
  }

  /// Removes duplicates and saves.
  void Save() {
    if (!added_.has_new_songs) return;
    library_.DeleteIdenticalFileNamesAndPaths(old_count_);
    added_.has_new_songs = library_.UBoundOfMp3Array() > old_count_;
    library_.WriteOutMp3DirectoryLocations();
    if (!library_.SaveError().empty())
      added_.problems.push_back("The new songs could not be saved. " + library_.SaveError() + ".");
    known_ = RowsByKey(library_);
  }

  /// Sets AddedFiles::songs: the song for each file.
  void ListSongs() const {
    for (const std::string& key : keys_)
      if (const auto found = known_.find(key); found != known_.end())
        added_.songs.emplace_back(found->second, library_.Song(found->second).Rank());
  }

 private:
  /// Checks a song with a file's name, because the song's file may have disappeared since the last
  /// search. If the song is away, the file is added as new; the size decides, once all files have
  /// been added, whether both are the same song. A song found in a recycle bin is replaced by the
  /// dropped file.
  bool StandsFor(std::int32_t row) {
    return !HoldsNoSongs(library_.Song(row).Folder()) &&
           (row > old_count_ || library_.CheckSong(row) ||
            (library_.IsPresent(row) && !library_.IsAway(row)));
  }

  clsMain& library_;
  AddedFiles& added_;
  FileCollector& collector_;
  std::unordered_map<std::string, std::int32_t> known_;
  std::vector<std::string> keys_;
  std::int32_t old_count_ = library_.UBoundOfMp3Array();
};

}  // namespace

AddedFiles AddFiles(std::span<const std::string> paths, clsMain& library, const GoOn& go_on,
                    const ExpandFolder& expand) {
  AddedFiles added;
  library.BeginScan(ScanKind::kFiles);
  FileCollector collector(library, added, go_on, expand);
  const std::vector<std::string> files = collector.Of(paths);
  FileAdder adder(library, added, collector);
  std::size_t left = collector.left() + files.size();
  for (const std::string& path : files) {
    if (!collector.ShouldContinue(path)) break;
    --left;
    adder.Add(path);
  }
  if (left > 0)
    added.problems.push_back("The drop was cancelled: " + std::to_string(left) +
                             (left == 1 ? " file was" : " files were") + " not processed.");
  adder.Save();
  added.returned = library.TakeReturned();
  added.report = library.FinishScan(false, go_on);
  for (const std::string& problem : library.TakeProblems()) added.problems.push_back(problem);
  adder.ListSongs();
  return added;
}

}  // namespace tallow
