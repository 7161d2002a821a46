// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <unordered_set>
#include <vector>

#include <QAbstractTableModel>
#include <QBrush>
#include <QIcon>

#include "app/columns/list_column.h"
#include "jukebox/jukebox.h"
#include "ui/jukebox/rank_picture.h"
#include "ui/support/song_mark.h"

namespace tallow {

class PlayerModel;
class SongColumns;

/// The text colour of a song that is away.
QBrush GreyText();

/// Table model of the songs of the folder on show, with the columns that ShowColumns names. Texts
/// are created only for rows that are painted, so a folder of a million songs costs no more than a
/// folder of ten.
///
/// The rank and the mark of what plays are pictures of the column kName, as far as they have no
/// column of their own.
class SongListModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// The role that returns only the song's file name.
  static constexpr int kNameRole = Qt::UserRole;
  /// The role that returns the text that is drawn: that of Qt::DisplayRole. In the column kName,
  /// blanks of a digit's width stand before short positions, so that names begin below each other.
  static constexpr int kPaintedRole = Qt::UserRole + 1;
  /// The role that returns the rank of a song's picture, as int.
  static constexpr int kRankRole = Qt::UserRole + 2;
  /// The roles that return the text of kName or kTitle in any column.
  static constexpr int kLabelRole = Qt::UserRole + 3;
  static constexpr int kTitleRole = Qt::UserRole + 4;

  /// \param jukebox, library must outlive the model
  SongListModel(const Jukebox& jukebox, const clsMain& library, QObject* parent);

  /// Shows columns, from left to right. At first these are kName and kKey.
  /// \param columns  at least one, each once
  /// \param texts    of the columns other than kName, kKey and kPosition; must outlive the model;
  ///                 null for none
  void ShowColumns(std::vector<ListColumn> columns, const SongColumns* texts);
  const std::vector<ListColumn>& Columns() const noexcept { return shown_columns_; }
  /// The place of a column, from 0; -1 when it is not shown.
  int IndexOf(ListColumn column) const noexcept;
  /// The place of the column that names the songs: kName, else kTitle, else the first one.
  int NamingColumn() const noexcept;
  /// Whether the pictures of kName have room for a mark.
  bool HasMarksAtNames() const noexcept;

  /// Call after another folder is shown or the songs of the folder have changed.
  void Refill();
  /// Call after the songs' texts and icons have changed.
  void Relabel();
  void ChangeHeaders();
  /// Says in the accessible text of a header that the list is sorted by its column.
  /// \param section -1 for none
  void ShowSort(int section, bool descending);

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
  /// The header's text, or the column's name if the header shows none.
  QString WholeHeader(ListColumn column) const;
  QString SpokenHeader(int section) const;
  void MakePictures();
  void ListPlaces(const std::vector<SongEntry>& entries);
  void UpdateRow(int row);
  SongMark MarkOf(std::int32_t song) const;
  const Folder* Shown() const noexcept { return jukebox_.ListFolder(); }
  QVariant PictureOf(const SongEntry& entry, ListColumn column) const;
  QString CellText(const SongEntry& entry, ListColumn column) const;
  QString PaintedLabel(const SongEntry& entry) const;
  /// Whether a cell's spoken text and tooltip are of the whole row.
  bool HasWholeRow(int column) const;
  /// What a screen reader says of a cell.
  QString SpokenText(const SongEntry& entry, int column) const;
  QString ToolTip(const SongEntry& entry, int column) const;
  /// What is known of the song of a row, with the names of the columns.
  QStringList RowLines(const SongEntry& entry) const;
  QString RowText(const SongEntry& entry) const;
  QVariant HeaderText(ListColumn column) const;

  const Jukebox& jukebox_;
  const clsMain& library_;
  const PlayerModel* player_ = nullptr;  ///< null for no marks
  /// The icons of kName by mark and rank; other ranks have the index 0.
  std::array<std::array<QIcon, kBestRankPicture + 1>, kSongMarks> ranks_;
  mutable std::unordered_set<std::int32_t> failed_;  ///< the songs that were shown as failed
  bool has_hidden_ = false;                          ///< whether some songs have no row
  std::vector<int> places_;  ///< if has_hidden_, the index in the folder for each row
  int rows_ = 0;             ///< as last reported to the view
  std::vector<ListColumn> shown_columns_{ListColumn::kName, ListColumn::kKey};
  const SongColumns* texts_ = nullptr;  ///< null for none
  int sorted_section_ = -1;             ///< see ShowSort
  bool descending_ = false;
};

}  // namespace tallow
