// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/columns/column_layout.h"

#include <algorithm>

#include <QEvent>
#include <QHeaderView>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QTableView>

#include "ui/jukebox/columns/song_list_delegate.h"
#include "ui/jukebox/song_list_model.h"
#include "ui/support/display_text.h"

namespace tallow {
namespace {

/// Room beside the text of a cell, see ApartFromNext for that of numbers, and of a header for the
/// arrow of a sort, in pixels.
constexpr int kCellRoom = 10;
constexpr int kNumberRoom = 18;
constexpr int kHeaderRoom = 24;
constexpr int kHeaderRoomWithoutArrow = 20;

/// Minimum width of the column that fills the list, in average characters. In a list that is too
/// narrow for it, the column has its usual width.
constexpr int kMinCharacters = 16;

/// The usual length of a column's texts, in average characters.
int CharactersOf(ListColumn column) {
  switch (column) {
    case ListColumn::kKey:
    case ListColumn::kFormat:
      return 10;
    case ListColumn::kName:
    case ListColumn::kTitle:
      return 28;
    case ListColumn::kArtist:
    case ListColumn::kAlbum:
      return 16;
    case ListColumn::kGenre:
      return 14;
    case ListColumn::kFolder:
      return 36;
    case ListColumn::kLastPlayed:
    case ListColumn::kAdded:
      return 12;
    case ListColumn::kDiscTrack:
    case ListColumn::kLength:
      return 7;
    default:
      return 5;
  }
}

}  // namespace

ColumnLayout::ColumnLayout(const SongListModel& songs, QTableView& list)
    : QObject(&list), songs_(songs), list_(list), viewport_(list.viewport()) {
  list.viewport()->installEventFilter(this);
  Header().viewport()->installEventFilter(this);
  connect(&Header(), &QHeaderView::sectionResized, this,
          [this](int column, int /*before*/, int width) { Resized(column, width); });
  connect(&Header(), &QHeaderView::sectionMoved, this,
          [this] { is_changed_ = is_changed_ || !is_own_change_; });
}

QHeaderView& ColumnLayout::Header() const { return *list_.horizontalHeader(); }

int ColumnLayout::Filling() const {
  for (const ListColumn column : {ListColumn::kTitle, ListColumn::kName})
    if (const int place = songs_.IndexOf(column); place >= 0) return place;
  const auto& shown = songs_.Columns();
  const auto found = std::ranges::find_if(shown, [](ListColumn column) {
    return !IsNumber(column) && column != ListColumn::kPlaying && column != ListColumn::kRank;
  });
  return found == shown.end() ? -1 : static_cast<int>(found - shown.begin());
}

int ColumnLayout::RoomBeforeName(const QFontMetrics& metrics) const {
  const int picture = songs_.IndexOf(ListColumn::kRank) < 0 ? list_.iconSize().width() : 0;
  return picture + metrics.horizontalAdvance(LargestPosition() + QStringLiteral(".  "));
}

QString ColumnLayout::LargestPosition() const {
  // At least three digits, so that most folders have the same widths.
  return QString(QString::number(std::max(songs_.rowCount(), 100)).size(), u'8');
}

int ColumnLayout::UsualWidth(ListColumn column) const {
  if (column == ListColumn::kKey)
    return CharactersOf(column) * list_.fontMetrics().averageCharWidth();
  // The song that plays is bold.
  QFont bold = list_.font();
  bold.setBold(true);
  const QFontMetrics metrics(bold);
  const int row = list_.verticalHeader()->defaultSectionSize();
  const int header = Header().fontMetrics().horizontalAdvance(DisplayText(HeaderOf(column))) +
                     (CanSort(column) ? kHeaderRoom : kHeaderRoomWithoutArrow);
  if (column == ListColumn::kPlaying) return row + kCellRoom;
  if (column == ListColumn::kRank) return std::max(SongListDelegate::RankWidth(row), header);
  if (column == ListColumn::kPosition) {
    // For the largest number, so that the column does not change while the user scrolls.
    return std::max(metrics.horizontalAdvance(LargestPosition()) + kNumberRoom, header);
  }
  int room = IsNumber(column) ? kNumberRoom : kCellRoom;
  if (column == ListColumn::kName) room += RoomBeforeName(metrics);
  return std::max(CharactersOf(column) * metrics.averageCharWidth() + room, header);
}

int ColumnLayout::WidthOf(const ChosenColumn& column) const {
  constexpr int kUsualDpi = 96;
  return column.width > 0 ? column.width * list_.logicalDpiX() / kUsualDpi
                          : UsualWidth(column.column);
}

void ColumnLayout::Show(const std::vector<ChosenColumn>& columns) {
  columns_ = columns;
  is_changed_ = false;
  const QScopedValueRollback own(is_own_change_, true);
  QHeaderView& header = Header();
  for (int column = 0; column < header.count(); ++column)
    header.moveSection(header.visualIndex(column), column);
  Fit();
}

void ColumnLayout::Fit() {
  QHeaderView& header = Header();
  if (header.count() != static_cast<int>(columns_.size())) return;
  const QScopedValueRollback own(is_own_change_, true);
  const int filling = Filling();
  int left = list_.viewport()->width();
  for (int column = 0; column < header.count(); ++column) {
    if (column == filling) continue;
    const int width = WidthOf(columns_[static_cast<std::size_t>(column)]);
    if (width != header.sectionSize(column)) header.resizeSection(column, width);
    left -= header.sectionSize(column);
  }
  if (filling < 0) return;
  header.resizeSection(filling, FillingWidth(columns_[static_cast<std::size_t>(filling)], left));
}

int ColumnLayout::FillingWidth(const ChosenColumn& column, int left) const {
  if (column.width > 0) return std::max(left, WidthOf(column));
  const QFontMetrics metrics = list_.fontMetrics();
  int least = kMinCharacters * metrics.averageCharWidth();
  if (column.column == ListColumn::kName) least += RoomBeforeName(metrics);
  return left >= least ? left : UsualWidth(column.column);
}

void ColumnLayout::Resized(int column, int width) {
  if (is_own_change_ || column >= static_cast<int>(columns_.size())) return;
  constexpr int kUsualDpi = 96;
  columns_[static_cast<std::size_t>(column)].width =
      std::max(1, width * kUsualDpi / list_.logicalDpiX());
  is_changed_ = true;
}

bool ColumnLayout::eventFilter(QObject* watched, QEvent* event) {
  if (watched == viewport_) {
    // While the user drags an edge, the other columns stay under the pointer.
    if (event->type() == QEvent::Resize && !is_held_) Fit();
  } else if (event->type() == QEvent::MouseButtonPress) {
    if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) is_held_ = true;
  } else if (event->type() == QEvent::ContextMenu) {
    // The menu gets the release of the button.
    is_held_ = false;
  } else if (event->type() == QEvent::MouseButtonRelease) {
    is_held_ = false;
    // After the header has handled the event, which moves a column.
    QMetaObject::invokeMethod(this, &ColumnLayout::Report, Qt::QueuedConnection);
  }
  return QObject::eventFilter(watched, event);
}

void ColumnLayout::Report() {
  if (!is_changed_) return;
  is_changed_ = false;
  Fit();
  std::vector<ChosenColumn> seen;
  for (int place = 0; place < Header().count(); ++place)
    seen.push_back(columns_[static_cast<std::size_t>(Header().logicalIndex(place))]);
  emit Changed(seen);
}

}  // namespace tallow
