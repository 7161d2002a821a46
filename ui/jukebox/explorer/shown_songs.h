// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include <QRect>

#include "jukebox/folder_tree.h"

namespace tallow {

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

  /// An entry of a folder, which can be found again after other songs were removed from the folder
  /// or have changed places.
  struct Entry {
    std::int32_t record = 0;  ///< record number of the song
    int earlier = 0;          ///< how many earlier entries of the folder hold the same song
  };

  /// The state of the list, stored by songs instead of rows.
  struct Place {
    struct Song {
      int index = -1;  ///< -1 for none
      Entry entry = {};
    };
    std::uint32_t folder = 0;         ///< key of the folder on show; 0 for none
    std::vector<Song> selected = {};  ///< by ascending indexes
    Song current = {};
    int scrolled = 0;
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

  /// Replaces old record numbers by new ones in what HideHits restores.
  void Renumber(const NewNumbers& numbers);

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
  /// The state of the list of selectednode(). While hits are shown, it is the one that HideHits
  /// restores.
  Place PlaceInFolder() const;
  /// Changes the indexes of a state after the songs of selectednode() were reordered. No effect on
  /// the state of another folder.
  /// \param moved_to returns the present index of the song that had the given one
  void Move(Place& place, const std::function<std::size_t(std::size_t)>& moved_to) const;
  /// Restores a state, as far as its songs still exist. Songs that have other indexes now are found
  /// by their entries.
  void GoTo(const Place& place);
  /// Like GoTo, for use after the songs were reordered. If any song is selected, also scrolls to
  /// the current song.
  void Follow(const Place& place);

 private:
  /// Sets the entries of a state from its indexes.
  void ReadEntries(const Folder& folder, Place& place) const;
  /// The rows of songs of a state, ascending.
  std::vector<int> RowsOf(const std::vector<Place::Song>& songs, const Folder& folder) const;

  Jukebox& jukebox_;
  const clsMain& library_;
  SongListModel& model_;
  SongListView& view_;
  bool keeps_scroll_position_ = false;
  Place before_hits_;
};

}  // namespace tallow
