// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/song_list_model.h"

#include <algorithm>
#include <utility>

#include <QFont>
#include <QGuiApplication>
#include <QPalette>
#include <QTextDocument>

#include "app/columns/song_columns.h"
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

void SongListModel::ShowColumns(std::vector<ListColumn> columns, const SongColumns* texts) {
  beginResetModel();
  shown_columns_ = std::move(columns);
  texts_ = texts;
  MakePictures();
  endResetModel();
}

int SongListModel::IndexOf(ListColumn column) const noexcept {
  const auto found = std::ranges::find(shown_columns_, column);
  return found == shown_columns_.end() ? -1 : static_cast<int>(found - shown_columns_.begin());
}

int SongListModel::NamingColumn() const noexcept {
  const int name = IndexOf(ListColumn::kName);
  return name >= 0 ? name : std::max(IndexOf(ListColumn::kTitle), 0);
}

bool SongListModel::HasMarksAtNames() const noexcept {
  return player_ != nullptr && IndexOf(ListColumn::kPlaying) < 0 && IndexOf(ListColumn::kRank) < 0;
}

void SongListModel::ShowMarks(const PlayerModel* player) {
  player_ = player;
  failed_.clear();
  MakePictures();
  Relabel();
}

void SongListModel::MakePictures() {
  const bool marks = HasMarksAtNames();
  for (std::size_t mark = 0; mark < ranks_.size(); ++mark)
    for (std::size_t rank = 0; rank < ranks_[mark].size(); ++rank)
      ranks_[mark][rank] = marks ? MarkedRankPicture(static_cast<int>(rank), SongMark(mark))
                                 : RankPicture(static_cast<int>(rank));
}

void SongListModel::MarkChanged(std::int32_t song) {
  const Folder* const shown = Shown();
  if (shown == nullptr || song == 0) return;
  const std::vector<SongEntry>& entries = shown->Items();
  for (int row = 0; row < rows_; ++row) {
    const auto place = static_cast<std::size_t>(PlaceOf(row));
    if (place < entries.size() && entries[place].SubItem() == song) UpdateRow(row);
  }
}

void SongListModel::FailuresChanged(int first, int last) {
  const Folder* const shown = Shown();
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
  for (int column = 0; column < columnCount(); ++column)
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
  const Folder* const shown = Shown();
  places_.clear();
  has_hidden_ = false;
  rows_ = shown == nullptr ? 0 : static_cast<int>(shown->Items().size());
  if (shown != nullptr) ListPlaces(shown->Items());
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
  if (rows_ > 0) emit dataChanged(index(0, 0), index(rows_ - 1, columnCount() - 1));
}

void SongListModel::ChangeHeaders() {
  emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

void SongListModel::ShowSort(int section, bool descending) {
  sorted_section_ = section;
  descending_ = descending;
  ChangeHeaders();
}

int SongListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int SongListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_columns_.size());
}

QVariant SongListModel::data(const QModelIndex& index, int role) const {
  // The folder on show may hold fewer songs than last reported to the view.
  const Folder* const shown = Shown();
  const int place = index.isValid() ? PlaceOf(index.row()) : -1;
  if (shown == nullptr || place < 0 || static_cast<std::size_t>(place) >= shown->Items().size())
    return {};
  const SongEntry& entry = shown->Items()[static_cast<std::size_t>(place)];
  const ListColumn column = shown_columns_[static_cast<std::size_t>(index.column())];
  switch (role) {
    case Qt::DisplayRole:
      return CellText(entry, column);
    case kPaintedRole:
      return column == ListColumn::kName ? PaintedLabel(entry) : CellText(entry, column);
    case Qt::ToolTipRole:
      return column == ListColumn::kKey ? QVariant() : ToolTip(entry, index.column());
    case Qt::AccessibleTextRole:
      return SpokenText(entry, index.column());
    case Qt::DecorationRole:
      return PictureOf(entry, column);
    case Qt::TextAlignmentRole:
      if (!IsNumber(column)) return {};
      return int(Qt::AlignRight | Qt::AlignVCenter);
    case Qt::ForegroundRole:
      return library_.IsAway(entry.SubItem()) ? GreyText() : QVariant();
    case Qt::FontRole: {
      if (!MarkShowsPlaying(MarkOf(entry.SubItem()))) return {};
      QFont bold;
      bold.setBold(true);
      return bold;
    }
    case kNameRole:
      return DisplayText(FileNameOf(entry, library_));
    case kRankRole:
      return static_cast<int>(entry.Icon());
    case kLabelRole:
      return CellText(entry, ListColumn::kName);
    case kTitleRole:
      return CellText(entry, ListColumn::kTitle);
    default:
      return {};
  }
}

QVariant SongListModel::PictureOf(const SongEntry& entry, ListColumn column) const {
  if (column == ListColumn::kPlaying) {
    const SongMark mark = MarkOf(entry.SubItem());
    return mark == SongMark::kNone ? QVariant() : QVariant(MarkPicture(mark));
  }
  // The column of ranks is drawn by SongListDelegate.
  if (column != ListColumn::kName || IndexOf(ListColumn::kRank) >= 0) return {};
  const auto rank = static_cast<std::size_t>(entry.Icon());
  const SongMark mark = HasMarksAtNames() ? MarkOf(entry.SubItem()) : SongMark::kNone;
  const auto& pictures = ranks_[static_cast<std::size_t>(mark)];
  return pictures[rank < pictures.size() ? rank : 0];
}

