// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/file_again.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "jukebox/filing.h"
#include "jukebox/initial_jukebox.h"
#include "jukebox/jukebox.h"
#include "jukebox/special_folders.h"
#include "library/cls_main.h"
#include "library/folder_scan.h"

namespace tallow {
namespace {

/// A song whose tags have been read.
struct TaggedSong {
  std::int32_t row;
  SongTags tags;
};

void CollectSongs(const Folder& folder, std::vector<std::int32_t>& songs) {
  for (const SongEntry& entry : folder.Items()) songs.push_back(entry.SubItem());
  for (std::int32_t k = 0; k < folder.Children(); ++k) CollectSongs(folder.ChildAt(k), songs);
}

void MakeUnique(std::vector<std::int32_t>& records) {
  std::sort(records.begin(), records.end());
  records.erase(std::unique(records.begin(), records.end()), records.end());
}

/// Files songs again in one jukebox.
class JukeboxRefiling {
 public:
  JukeboxRefiling(Jukebox& jukebox, clsMain& library, const std::vector<TaggedSong>& songs,
                  FileAgainScope scope, std::vector<std::string>& problems)
      : jukebox_(jukebox),
        history_(jukebox.History()),
        library_(library),
        scope_(scope),
        problems_(problems) {
    const Folder* const all = jukebox.Nodes().Find("All Songs");
    if (all == nullptr) return;
    std::vector<char> held(static_cast<std::size_t>(library.UBoundOfMp3Array()) + 1);
    for (const SongEntry& entry : all->Items())
      if (library.Song(entry.SubItem()).Exists())
        held[static_cast<std::size_t>(entry.SubItem())] = 1;
    takes_.resize(held.size());
    for (const TaggedSong& song : songs) {
      if (held[static_cast<std::size_t>(song.row)] == 0) continue;
      takes_[static_cast<std::size_t>(song.row)] = 1;
      songs_.push_back(&song);
    }
  }

  /// \param reader, go_on for the old songs of albums, see ArrangeFiled
  void Run(const SongTagReader& reader, const GoOn& go_on) {
    const bool adds_album = AddsAlbum();
    if (songs_.empty() && !adds_album) return;
    const std::uint64_t before = ContentHash(jukebox_.Nodes());
    history_.Begin(jukebox_.selectednode(),
                   scope_ == FileAgainScope::kAlbum ? "Add Album Folder" : "File Songs Again");
    if (adds_album) AddAlbum();
    const std::vector<Folder*> categories = Categories();
    for (Folder* const category : categories) TakeOut(*category);
    Filing filing(
        jukebox_.Nodes(), library_, problems_, &emptied_,
        scope_ == FileAgainScope::kAlbum ? Filing::Scope::kAlbumsOnly : Filing::Scope::kAll);
    for (const TaggedSong* const song : songs_) filing.File(song->row, song->tags);
    filing.RecordAdditions(history_);
    ArrangeFiled(filing, reader, history_, true, go_on);
    for (Folder* const category : categories) RemoveEmptied(*category);
    history_.Show(jukebox_.selectednode());
    if (ContentHash(jukebox_.Nodes()) == before)
      history_.Discard();
    else
      history_.End();
    jukebox_.HideRemovedFolder();
    jukebox_.ListRefilled(library_);
  }

 private:
  bool AddsAlbum() const {
    if (FindAlbumFolder(jukebox_.Nodes()) != nullptr) return false;
    const bool is_sample = jukebox_.Caption() == kSampleCaption;
    return scope_ == FileAgainScope::kAlbum ||
           (scope_ == FileAgainScope::kStyle && is_sample && library_.Switches().albums);
  }

  void AddAlbum() {
    FolderTree& tree = jukebox_.Nodes();
    DetachedFolder album = tree.NewFolder(kAlbumFolder);
    album->Automatic(true);
    history_.AddFolder(std::move(album), nullptr, tree.Children());
  }

