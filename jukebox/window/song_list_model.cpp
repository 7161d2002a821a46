// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/window/song_list_model.h"

#include "ui/display_text.h"

namespace tallow {

SongListModel::SongListModel(const Jukebox& jukebox, const clsMain& library, QObject* parent)
    : QAbstractTableModel(parent), jukebox_(jukebox), library_(library) {
  for (int rank = kLeastRankPicture; rank <= kBestRankPicture; ++rank)
    ranks_[static_cast<std::size_t>(rank)] = RankPicture(rank);
  Refill();
}

void SongListModel::Refill() {
  beginResetModel();
  const Folder* const shown = jukebox_.selectednode();
  rows_ = shown == nullptr ? 0 : static_cast<int>(shown->Items().size());
  columns_ = static_cast<int>(jukebox_.ColumnHeaders().size());
  endResetModel();
}

void SongListModel::Relabel() {
  if (rows_ > 0) emit dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
}

void SongListModel::ChangeHeaders() {
  if (columns_ != static_cast<int>(jukebox_.ColumnHeaders().size())) Refill();
  if (columns_ > 0) emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
}

int SongListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int SongListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant SongListModel::data(const QModelIndex& index, int role) const {
  // The folder on show may hold fewer songs than the view was last told.
  const Folder* const shown = jukebox_.selectednode();
  if (!index.isValid() || shown == nullptr || index.row() >= rows_ ||
      static_cast<std::size_t>(index.row()) >= shown->Items().size())
    return {};
  const SongEntry& entry = shown->Items()[static_cast<std::size_t>(index.row())];
  const auto rank = static_cast<std::size_t>(entry.Icon());
  if (index.column() == kKey)
    return role == Qt::DisplayRole ? QString::number(entry.SubItem()) : QVariant();
  switch (role) {
    case Qt::DisplayRole:
      return DisplayText(EntryText(entry, library_));
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole: {
      // The picture in words.
      const QString text = DisplayText(EntryText(entry, library_));
      const QString picture = RankPictureText(entry.Icon());
      return picture.isEmpty() ? text : text + QStringLiteral(", ") + picture;
    }
    case Qt::DecorationRole:
      return rank < ranks_.size() ? ranks_[rank] : QIcon();
    case kNameRole:
      return DisplayText(FileNameOf(entry, library_));
    default:
      return {};
  }
}

Qt::ItemFlags SongListModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  return index.isValid() ? flags | Qt::ItemIsDragEnabled : flags;
}

QVariant SongListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Horizontal && section < columns_) {
    if (role == Qt::DisplayRole)
      return DisplayText(jukebox_.ColumnHeaders()[static_cast<std::size_t>(section)]);
    if (role == Qt::TextAlignmentRole) return int(Qt::AlignLeft | Qt::AlignVCenter);
  }
  return {};
}

}  // namespace tallow
