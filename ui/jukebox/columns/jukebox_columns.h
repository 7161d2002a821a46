// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <QObject>
#include <QStringList>

#include "app/columns/column_choice.h"
#include "app/columns/song_columns.h"
#include "jukebox/folder_tree.h"

class QMenu;

namespace tallow {

class Jukebox;
class PVExplorer;
class Tallow;

/// The columns of a jukebox window's list: shows those of the preferences, stores what the user
/// changes, and sorts the list by the column that the user clicks.
class JukeboxColumns : public QObject {
  Q_OBJECT

 public:
  /// The parameters must outlive this object.
  JukeboxColumns(Tallow& tallow, Jukebox& jukebox, PVExplorer& explorer);
  ~JukeboxColumns() override;

  /// The menu of the column headers, see MakeColumnMenu.
  QMenu& Menu() noexcept { return *menu_; }
  /// Opens the menu below the headers.
  void PopUp();

  /// Call after preferences have changed.
  void Follow();

  /// Call regularly: shows details of songs that were read since the last call.
  /// \returns whether there were any
  bool ShowNewDetails();

 signals:
  void Problem(const QStringList& lines);

 private:
  bool HasDetails() const;
  /// Stores the columns, and shows them. \param columns none for those of the first start
  void Choose(const std::vector<ChosenColumn>& columns);
  void Sort(ListColumn column);
  void SortByName();
  void SortBy(ListColumn column);
  void ListRefilled();
  /// The column that the list is sorted by; none for an order without an arrow.
  struct Arrow {
    std::optional<ListColumn> column;
    bool descending = false;
  };
  /// Shows the arrow of a sort, and keeps it if the list shows a folder.
  void Sorted(const Arrow& arrow);
  bool IsFolderStillSorted() const;
  void Renumber(const NewNumbers& numbers);
  void ShowArrow(const Arrow& arrow);

  Tallow& tallow_;
  Jukebox& jukebox_;
  PVExplorer& explorer_;
  SongColumns texts_;
  std::unique_ptr<QMenu> menu_;
  std::vector<ChosenColumn> shown_;
  bool shows_details_ = false;
  std::uint64_t details_version_ = 0;
  Arrow arrow_;                             ///< shown
  Arrow of_folder_;                         ///< of the sorted folder, also while hits are shown
  std::uint32_t sorted_folder_ = 0;         ///< its key
  std::vector<std::int32_t> sorted_songs_;  ///< its record numbers, in the order of the sort
};

}  // namespace tallow
