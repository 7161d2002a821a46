// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <QRect>

namespace tallow {

class Folder;
class Jukebox;
class SongListModel;
class SongListView;
class clsMain;

/// The songs of the folder on show, or the hits of a search, as the list shows them: refills the
/// list after changes, and selects songs. The "folder" below is Jukebox::ListFolder().
///
/// Songs are identified by their indexes in the folder, from 0, or by their record numbers. Rows
/// cannot identify them: missing songs that the folder remembers have an index but no row, and a
/// sort puts other songs into the same rows.
class ShownSongs {
 public:
  /// \param jukebox, library, model, view must outlive this object
  ShownSongs(Jukebox& jukebox, const clsMain& library, SongListModel& model, SongListView& view)
      : jukebox_(jukebox), library_(library), model_(model), view_(view) {}

  /// The state of the list, stored by songs instead of rows.
  struct Place {
    std::uint32_t folder = 0;            ///< key of the folder on show; 0 for none
    std::vector<std::int32_t> selected;  ///< record numbers of the selected songs
    std::vector<int> indexes;            ///< of these songs
    std::int32_t current = 0;            ///< record number of the current song; 0 for none
    int scrolled = 0;
  };

  /// An entry of a folder, which can be found again after songs were removed from the folder.
  struct Entry {
    std::int32_t record = 0;  ///< record number of the song
    int earlier = 0;          ///< how many earlier entries of the folder hold the same song
  };
  /// \param index must be valid
  static Entry EntryAt(const Folder& folder, int index);

  /// Labels the songs again and fills the list with them, without scrolling. This removes songs
  /// whose files are gone. No effect if no folder is on show.
  void Refill();
  /// Fills the list with the songs, which have labels already. Scrolls to the top, except within
  /// Refill.
  void FillList();

  /// Shows the hits of a search in the list, from the first on.
  /// \param songs record numbers, in order
  void ShowHits(const std::vector<std::int32_t>& songs);
  /// Shows the songs of the folder again, as they were before the first ShowHits: selection and
  /// scroll position, too. No effect while no hits are shown.
  void HideHits();

  /// The indexes of the selected songs, in list order.
  std::vector<int> Selected() const;
  /// The index of the current song if it is selected, else of the first selected song; -1 if none
  /// is selected.
  int Chosen() const;
  /// Selects an entry and scrolls to it.
  /// \returns its index; -1 if it is no longer in the folder
  int Select(Entry entry);
  /// Selects those of the given songs that have a row, if there are any.
  /// \returns whether there are any
  bool Select(const std::vector<int>& indexes);
  /// Selects the song at an index or, if it has no row, the next song that has one, else the last.
  void SelectNear(int index);

  /// Call after songs were appended to a folder; if it is on show, refills the list and selects
  /// the new songs.
  /// \param before number of songs that the folder had before
  void SongsAdded(const Folder& to, std::size_t before);
  /// Call after songs were removed from the folder on show; refills the list and selects the song
  /// after them.
  /// \param first the index that the first removed song had
  void SongsTaken(int first);

  /// The index of the song in the row above or below a song; -1 if there is none.
  int Beside(int index, bool above) const;
  /// The index of the song in a row; the number of songs for the row after the last one.
  int IndexAt(int row) const;

  /// Scrolls the list to a song.
  void EnsureVisible(int index);
  /// The rectangle of a song, in screen coordinates.
  QRect RectOf(int index) const;

  Place CurrentPlace() const;
  /// Restores a state, as far as its songs still exist. If the selected songs have other indexes
  /// now, as many entries of each song are selected as before, the first ones.
  void GoTo(const Place& place);
  /// Like GoTo, for use after the songs were reordered. If any song is selected, also scrolls to
  /// the current song.
  void Follow(const Place& place);

 private:
  /// The record number of the song in a row of the list.
  std::int32_t RecordIn(const Folder& folder, int row) const;
  /// The rows of the selected songs of a state.
  std::vector<int> RowsOf(const Place& place, const Folder& folder) const;

  Jukebox& jukebox_;
  const clsMain& library_;
  SongListModel& model_;
  SongListView& view_;
  bool keeps_scroll_position_ = false;
  Place before_hits_;
};

}  // namespace tallow
