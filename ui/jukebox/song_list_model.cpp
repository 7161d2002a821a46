// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/song_list_model.h"

#include <algorithm>

#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include "app/playing/player_model.h"
#include "library/cls_main.h"
#include "ui/support/display_text.h"

namespace tallow {

QBrush GreyText() {
  // A mix of text and background colour, closer to the text, because the palette's colour for
  // disabled text is too pale to read on some desktops.
  constexpr int kText = 5;
  constexpr int kBase = 4;
  const QPalette palette = QGuiApplication::palette();
  const QColor text = palette.color(QPalette::Active, QPalette::Text);
  const QColor base = palette.color(QPalette::Active, QPalette::Base);
  const auto mix = [](int one, int other) {
    return (kText * one + kBase * other) / (kText + kBase);
  };
  return QColor(mix(text.red(), base.red()), mix(text.green(), base.green()),
                mix(text.blue(), base.blue()));
}

SongListModel::SongListModel(const Jukebox& jukebox, const clsMain& library, QObject* parent)
    : QAbstractTableModel(parent), jukebox_(jukebox), library_(library) {
  ShowMarks(nullptr);
  Refill();
}

void SongListModel::ShowMarks(const PlayerModel* player) {
  player_ = player;
  failed_.clear();
  for (std::size_t mark = 0; mark < ranks_.size(); ++mark)
    for (std::size_t rank = 0; rank < ranks_[mark].size(); ++rank)
      ranks_[mark][rank] = player == nullptr
                               ? RankPicture(static_cast<int>(rank))
                               : MarkedRankPicture(static_cast<int>(rank), SongMark(mark));
  Relabel();
}

void SongListModel::MarkChanged(std::int32_t song) {
  const Folder* const shown = jukebox_.ListFolder();
  if (shown == nullptr || song == 0) return;
  const std::vector<SongEntry>& entries = shown->Items();
  for (int row = 0; row < rows_; ++row) {
    const auto place = static_cast<std::size_t>(PlaceOf(row));
    if (place < entries.size() && entries[place].SubItem() == song) UpdateRow(row);
  }
}

void SongListModel::FailuresChanged(int first, int last) {
  const Folder* const shown = jukebox_.ListFolder();
  if (shown == nullptr || player_ == nullptr) return;
  const std::vector<SongEntry>& entries = shown->Items();
  for (int row = std::max(first, 0); row <= std::min(last, rows_ - 1); ++row) {
    const auto place = static_cast<std::size_t>(PlaceOf(row));
    if (place >= entries.size()) return;
    const std::int32_t song = entries[place].SubItem();
    const bool failed = !player_->FailureOf(song).empty();
    if (failed != failed_.contains(song)) UpdateRow(row);
    if (!failed) failed_.erase(song);
  }
}

void SongListModel::UpdateRow(int row) {
  // Cell by cell, because a view repaints everything for a range of cells.
  for (int column = 0; column < columns_; ++column)
    emit dataChanged(index(row, column), index(row, column));
}

SongMark SongListModel::MarkOf(std::int32_t song) const {
  if (player_ == nullptr) return SongMark::kNone;
  const Playing& now = player_->Now();
  if (now.song == song && now.status != kStopped)
    return now.status == kPaused ? SongMark::kPaused : SongMark::kPlaying;
  if (player_->FailureOf(song).empty()) return SongMark::kNone;
  failed_.insert(song);
  return SongMark::kFailed;
}

void SongListModel::Refill() {
  beginResetModel();
  const Folder* const shown = jukebox_.ListFolder();
  places_.clear();
  has_hidden_ = false;
  rows_ = shown == nullptr ? 0 : static_cast<int>(shown->Items().size());
  if (shown != nullptr) ListPlaces(shown->Items());
  columns_ = static_cast<int>(jukebox_.ColumnHeaders().size());
  endResetModel();
}

void SongListModel::ListPlaces(const std::vector<SongEntry>& entries) {
  const bool any = std::any_of(entries.begin(), entries.end(), [this](const SongEntry& entry) {
    return library_.IsHidden(entry.SubItem());
  });
  if (!any) return;
  for (std::size_t k = 0; k < entries.size(); ++k)
    if (!library_.IsHidden(entries[k].SubItem())) places_.push_back(static_cast<int>(k));
  has_hidden_ = true;
  rows_ = static_cast<int>(places_.size());
}

int SongListModel::PlaceOf(int row) const {
  if (row < 0 || row >= rows_) return -1;
  return !has_hidden_ ? row : places_[static_cast<std::size_t>(row)];
}

int SongListModel::RowAt(int place) const {
  if (!has_hidden_) return std::min(place, rows_);
  return static_cast<int>(std::lower_bound(places_.begin(), places_.end(), place) -
                          places_.begin());
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
  // The folder on show may hold fewer songs than last reported to the view.
  const Folder* const shown = jukebox_.ListFolder();
  const int place = index.isValid() ? PlaceOf(index.row()) : -1;
  if (shown == nullptr || place < 0 || static_cast<std::size_t>(place) >= shown->Items().size())
    return {};
  const SongEntry& entry = shown->Items()[static_cast<std::size_t>(place)];
  if (role == Qt::ForegroundRole && library_.IsAway(entry.SubItem())) return GreyText();
  if (role == Qt::FontRole && MarkShowsPlaying(MarkOf(entry.SubItem()))) {
    QFont bold;
    bold.setBold(true);
    return bold;
  }
  if (index.column() == kKey)
    return role == Qt::DisplayRole ? QString::number(entry.SubItem()) : QVariant();
  return DataOf(entry, role);
}

QVariant SongListModel::DataOf(const SongEntry& entry, int role) const {
  switch (role) {
    case Qt::DisplayRole:
      return DisplayText(EntryText(entry, library_));
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
      return TextOf(entry);
    case Qt::DecorationRole: {
      const auto rank = static_cast<std::size_t>(entry.Icon());
      const auto& pictures = ranks_[static_cast<std::size_t>(MarkOf(entry.SubItem()))];
      return pictures[rank < pictures.size() ? rank : 0];
    }
    case kNameRole:
      return DisplayText(FileNameOf(entry, library_));
    default:
      return {};
  }
}

QString SongListModel::TextOf(const SongEntry& entry) const {
  QString text = DisplayText(EntryText(entry, library_));
  const auto add = [&text](const QString& more, const QString& before) {
    if (!more.isEmpty()) text += before + more;
  };
  const QString comma = QStringLiteral(", ");
  const QString line = QStringLiteral("\n");
  const SongMark mark = MarkOf(entry.SubItem());
  add(RankPictureText(entry.Icon()), comma);
  if (mark != SongMark::kFailed) add(SongMarkText(mark), comma);
  if (mark == SongMark::kFailed) add(FailureText(player_->FailureOf(entry.SubItem())), line);
  add(DisplayText(library_.AwayText(entry.SubItem())), line);
  return text;
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
