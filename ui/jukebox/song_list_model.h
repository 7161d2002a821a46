// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <vector>

#include <QAbstractTableModel>
#include <QBrush>
#include <QIcon>

#include "jukebox/jukebox.h"
#include "ui/jukebox/rank_picture.h"

namespace tallow {

/// The colour of a song that is away.
QBrush GreyText();

/// The songs of the folder on show for a list view: the entry's text, and its record number. Texts
/// are made for the rows that are painted, so a folder of a million songs costs no more than one of
/// ten.
class SongListModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kText, kKey };

  /// The role of the song's file name alone.
  static constexpr int kNameRole = Qt::UserRole;

  /// \param jukebox, library have to outlive the model
  SongListModel(const Jukebox& jukebox, const clsMain& library, QObject* parent);

  /// The folder on show is another one or holds other songs.
  void Refill();
  /// The songs' texts and pictures have changed.
  void Relabel();
  void ChangeHeaders();

  /// The place in the folder of the song that a row shows, both from 0; -1 for no row. Songs that are
  /// missing and remembered are in the folder, but in no row.
  int PlaceOf(int row) const;
  /// The row of the song at a place in the folder, or where it is not shown the next one that is; the number
  /// of rows for none.
  int RowAt(int place) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  void ListPlaces(const std::vector<SongEntry>& entries);

  const Jukebox& jukebox_;
  const clsMain& library_;
  std::array<QIcon, kBestRankPicture + 1> ranks_;
  bool has_hidden_ = false;  ///< some songs have no rows
  std::vector<int> places_;  ///< then the places of those that have
  int rows_ = 0;             ///< as the view was last told
  int columns_ = 0;          ///< as the view was last told
};

}  // namespace tallow
