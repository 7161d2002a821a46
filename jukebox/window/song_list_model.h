// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

#include <QAbstractTableModel>
#include <QIcon>

#include "jukebox/jukebox.h"
#include "jukebox/window/rank_picture.h"

namespace tallow {

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

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const Jukebox& jukebox_;
  const clsMain& library_;
  std::array<QIcon, kBestRankPicture + 1> ranks_;
  int rows_ = 0;     ///< as the view was last told
  int columns_ = 0;  ///< as the view was last told
};

}  // namespace tallow
