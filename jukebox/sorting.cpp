// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/sorting.h"

#include <optional>
#include <utility>

#include "jukebox/filing.h"
#include "jukebox/filing_tags.h"
#include "jukebox/jukebox.h"
#include "library/cls_main.h"
#include "library/folder_scan.h"
#include "library/mp3_genra.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr std::string_view kAllSongs = "All Songs";

/// Maximum number of entries without a song that are reported one by one; a damaged jukebox may
/// have millions.
constexpr std::size_t kMaxNamed = 100;

/// Creates the entry of a song, with its record number and with its rank as icon.
SongEntry EntryOf(const SongView& song) { return {song.RecordNumber(), song.Rank()}; }

/// Result of filing into one jukebox.
enum class Filed {
  kAll,
  kNoSongs,    ///< the library is empty
  kCancelled,  ///< cancelled before the last song
};

/// How songs are filed, see FillAutomaticFolders.
struct FilingRun {
  int mode;
  clsMain& library;
  const TagCache* found_tags;
  const FilingProgress& progress;
  const ReadTags& read_tags;
  std::vector<std::string>& problems;
};

/// The songs that one jukebox lacks, and the folders that hold every song.
struct SongsToFile {
  std::vector<std::int32_t> rows;
  std::vector<Folder*> for_all;
};

/// Returns the songs to file into one jukebox; no value when the library is empty.
std::optional<SongsToFile> FindSongsToFile(const FolderTree& tree, const FilingRun& run) {
  SongsToFile songs;
  Folder* const all_songs = tree.Find(kAllSongs);
  if (all_songs == nullptr) return songs;
  std::vector<char> flags;
  MarkSongsToFile(*all_songs, run.library, flags, run.problems);
  if (flags.empty()) return std::nullopt;
  for (std::size_t k = 0; k < flags.size(); ++k)
    if (flags[k]) songs.rows.push_back(static_cast<std::int32_t>(k + 1));
  songs.for_all.push_back(all_songs);
  Folder* const latest = tree.Find("New");
  if (run.mode != kFillAllButNew && latest != nullptr) songs.for_all.push_back(latest);
  for (Folder* const folder : songs.for_all)
    folder->Items().reserve(folder->Items().size() + songs.rows.size());
  return songs;
}

/// Files the songs that are not yet in one jukebox.
Filed FillJukebox(Jukebox& jukebox, const FilingRun& run) {
  clsMain& library = run.library;
  jukebox.IsFormDirty(true);
  const std::optional<SongsToFile> songs = FindSongsToFile(jukebox.Nodes(), run);
  if (!songs) return Filed::kNoSongs;
  Filing filing(jukebox.Nodes(), library, run.problems);
  const SongTagReader reader(library, run.found_tags, run.read_tags, filing.FilesAlbums());
  std::size_t filed = 0;
  GoOn go_on;
  if (run.progress)
    go_on = [&](std::string_view) { return run.progress(filed, songs->rows.size()); };
  Filed result = Filed::kAll;
  try {
    reader.Read(
        songs->rows,
        [&](std::size_t k, const ReadSong& song) {
          // Each song is added to all its folders at once, so that filing can be cancelled after
          // any song. A song on a drive that does not answer is not filed.
          if (song.is_answered) {
            for (Folder* const folder : songs->for_all)
              folder->Items().push_back(EntryOf(library.Song(songs->rows[k])));
            filing.File(songs->rows[k], song.tags);
            ++filed;
          }
          if (go_on && !go_on({})) throw Stopped();
        },
        go_on);
  } catch (const Stopped&) {
    result = Filed::kCancelled;
  }
  ArrangeFiled(filing, reader, jukebox.History(), false, go_on);
  jukebox.ListRefilled(library);
  return result;
}

}  // namespace

FilingError::FilingError(std::vector<std::string> problems)
    : std::runtime_error(problems.front()), problems_(std::move(problems)) {}

