// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/song_list_view.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QDropEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include "ui/jukebox/columns/column_layout.h"
#include "ui/jukebox/columns/rank_clicks.h"
#include "ui/jukebox/columns/song_list_delegate.h"
#include "ui/jukebox/columns/song_list_header.h"
#include "ui/jukebox/picture_file.h"
#include "ui/jukebox/rank_picture.h"
#include "ui/jukebox/song_list_model.h"
#include "ui/support/qt_path.h"

namespace tallow {
namespace {

/// Opacity of the background colour over the picture, from 0 to 255.
constexpr int kDimOpacity = 176;

constexpr int kRowPadding = 6;

/// Minimum size of a rank icon, in pixels.
constexpr int kMinPicture = 16;

/// Minimum width of a column, in pixels.
constexpr int kMinColumn = 20;

}  // namespace

SongListView::SongListView(SongListModel& songs, QWidget* parent)
    : QTableView(parent), songs_(songs) {
  setObjectName(QStringLiteral("ListView"));
  setAccessibleName(tr("Songs"));
  setModel(&songs);
  setShowGrid(false);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setWordWrap(false);
  setTabKeyNavigation(false);
  // The end of a song's label distinguishes it from similar songs, so the middle is elided.
  setTextElideMode(Qt::ElideMiddle);
  setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  const int text_height = parent->fontMetrics().height();
  verticalHeader()->setDefaultSectionSize(text_height + kRowPadding);
  ShowMarks();
  setItemDelegate(new SongListDelegate(this));
  setHorizontalHeader(new SongListHeader(this));
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  QHeaderView& header = *horizontalHeader();
  header.setHighlightSections(false);
  header.setSectionsClickable(true);
  header.setStretchLastSection(false);
  header.setMinimumSectionSize(kMinColumn);
  header.setContextMenuPolicy(Qt::CustomContextMenu);
  layout_ = new ColumnLayout(songs, *this);
  connect(layout_, &ColumnLayout::Changed, this, &SongListView::ColumnsChanged);
  const auto* const ranks = new RankClicks(songs, *this);
  connect(ranks, &RankClicks::RankWanted, this, &SongListView::RankWanted);
  connect(ranks, &RankClicks::RankStepsWanted, this, &SongListView::RankStepsWanted);
  setDragEnabled(true);
  setAcceptDrops(true);
  setDropIndicatorShown(false);
}

void SongListView::ShowMarks() {
  const int picture = std::max(kMinPicture, parentWidget()->fontMetrics().height());
  setIconSize(QSize(songs_.HasMarksAtNames() ? WidthWithMark(picture) : picture, picture));
}

void SongListView::ChangeHeaders() { songs_.ChangeHeaders(); }

void SongListView::ShowColumns(const std::vector<ChosenColumn>& columns, const SongColumns* texts,
                               bool details) {
  std::vector<ListColumn> kinds;
  kinds.reserve(columns.size());
  for (const ChosenColumn& column : columns) kinds.push_back(column.column);
  ShowSort(-1, false);
  songs_.ShowColumns(std::move(kinds), texts);
  horizontalHeader()->setSectionsMovable(details);
  ShowMarks();
  layout_->Show(columns);
}

void SongListView::FitColumns() { layout_->Fit(); }

void SongListView::ShowSort(int section, bool descending) {
  QHeaderView& header = *horizontalHeader();
  header.setSortIndicatorShown(section >= 0);
  header.setSortIndicator(section, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
  songs_.ShowSort(section, descending);
}

std::string SongListView::SetBackgroundImage(const QString& address, bool tiled) {
  QString path = address;
  for (const QLatin1String prefix : {QLatin1String("file:\\\\"), QLatin1String("file://")})
    if (path.startsWith(prefix)) path.remove(0, prefix.size());
  PictureFile picture;
  if (!path.isEmpty()) picture = ReadPicture(PathOfQt(path));
  background_ = picture.pixmap;
  tiled_ = tiled;
  viewport()->update();
  return picture.problem;
}

void SongListView::paintEvent(QPaintEvent* event) {
  if (!background_.isNull()) {
    QPainter painter(viewport());
    const QRect area = viewport()->rect();
    if (tiled_) {
      painter.drawTiledPixmap(area, background_);
    } else {
      QRect place = background_.rect();
      place.moveCenter(area.center());
      painter.drawPixmap(place, background_);
    }
    QColor veil = palette().color(QPalette::Base);
    veil.setAlpha(kDimOpacity);
    painter.fillRect(area, veil);
  }
  QTableView::paintEvent(event);
  FrameCurrentRow();
}

QRect SongListView::RowRect(const QModelIndex& index) const {
  const QRect cell = visualRect(index);
  const int right = horizontalHeader()->length() - horizontalOffset();
  return {0, cell.y(), std::min(right, viewport()->width()), cell.height()};
}

void SongListView::FrameCurrentRow() {
  // A selected row is visible without a frame.
  const QModelIndex current = currentIndex();
  if (!hasFocus() || !current.isValid() || selectionModel()->isSelected(current)) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::Highlight));
  painter.drawRect(RowRect(current).adjusted(0, 0, -1, -1));
}

void SongListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  // The view itself updates only the two cells.
  for (const QModelIndex& index : {current, previous})
    if (index.isValid()) viewport()->update(RowRect(index));
}

void SongListView::scrollTo(const QModelIndex& index, ScrollHint hint) {
  QScrollBar& sideways = *horizontalScrollBar();
  const int before = sideways.value();
  QTableView::scrollTo(index, hint);
  if (!moves_sideways_) sideways.setValue(before);
}

void SongListView::keyPressEvent(QKeyEvent* event) {
  QTableView::keyPressEvent(event);
  moves_sideways_ = false;
}

void SongListView::scrollContentsBy(int dx, int dy) {
  QTableView::scrollContentsBy(dx, dy);
  // The frame of the current row does not scroll sideways with the cells.
  if (dx != 0 && currentIndex().isValid()) viewport()->update(RowRect(currentIndex()));
  // Repaints everything, because the picture does not scroll with the rows.
  if (!background_.isNull()) viewport()->update();
}

QModelIndex SongListView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  const int rows = model()->rowCount();
  moves_sideways_ = action == MoveLeft || action == MoveRight;
  if (rows > 0 && action == MoveHome) return model()->index(0, 0);
  if (rows > 0 && action == MoveEnd) return model()->index(rows - 1, 0);
  return QTableView::moveCursor(action, modifiers);
}

void SongListView::SelectRows(int first, int last) {
  const QModelIndex begin = model()->index(first, 0);
  selectionModel()->setCurrentIndex(begin, QItemSelectionModel::NoUpdate);
  selectionModel()->select(QItemSelection(begin, model()->index(last, model()->columnCount() - 1)),
                           QItemSelectionModel::ClearAndSelect);
  scrollTo(begin);
}

void SongListView::SelectRows(const std::vector<int>& rows) {
  const QModelIndex first = model()->index(rows.front(), 0);
  selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
  selectionModel()->select(RangesOf(rows), QItemSelectionModel::ClearAndSelect);
  // Shows all selected rows if they fit, and the first row in any case.
  scrollTo(model()->index(rows.back(), 0));
  scrollTo(first);
}

QItemSelection SongListView::RangesOf(const std::vector<int>& rows) const {
  QItemSelection ranges;
  const int last_column = model()->columnCount() - 1;
  for (std::size_t k = 0; k < rows.size(); ++k) {
    const int first = rows[k];
    while (k + 1 < rows.size() && rows[k + 1] == rows[k] + 1) ++k;
    ranges.append(
        QItemSelectionRange(model()->index(first, 0), model()->index(rows[k], last_column)));
  }
  return ranges;
}

int SongListView::FindRow(const QString& beginning, int from, int role) const {
  const int rows = model()->rowCount();
  for (int k = 0; k < rows; ++k) {
    const int row = (from + k) % rows;
    if (model()->index(row, 0).data(role).toString().startsWith(beginning, Qt::CaseInsensitive))
      return row;
  }
  return -1;
}

bool SongListView::IsTyping() const {
  return since_typed_.isValid() && !since_typed_.hasExpired(QApplication::keyboardInputInterval());
}

void SongListView::keyboardSearch(const QString& search) {
  const int rows = model()->rowCount();
  if (rows == 0 || search.isEmpty()) return;
  if (!IsTyping()) typed_.clear();
  since_typed_.start();
  typed_ += search;
  // Typing the same letter repeatedly moves from song to song.
  const bool repeats = typed_.count(typed_.front()) == typed_.size();
  const QString beginning = repeats ? typed_.left(1) : typed_;
  const int current = currentIndex().isValid() ? currentIndex().row() : -1;
  const int from = (repeats ? current + 1 : std::max(current, 0)) % rows;
  // The beginning of a title that is shown, or of the file name.
  const bool has_titles = songs_.IndexOf(ListColumn::kTitle) >= 0;
  int row = has_titles ? FindRow(beginning, from, SongListModel::kTitleRole) : -1;
  if (row < 0) row = FindRow(beginning, from, SongListModel::kNameRole);
  if (row < 0 && repeats) row = FindRow(typed_, from, SongListModel::kNameRole);
  // Falls back to the label, which begins with the position in the list.
  if (row < 0) row = FindRow(typed_, 0, SongListModel::kLabelRole);
  if (row >= 0) SelectRows(row, row);
}

void SongListView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) QTableView::mouseDoubleClickEvent(event);
}

void SongListView::startDrag(Qt::DropActions /*actions*/) { emit DragStarted(); }

void SongListView::dragEnterEvent(QDragEnterEvent* event) { emit DragsOver(event); }
void SongListView::dragMoveEvent(QDragMoveEvent* event) { emit DragsOver(event); }
void SongListView::dropEvent(QDropEvent* event) { emit Dropped(event); }

}  // namespace tallow
