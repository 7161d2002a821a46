// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/file_again_command.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>

#include "app/tallow.h"
#include "jukebox/jukebox.h"
#include "jukebox/special_folders.h"
#include "util/number.h"

namespace tallow {
namespace {

/// "1 song was", "12 songs were".
std::string SongsWere(std::size_t songs) {
  return GroupedNumber(static_cast<std::int64_t>(songs)) +
         (songs == 1 ? " song was" : " songs were");
}

/// What was done.
/// \param read, songs number of songs whose tags were read, and of all
std::string ResultLine(bool is_complete, std::size_t read, std::size_t songs) {
  if (songs == 0)
    return "No song was filed again: there is none here, or the files cannot be read now.";
  if (is_complete) return SongsWere(read) + " filed again by the tags.";
  return "Filing was cancelled: " + SongsWere(read) + " filed again by the tags, " +
         GroupedNumber(static_cast<std::int64_t>(songs - read)) + " stay where they are.";
}

}  // namespace

std::vector<std::int32_t> SongsToFileAgain(const Jukebox& jukebox, const std::vector<int>& selected,
                                           const clsMain& library) {
  const Folder* const folder = jukebox.ListFolder();
  if (folder == nullptr) return SongsThatArePresent(library);
  if (selected.empty()) return SongsIn(*folder);
  std::vector<std::int32_t> songs;
  for (const int row : selected)
    if (row >= 0 && static_cast<std::size_t>(row) < folder->Items().size())
      songs.push_back(folder->Items()[static_cast<std::size_t>(row)].SubItem());
  return songs;
}

FiledAgain FileSongsAgain(std::span<const std::int32_t> songs, Tallow& tallow,
                          std::span<Jukebox* const> windows, const BeginLongWork& begin,
                          FileAgainScope scope) {
  const std::unique_ptr<LongWork> work = begin ? begin(kFilingSongs) : nullptr;
  std::size_t read_songs = 0;
  std::size_t all_songs = 0;
  const FilingProgress progress = [&](std::size_t read, std::size_t all) {
    read_songs = read;
    all_songs = all;
    return work == nullptr || work->GoOn([=] { return FilingLine(read, all); });
  };
  FiledAgain filed;
  std::vector<std::string> problems;
  try {
    filed.is_complete = FileAgainByTags(songs, tallow.library, windows, tallow.details.TagReader(),
                                        progress, scope);
  } catch (const FilingError& error) {
    problems = error.problems();
    filed.is_complete = read_songs == all_songs;
  } catch (const std::exception& error) {
    problems.push_back(std::string("The songs could not be filed again. ") + error.what());
  }
  filed.lines.push_back(ResultLine(filed.is_complete, read_songs, all_songs));
  filed.lines.insert(filed.lines.end(), problems.begin(), problems.end());
  return filed;
}

FiledAgain AddAlbumFolder(Jukebox& jukebox, Tallow& tallow, const BeginLongWork& begin) {
  Jukebox* const windows[] = {&jukebox};
  FiledAgain filed = FileSongsAgain(SongsThatArePresent(tallow.library), tallow, windows, begin,
                                    FileAgainScope::kAlbum);
  const Folder* const album = FindAlbumFolder(jukebox.Nodes());
  if (!filed.is_complete || album == nullptr) return filed;
  if (album->Children() == 0)
    filed.lines.front() = "The folder Album was added, but no song names its album.";
  else
    filed.lines.front() = GroupedNumber(album->Children()) +
                          (album->Children() == 1 ? " album folder was" : " album folders were") +
                          " added.";
  return filed;
}

bool OffersAlbumFolder(const Jukebox& jukebox, const clsMain& library) {
  return library.Switches().albums && FindAlbumFolder(jukebox.Nodes()) == nullptr;
}

}  // namespace tallow
