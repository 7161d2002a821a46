// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/initial_jukebox.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "jukebox/jukebox.h"
#include "jukebox/sorting.h"
#include "jukebox/special_folders.h"
#include "library/cls_main.h"

namespace tallow {
namespace {

Folder& Add(Jukebox& jukebox, Folder* parent, std::string_view text) {
  return jukebox.Nodes().AddChild(parent, text, kClosedFolder, kOpenFolder);
}

void AddWithChildren(Jukebox& jukebox, std::string_view text,
                     std::initializer_list<std::string_view> children) {
  Folder& parent = Add(jukebox, nullptr, text);
  for (const std::string_view child : children) Add(jukebox, &parent, child);
}

}  // namespace

void AddStandardColumns(Jukebox& jukebox) {
  jukebox.AddColumnHeader(kNameHeader);
  jukebox.AddColumnHeader(kKeyHeader);
}

void BuildNewJukebox(clsMain& library, Jukebox& jukebox) {
  AddStandardColumns(jukebox);
  Folder& all_songs = jukebox.Nodes().AddChild(nullptr, "All Songs");
  if (library.Switches().fills_new_jukeboxes) {
    library.SortByRecord();
    std::vector<char> flags;
    std::vector<std::string> problems;  // An empty folder has none.
    MarkSongsToFile(all_songs, library, flags, problems);
    for (std::size_t k = 0; k < flags.size(); ++k) {
      if (!flags[k]) continue;
      const SongView song = library.Song(static_cast<std::int32_t>(k + 1));
      all_songs.Items().emplace_back(song.RecordNumber(), song.Rank());
    }
  }
  jukebox.RememberContent();
}

void BuildInitialJukebox(clsMain& library, Jukebox& jukebox, std::span<Jukebox* const> windows,
                         const std::function<void()>& show, const TagCache* found_tags,
                         const FilingProgress& progress, const ReadTags& read_tags) {
  jukebox.Tag("1");
  jukebox.Caption(kBuildingCaption);
  AddStandardColumns(jukebox);
  for (const std::string_view text : {"All Songs", "Artist", "Year", "Genre", "New"})
    Add(jukebox, nullptr, text);
  const bool any_songs = library.UBoundOfMp3Array() > 0;
  AddWithChildren(jukebox, "Decades",
                  {"20's", "30's", "40's", "50's", "60's", "70's", "80's", "90's", "00's"});
  if (library.Switches().albums) Add(jukebox, nullptr, kAlbumFolder).Automatic(true);
  std::optional<FilingError> unfiled;
  if (any_songs) {
    try {
      FillAutomaticFolders(kFillNewToo, false, jukebox.Caption(), library, windows, found_tags,
                           progress, read_tags);
    } catch (const FilingError& error) {
      unfiled = error;
    }
  }
  AddWithChildren(jukebox, "By Mood",
                  {"Happy", "Sad", "Smokey", "Romantic", "New Age/ Spiritual", "Powerful",
                   "Soothing", "Up Lifting"});
  AddWithChildren(jukebox, "My Favorite Play Lists", {"Super Hits 1", "Super Hits 2"});
  AddWithChildren(jukebox, "Dad's", {});
  AddWithChildren(jukebox, "Seasonal", {"Christmas", "Valentines Day", "Hanukah", "Halloween"});
  AddWithChildren(jukebox, "My Sweetie's favorites", {});
  AddWithChildren(jukebox, "Best friend's favorites", {});
  jukebox.Expanded(true);
  jukebox.Caption(kSampleCaption);
  // This content need not be saved, because it can be built again.
  jukebox.RememberContent();
  show();
  if (unfiled) throw FilingError(*unfiled);
}

}  // namespace tallow
