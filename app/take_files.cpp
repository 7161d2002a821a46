// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/take_files.h"

#include <algorithm>
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

/// The rows of the songs by their names in lower case. Of two of a name the first counts, and one that is
/// there before one that is away.
std::unordered_map<std::string, std::int32_t> RowsByName(const clsMain& library) {
  std::unordered_map<std::string, std::int32_t> rows;
  rows.reserve(static_cast<std::size_t>(library.UBoundOfMp3Array()));
  for (const bool away : {false, true})
    for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
      if (library.IsPresent(row) && library.IsAway(row) == away)
        rows.emplace(ToLower(library.Mp3Info(kFileName, row)), row);
  return rows;
}

/// The files that are meant, and what cannot be meant.
std::vector<std::string> FilesOf(std::span<const std::string> paths,
                                 std::vector<std::string>& problems, const GoOn& go_on) {
  std::vector<std::string> files;
  for (const std::string& path : paths) {
    // The files of the folders until here are taken as far as that is wanted.
    if (go_on && !go_on(path)) break;
    if (FolderExists(path)) {
      const std::string folder = EnsureTrailingBackslash(path);
      FolderListing listing = ListFolder(folder, {.pattern = kSongPattern});
      std::erase_if(listing.files, [](const FileEntry& file) { return !MayBeSong(file.name); });
      std::sort(listing.files.begin(), listing.files.end(),
                [](const FileEntry& a, const FileEntry& b) { return a.name < b.name; });
      if (!listing.problem.empty())
        problems.push_back(path + " cannot be read (" + listing.problem +
                           "), so songs in it may be left out. Make it readable and add it again.");
      else if (listing.files.empty())
        problems.push_back(path + " holds no MP3 file.");
      for (const FileEntry& file : listing.files) files.push_back(folder + file.name);
    } else if (!MatchesFilePattern(NameOfPath(path), kSongPattern)) {
      problems.push_back(path + " is no MP3 file and was left out.");
    } else if (!MayBeSong(NameOfPath(path))) {
      problems.push_back(path +
                         " holds no music but what macOS keeps beside a file, and was left out.");
    } else if (const FileLook look = LookAtFile(path); look.presence == FilePresence::kUnknown) {
      problems.push_back(path + " cannot be read (" + look.problem + ") and was left out.");
    } else if (look.presence == FilePresence::kNotThere) {
      problems.push_back(path + " cannot be found and was left out.");
    } else {
      files.push_back(path);
    }
  }
  return files;
}

}  // namespace

TakenFiles TakeFiles(std::span<const std::string> paths, clsMain& library, const GoOn& go_on) {
  TakenFiles taken;
  library.BeginScan(ScanKind::kFiles);
  const std::vector<std::string> files = FilesOf(paths, taken.problems, go_on);
  std::int32_t old_count = library.UBoundOfMp3Array();
  auto known = RowsByName(library);
  std::vector<std::string> names;
  std::size_t looked_at = 0;
  for (const std::string& path : files) {
    if (go_on && !go_on(path)) {
      taken.problems.push_back(
          "The drop was cancelled: " + std::to_string(files.size() - looked_at) +
          " files were not looked at.");
      break;
    }
    ++looked_at;
    // As a search finds it: a link may lead to a drive that goes.
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
    // A song of the name may have gone since the last search. Of one that is away the size decides, once
    // all files have been added.
    // What was found in a recycle bin gives way to what is dropped.
    const bool counts = found != known.end() &&
                        !HoldsNoSongs(library.Mp3Info(kFileLocation, found->second)) &&
                        (found->second > old_count || library.CheckSong(found->second) ||
                         (library.IsPresent(found->second) && !library.IsAway(found->second)));
    if (counts) {
      library.LeaveOut(folder + std::string(NameOfPath(path)), found->second);
      continue;
    }
    const FileLook look = LookAtFile(path);
    known[names.back()] =
        library.AddSong(folder, NameOfPath(path),
                        look.presence == FilePresence::kThere ? static_cast<std::int64_t>(look.size)
                                                              : kUnknownSize);
    taken.has_new_songs = true;
  }
  if (taken.has_new_songs) {
    library.DeleteIdenticalFileNamesAndPaths(old_count);
    taken.has_new_songs = library.UBoundOfMp3Array() > old_count;
    library.WriteOutMp3DirectoryLocations();
    if (!library.SaveError().empty())
      taken.problems.push_back("The new songs could not be saved. " + library.SaveError() + ".");
    known = RowsByName(library);
  }
  taken.returned = library.TakeReturned();
  taken.report = library.FinishScan(false);
  for (const std::string& problem : library.TakeProblems()) taken.problems.push_back(problem);
  for (const std::string& name : names)
    if (const auto found = known.find(name); found != known.end())
      taken.songs.emplace_back(found->second,
                               NumericValue(library.Mp3Info(kSongRank, found->second)));
  return taken;
}

}  // namespace tallow
