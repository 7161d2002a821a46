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
  void HitsHidden();
  void ShowArrow(std::optional<ListColumn> column, bool descending);

  Tallow& tallow_;
  Jukebox& jukebox_;
  PVExplorer& explorer_;
  SongColumns texts_;
  std::unique_ptr<QMenu> menu_;
  std::vector<ChosenColumn> shown_;
  bool shows_details_ = false;
  std::uint64_t details_version_ = 0;
  std::optional<ListColumn> sorted_by_;  ///< the column with the arrow
  bool descending_ = false;
  struct Arrow {
    std::optional<ListColumn> column;
    bool descending = false;
  };
  bool shows_hits_ = false;
  Arrow of_folder_;  ///< the arrow before hits were shown
};

}  // namespace tallow
