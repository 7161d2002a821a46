// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/song_list_view.h"

#include <QApplication>
#include <QDropEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QMouseEvent>
#include <QPainter>

#include "ui/jukebox/picture_file.h"
#include "ui/jukebox/rank_picture.h"
#include "ui/jukebox/song_list_model.h"
#include "ui/support/qt_path.h"

namespace tallow {
namespace {

/// Opacity of the background colour over the picture, from 0 to 255.
constexpr int kDimOpacity = 176;

/// Initial width of the column of record numbers, in average characters.
constexpr int kKeyCharacters = 10;

constexpr int kRowPadding = 6;

/// Minimum size of a rank icon, in pixels.
constexpr int kMinPicture = 16;

}  // namespace

SongListView::SongListView(SongListModel& songs, QWidget* parent)
    : QTableView(parent), songs_(songs) {
  setObjectName(QStringLiteral("ListView"));
  setAccessibleName(tr("Songs"));
  setAccessibleDescription(tr("Enter plays the song, Shift+F10 opens its menu"));
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
  ShowMarks(false);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionsClickable(true);
  horizontalHeader()->setStretchLastSection(false);
  setDragEnabled(true);
  setAcceptDrops(true);
  setDropIndicatorShown(false);
}

void SongListView::ShowMarks(bool on) {
  const int picture = std::max(kMinPicture, parentWidget()->fontMetrics().height());
  setIconSize(QSize(on ? WidthWithMark(picture) : picture, picture));
}

void SongListView::ChangeHeaders() {
  QHeaderView& header = *horizontalHeader();
  const int before = header.count();
  songs_.ChangeHeaders();
  if (header.count() == before || header.count() == 0) return;
  header.setSectionResizeMode(SongListModel::kText, QHeaderView::Stretch);
  if (header.count() > SongListModel::kKey)
    header.resizeSection(SongListModel::kKey,
                         kKeyCharacters * parentWidget()->fontMetrics().averageCharWidth());
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
}

void SongListView::scrollContentsBy(int dx, int dy) {
  QTableView::scrollContentsBy(dx, dy);
  // Repaints everything, because the picture does not scroll with the rows.
  if (!background_.isNull()) viewport()->update();
}

QModelIndex SongListView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  const int rows = model()->rowCount();
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
  int row = FindRow(beginning, from, SongListModel::kNameRole);
  if (row < 0 && repeats) row = FindRow(typed_, from, SongListModel::kNameRole);
  // Falls back to the label, which begins with the position in the list.
  if (row < 0) row = FindRow(typed_, 0, Qt::DisplayRole);
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
