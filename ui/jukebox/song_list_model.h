// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <unordered_set>
#include <vector>

#include <QAbstractTableModel>
#include <QBrush>
#include <QIcon>

#include "jukebox/jukebox.h"
#include "ui/jukebox/rank_picture.h"
#include "ui/support/song_mark.h"

namespace tallow {

class PlayerModel;

/// The text colour of a song that is away.
QBrush GreyText();

/// Table model of the songs of the folder on show: the entry's text and its record number. Texts
/// are created only for rows that are painted, so a folder of a million songs costs no more than a
/// folder of ten.
class SongListModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// The columns from left to right; the model shows as many as the jukebox has headers.
  ///
  /// A new column needs its texts in data(), its width in SongListView::ChangeHeaders(), and its
  /// header in AddStandardColumns(). A jukebox file contains the headers of its jukebox, so a
  /// jukebox that was saved earlier is opened without the new column.
  enum Column { kText, kKey };

  /// The role that returns only the song's file name.
  static constexpr int kNameRole = Qt::UserRole;

  /// \param jukebox, library must outlive the model
  SongListModel(const Jukebox& jukebox, const clsMain& library, QObject* parent);

  /// Call after another folder is shown or the songs of the folder have changed.
  void Refill();
  /// Call after the songs' texts and icons have changed.
  void Relabel();
  void ChangeHeaders();

  /// Marks what plays, and what could not be played.
  /// \param player null for no marks; must outlive the model, or the next call
  void ShowMarks(const PlayerModel* player);
  /// Call after a song has begun or stopped to play, or to be paused: updates its rows.
  void MarkChanged(std::int32_t song);
  /// Call after songs could not be played, or could again: updates the rows whose mark has changed,
  /// or may have.
  /// \param first, last the rows that are visible, from 0
  void FailuresChanged(int first, int last);

  /// Returns the index in the folder of the song in a row, both from 0; -1 if there is no such row.
  /// Missing songs that the folder remembers have an index but no row.
  int PlaceOf(int row) const;
  /// Returns the row of the song at an index in the folder or, if the song has no row, of the next
  /// song that has a row; the number of rows if there is none.
  int RowAt(int place) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  void ListPlaces(const std::vector<SongEntry>& entries);
  void UpdateRow(int row);
  SongMark MarkOf(std::int32_t song) const;
  QVariant DataOf(const SongEntry& entry, int role) const;
  QString TextOf(const SongEntry& entry) const;

  const Jukebox& jukebox_;
  const clsMain& library_;
  const PlayerModel* player_ = nullptr;  ///< null for no marks
  /// The icons of the ranks by mark; other ranks have the index 0.
  std::array<std::array<QIcon, kBestRankPicture + 1>, kSongMarks> ranks_;
  mutable std::unordered_set<std::int32_t> failed_;  ///< the songs that were shown as failed
  bool has_hidden_ = false;                          ///< whether some songs have no row
  std::vector<int> places_;  ///< if has_hidden_, the index in the folder for each row
  int rows_ = 0;             ///< as last reported to the view
  int columns_ = 0;          ///< as last reported to the view
};

}  // namespace tallow