std::string FilingLine(std::size_t filed, std::size_t songs) {
  return "Filed " + std::to_string(filed) + " of " + std::to_string(songs) + " songs";
}

std::string FilingCancelledLine() {
  return "Filing was cancelled; the remaining songs will be filed when the jukebox is next opened";
}

bool FillAutomaticFolders(int mode, bool skip_sort, std::string_view caption, clsMain& library,
                          std::span<Jukebox* const> windows, const TagCache* found_tags,
                          const FilingProgress& progress, const ReadTags& read_tags) {
  if (!skip_sort) library.SortByRecord();
  std::vector<std::string> problems;
  const FilingRun run{mode, library, found_tags, progress, read_tags, problems};
  Filed filed = Filed::kAll;
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (!caption.empty() && (*window)->Caption() != caption) continue;
    filed = FillJukebox(**window, run);
    if (filed != Filed::kAll) break;
  }
  if (!problems.empty()) throw FilingError(std::move(problems));
  return filed != Filed::kCancelled;
}

void MarkSongsToFile(const Folder& folder, const clsMain& library, std::vector<char>& flags,
                     std::vector<std::string>& problems) {
  const std::int32_t count = library.UBoundOfMp3Array();
  flags.assign(static_cast<std::size_t>(count), 1);
  if (count == 0) return;
  for (std::int32_t row = 1; row <= count; ++row) {
    const SongView song = library.Song(row);
    if (!song.IsPresent() || song.IsAway()) flags[static_cast<std::size_t>(row - 1)] = 0;
  }
  std::size_t unknown_rows = 0;
  for (const SongEntry& entry : folder.Items()) {
    const std::int32_t record = entry.SubItem();
    if (library.IsHidden(record) && record < 1) continue;
    if (library.Song(record).Exists())
      flags[static_cast<std::size_t>(record - 1)] = 0;
    else if (++unknown_rows <= kMaxNamed)
      problems.push_back("'" + folder.Text() + "' contains an entry for song number " +
                         std::to_string(record) + ", but the library has songs 1 to " +
                         std::to_string(count) + ". The entry was skipped.");
  }
  if (unknown_rows > kMaxNamed)
    problems.push_back("'" + folder.Text() + "' contains " +
                       std::to_string(unknown_rows - kMaxNamed) +
                       " more entries for songs that are not in the library. They were skipped.");
}

std::vector<std::int32_t> RefreshFolderList(Folder& folder, const clsMain& library) {
  std::vector<std::int32_t> removed;
  std::vector<SongEntry>& entries = folder.Items();
  // Compact the list in place, instead of removing entries one by one; `kept` is the next free
  // index.
  std::size_t kept = 0;
  std::int32_t position = 0;
  bool skip = false;
  for (std::size_t k = 0; k < entries.size(); ++k) {
    SongEntry entry = entries[k];
    const std::int32_t record = entry.SubItem();
    const SongView song = library.Song(record);
    const bool present = song.IsPresent();
    const bool hidden = !present && library.IsHidden(record);
    const bool known = hidden || song.Exists();
    if (!skip && !known) {
      // Kept for compatibility: after an entry that is removed here, the next one is not checked.
      skip = true;
      removed.push_back(static_cast<std::int32_t>(k));
      continue;
    }
    if (!skip && !present && !hidden) {
      removed.push_back(static_cast<std::int32_t>(k));
      continue;
    }
    if (!hidden) ++position;
    if (!skip) {
      entry.LabelPosition(hidden ? 0 : position);
      if (!hidden) entry.Icon(song.Rank());
    }
    skip = false;
    entries[kept++] = entry;
  }
  entries.resize(kept);
  return removed;
}

std::string_view GenreNameFromID(std::int32_t id) noexcept { return GenreName(id); }

void StripBrackets(std::string& text) {
  for (char& c : text)
    if (c == '[' || c == ']') c = ' ';
  text = std::string(Trim(text));
}

}  // namespace tallow