QString SongListModel::CellText(const SongEntry& entry, ListColumn column) const {
  switch (column) {
    case ListColumn::kName:
      return DisplayText(EntryText(entry, library_));
    case ListColumn::kKey:
      return QString::number(entry.SubItem());
    case ListColumn::kPosition:
      return entry.LabelPosition() == 0 ? QString() : QString::number(entry.LabelPosition());
    case ListColumn::kPlaying:
    case ListColumn::kRank:
      return {};
    default:
      return texts_ == nullptr ? QString() : DisplayText(texts_->Text(column, entry.SubItem()));
  }
}

QString SongListModel::PaintedLabel(const SongEntry& entry) const {
  constexpr QChar kBlankOfDigitWidth(0x2007);
  QString label = CellText(entry, ListColumn::kName);
  if (entry.LabelPosition() == 0) return label;
  const auto digits = QString::number(Shown()->Items().size()).size() -
                      QString::number(entry.LabelPosition()).size();
  return QString(std::max<qsizetype>(digits, 0), kBlankOfDigitWidth) + label;
}

bool SongListModel::HasWholeRow(int column) const {
  // The keyboard stays in the first column.
  return column == 0 || column == NamingColumn() ||
         shown_columns_[static_cast<std::size_t>(column)] == ListColumn::kPlaying;
}

QString SongListModel::SpokenText(const SongEntry& entry, int column) const {
  if (HasWholeRow(column)) return RowText(entry);
  const ListColumn kind = shown_columns_[static_cast<std::size_t>(column)];
  return kind == ListColumn::kRank ? RankPictureText(entry.Icon()) : CellText(entry, kind);
}

QString SongListModel::ToolTip(const SongEntry& entry, int column) const {
  const QString text =
      HasWholeRow(column) ? RowLines(entry).join(u'\n') : SpokenText(entry, column);
  // A text that looks like HTML is shown as it is.
  return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text;
}

QStringList SongListModel::RowLines(const SongEntry& entry) const {
  QStringList lines;
  const auto add = [&lines](const QString& line) {
    if (!line.isEmpty()) lines.append(line.front().toUpper() + line.mid(1));
  };
  for (const ListColumn column : shown_columns_) {
    const QString text = CellText(entry, column);
    if (column == ListColumn::kName)
      lines.append(text);
    else if (!text.isEmpty() && column != ListColumn::kKey && column != ListColumn::kPosition)
      lines.append(tr("%1: %2").arg(DisplayText(TitleOf(column)), text));
  }
  const SongMark mark = MarkOf(entry.SubItem());
  add(RankPictureText(entry.Icon()));
  add(mark == SongMark::kFailed ? FailureText(player_->FailureOf(entry.SubItem()))
                                : SongMarkText(mark));
  const QString away = DisplayText(library_.AwayText(entry.SubItem()));
  if (!away.isEmpty()) lines.append(away);
  return lines;
}

QString SongListModel::RowText(const SongEntry& entry) const {
  QString text;
  const auto add = [&text](const QString& more, const QString& before) {
    if (!more.isEmpty()) text += (text.isEmpty() ? QString() : before) + more;
  };
  const QString comma = QStringLiteral(", ");
  const QString line = QStringLiteral("\n");
  for (const ListColumn column : shown_columns_)
    if (column != ListColumn::kKey) add(CellText(entry, column), comma);
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
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  const ListColumn column = shown_columns_[static_cast<std::size_t>(section)];
  switch (role) {
    case Qt::DisplayRole:
      return HeaderText(column);
    case Qt::ToolTipRole:
      if (column == ListColumn::kName || column == ListColumn::kKey) return {};
      return WholeHeader(column);
    case Qt::AccessibleTextRole:
      return SpokenHeader(section);
    case Qt::TextAlignmentRole: {
      return int((IsNumber(column) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    default:
      return {};
  }
}

QString SongListModel::WholeHeader(ListColumn column) const {
  return HeaderOf(column).empty() ? DisplayText(TitleOf(column)) : HeaderText(column).toString();
}

QString SongListModel::SpokenHeader(int section) const {
  QString text = WholeHeader(shown_columns_[static_cast<std::size_t>(section)]);
  if (section != sorted_section_) return text;
  return text + (descending_ ? tr(", sorted in reverse") : tr(", sorted"));
}

QVariant SongListModel::HeaderText(ListColumn column) const {
  // The texts of these two belong to the jukebox.
  const auto& headers = jukebox_.ColumnHeaders();
  if (column == ListColumn::kName && !headers.empty()) return DisplayText(headers[0]);
  if (column == ListColumn::kKey && headers.size() > 1) return DisplayText(headers[1]);
  return DisplayText(HeaderOf(column));
}

}  // namespace tallow
