// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/take_files.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "app/search/file_search.h"
#include "library/cls_main.h"
#include "util/file_system.h"
#include "util/like.h"
#include "util/number.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr std::string_view kSongPattern = "*.mp3";

/// The rows of the present songs by their names in lower case. Of two of a name the first counts.
std::unordered_map<std::string, std::int32_t> RowsByName(const clsMain& library) {
  std::unordered_map<std::string, std::int32_t> rows;
  rows.reserve(static_cast<std::size_t>(library.UBoundOfMp3Array()));
  for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
    if (NumericValue(library.Mp3Info(kFileIsThere, row)) != 0)
      rows.emplace(ToLower(library.Mp3Info(kFileName, row)), row);
  return rows;
}

/// The files that are meant, and what cannot be meant.
std::vector<std::string> FilesOf(std::span<const std::string> paths,
                                 std::vector<std::string>& problems) {
  std::vector<std::string> files;
  for (const std::string& path : paths) {
    if (FolderExists(path)) {
      const std::string folder = EnsureTrailingBackslash(path);
      FolderListing listing = ListFolder(folder, {.pattern = kSongPattern});
      std::sort(listing.files.begin(), listing.files.end(),
                [](const FileEntry& a, const FileEntry& b) { return a.name < b.name; });
      if (listing.files.empty()) problems.push_back(path + " holds no MP3 file.");
      for (const FileEntry& file : listing.files) files.push_back(folder + file.name);
    } else if (!MatchesFilePattern(NameOfPath(path), kSongPattern)) {
      problems.push_back(path + " is no MP3 file and was left out.");
    } else if (!FileExists(path)) {
      problems.push_back(path + " cannot be found and was left out.");
    } else {
      files.push_back(path);
    }
  }
  return files;
}

}  // namespace

TakenFiles TakeFiles(std::span<const std::string> paths, clsMain& library) {
  TakenFiles taken;
  const std::vector<std::string> files = FilesOf(paths, taken.problems);
  std::int32_t old_count = library.UBoundOfMp3Array();
  auto known = RowsByName(library);
  std::vector<std::string> names;
  for (const std::string& path : files) {
    const std::string folder(FolderOfPath(path));
    if (IsExcludedFolder(folder)) {
      taken.problems.push_back(
          path + " lies in a folder of unfinished or deleted files and was left out.");
      continue;
    }
    const std::string_view name = NameOfPath(path);
    names.push_back(ToLower(name));
    const std::int32_t row = library.UBoundOfMp3Array() + 1;
    if (!known.emplace(names.back(), row).second) continue;
    library.Mp3Info(kFileLocation, row, folder);
    library.Mp3Info(kFileName, row, name);
    library.Mp3Info(kFileIsThere, row, "1");
    library.Mp3Info(kRecordNumber, row, std::to_string(row));
    library.Mp3Info(kSongRank, row, "2");
    taken.has_new_songs = true;
  }
  if (taken.has_new_songs) {
    library.DeleteIdenticalFileNamesAndPaths(old_count);
    library.WriteOutMp3DirectoryLocations();
    if (!library.SaveError().empty())
      taken.problems.push_back("The new songs could not be saved. " + library.SaveError() + ".");
    known = RowsByName(library);
  }
  for (const std::string& name : names)
    if (const auto found = known.find(name); found != known.end())
      taken.songs.emplace_back(found->second,
                               NumericValue(library.Mp3Info(kSongRank, found->second)));
  return taken;
}

}  // namespace tallow