  std::vector<Folder*> Categories() const {
    const FolderTree& tree = jukebox_.Nodes();
    std::vector<Folder*> categories;
    if (scope_ != FileAgainScope::kAlbum)
      for (const char* const text : {"Artist", "Year", "Genre", "Decades"})
        if (Folder* const category = tree.Find(text)) categories.push_back(category);
    if (library_.Switches().albums)
      if (Folder* const album = FindAlbumFolder(tree)) categories.push_back(album);
    return categories;
  }

  bool Takes(const SongEntry& entry) const {
    const auto record = static_cast<std::size_t>(entry.SubItem());
    return entry.SubItem() > 0 && record < takes_.size() && takes_[record] != 0;
  }

  /// Takes the songs out of a folder and of everything below it.
  /// \returns whether the folder is empty because of that, and may be removed
  bool TakeOut(Folder& folder) {
    Positions positions;
    for (std::size_t k = 0; k < folder.Items().size(); ++k)
      if (Takes(folder.Items()[k])) positions.push_back(static_cast<std::int32_t>(k));
    bool is_emptied = !positions.empty() || folder.Children() > 0;
    history_.RemoveSongs(folder, std::move(positions));
    for (std::int32_t k = 0; k < folder.Children(); ++k)
      if (!TakeOut(folder.ChildAt(k))) is_emptied = false;
    is_emptied = is_emptied && folder.Items().empty() && OkToDelete(folder);
    if (is_emptied) emptied_.insert(&folder);
    return is_emptied;
  }

  void RemoveEmptied(Folder& above) {
    for (std::int32_t k = above.Children() - 1; k >= 0; --k) {
      Folder& child = above.ChildAt(k);
      if (emptied_.contains(&child) && child.Items().empty())
        history_.RemoveFolder(child);
      else
        RemoveEmptied(child);
    }
  }

  Jukebox& jukebox_;
  EditHistory& history_;
  clsMain& library_;
  FileAgainScope scope_;
  std::vector<std::string>& problems_;
  std::vector<const TaggedSong*> songs_;  ///< those that the jukebox has
  std::vector<char> takes_;               ///< by record number, whether the song is filed again
  FolderSet emptied_;
};

}  // namespace

std::vector<std::int32_t> SongsIn(const Folder& folder) {
  std::vector<std::int32_t> songs;
  CollectSongs(folder, songs);
  MakeUnique(songs);
  return songs;
}

std::vector<std::int32_t> SongsThatArePresent(const clsMain& library) {
  std::vector<std::int32_t> songs;
  for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
    if (const SongView song = library.Song(row); song.IsPresent() && !song.IsAway())
      songs.push_back(row);
  return songs;
}

bool FileAgainByTags(std::span<const std::int32_t> records, clsMain& library,
                     std::span<Jukebox* const> windows, const ReadTags& read_tags,
                     const FilingProgress& progress, FileAgainScope scope) {
  library.SortByRecord();
  std::vector<std::int32_t> rows(records.begin(), records.end());
  MakeUnique(rows);
  std::erase_if(rows, [&](std::int32_t row) {
    const SongView song = library.Song(row);
    return !song.IsPresent() || song.IsAway();
  });
  std::vector<TaggedSong> songs;
  std::size_t read = 0;
  GoOn go_on;
  if (progress) go_on = [&](std::string_view) { return progress(read, rows.size()); };
  const SongTagReader reader(library, nullptr, read_tags, library.Switches().albums);
  bool is_complete = true;
  try {
    reader.Read(
        rows,
        [&](std::size_t k, const ReadSong& song) {
          ++read;
          if (song.is_answered && !song.has_failed) songs.push_back({rows[k], song.tags});
          if (go_on && !go_on({})) throw Stopped();
        },
        go_on);
  } catch (const Stopped&) {
    is_complete = false;
  }
  std::vector<std::string> problems;
  for (auto window = windows.rbegin(); window != windows.rend(); ++window)
    JukeboxRefiling(**window, library, songs, scope, problems).Run(reader, go_on);
  if (!problems.empty()) {
    // Each open jukebox reports the same years.
    std::sort(problems.begin(), problems.end());
    problems.erase(std::unique(problems.begin(), problems.end()), problems.end());
    throw FilingError(std::move(problems));
  }
  return is_complete;
}

}  // namespace tallow
