// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "details/song_tags.h"
#include "jukebox/category_index.h"
#include "jukebox/filing_tags.h"
#include "jukebox/folder_tree.h"
#include "library/switches.h"

namespace tallow {

class EditHistory;
class clsMain;

/// Files songs into the automatic folders of one jukebox during one run, by the switches of the
/// library. New folders and songs are appended while songs are filed; Arrange moves them to their
/// places at the end.
class Filing {
 public:
  /// Which folders are filled.
  enum class Scope { kAll, kAlbumsOnly };

  /// \param problems receives a sentence for each song that could not be filed completely
  /// \param unused   folders that match no song until a new folder with their text would be added.
  ///                 Null for none; RecordAdditions must not be called then
  Filing(FolderTree& tree, const clsMain& library, std::vector<std::string>& problems,
         const FolderSet* unused = nullptr, Scope scope = Scope::kAll);

  /// Whether songs are filed by album.
  bool FilesAlbums() const noexcept { return album_.has_value(); }

  /// Files a song by its tags.
  void File(std::int32_t row, const SongTags& tags);

  /// The songs that album folders held before songs were added to them. Arrange needs their tags;
  /// a song whose tags are not given stays in place.
  std::vector<std::int32_t> OldAlbumSongs() const;
  void GiveAlbumSong(std::int32_t record, const SongTags& tags);

  /// Records the added folders and songs in the open step of a history. Call this before Arrange.
  void RecordAdditions(EditHistory& history) const;

  /// Moves new decade folders to their places, new songs of albums to their places by disc, track
  /// and file name, and with the switch `natural_order` the other new folders, too.
  /// \param sort_all with `natural_order`, sorts all folders, not only new ones
  void Arrange(EditHistory& history, bool sort_all = false);

 private:
  /// Where a song is in its album. A song without a disc is on the first one; one without a track
  /// comes after those with a track.
  struct AlbumPlace {
    std::int32_t disc;
    std::int32_t track;
    std::string name;  ///< NaturalKey of the file name
  };
  struct Category {
    Folder* folder;
    std::int32_t old_children;  ///< number of subfolders before filing
    bool is_decades;
  };

  void Open(std::optional<CategoryIndex>& index, Folder* category, CategoryIndex::Match match,
            const FolderSet& unused);
  void Append(Folder& folder, const SongEntry& entry);
  void FileByYear(std::int32_t row, const SongEntry& entry, const SongTags& tags);
  void FileByAlbum(const SongEntry& entry, const SongTags& tags);
  std::string YearOf(std::int32_t row, const SongTags& tags);
  Folder* DecadeOf(const std::string& year);
  AlbumPlace PlaceOf(std::int32_t record, const SongTags& tags) const;
  void ArrangeFolders(const Category& category, EditHistory& history, bool sort_all) const;
  void ArrangeAlbum(Folder& album, EditHistory& history) const;

  FolderTree& tree_;
  const clsMain& library_;
  const Switches switches_;
  std::vector<std::string>& problems_;
  const bool keeps_additions_;
  std::array<Folder*, 10> classic_decades_{};  ///< by the third digit of the year
  std::optional<CategoryIndex> decades_;
  std::optional<CategoryIndex> genre_;
  std::optional<CategoryIndex> artist_;
  std::optional<CategoryIndex> year_;
  std::optional<CategoryIndex> album_;
  std::vector<Category> categories_;
  /// Number of songs that a folder held before songs were added to it.
  std::unordered_map<Folder*, std::size_t> old_sizes_;
  std::vector<Folder*> filled_;  ///< folders with added songs, other than albums
  std::vector<Folder*> filled_albums_;
  std::unordered_map<std::int32_t, AlbumPlace> places_;  ///< by record number
};

/// Arranges what a run has filed, see Filing::Arrange. Reads the tags of the old songs of albums
/// first; when `go_on` returns false, those not read yet stay in place.
void ArrangeFiled(Filing& filing, const SongTagReader& reader, EditHistory& history, bool sort_all,
                  const GoOn& go_on);

}  // namespace tallow
