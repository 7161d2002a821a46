// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include <QElapsedTimer>
#include <QItemSelection>
#include <QPixmap>
#include <QTableView>

#include "app/columns/column_choice.h"

namespace tallow {

class ColumnLayout;
class SongColumns;
class SongListModel;

/// The list pane of the explorer control, which behaves like a list of files: Home and End move to
/// the first and the last row, typing finds a name, rows can be dragged, and a picture can be shown
/// behind the rows.
class SongListView : public QTableView {
  Q_OBJECT

 public:
  /// \param songs must outlive the view
  SongListView(SongListModel& songs, QWidget* parent);

  /// Updates the columns after the jukebox's column headers have changed.
  void ChangeHeaders();

  /// Shows columns, see SongListModel::ShowColumns. This deselects all rows.
  /// \param details see Switches::columns_of_details; with it, headers can be dragged
  void ShowColumns(const std::vector<ChosenColumn>& columns, const SongColumns* texts,
                   bool details);
  /// Call after the list was refilled.
  void FitColumns();
  /// Shows with an arrow that the list is sorted by a column, or shows no arrow.
  /// \param section of the header, from 0; -1 for none
  void ShowSort(int section, bool descending);

  /// Shows a picture behind the rows, centred or tiled, or removes it. The picture is dimmed with
  /// the background colour, so that the rows stay readable, and does not scroll.
  ///
  /// \param address "file:\\" or "file://" and the path of the picture; if it is empty, or the
  /// picture cannot be read, no picture is shown
  /// \returns why the picture cannot be read; empty on success
  std::string SetBackgroundImage(const QString& address, bool tiled);
  bool HasBackgroundImage() const { return !background_.isNull(); }
  QSize BackgroundSize() const { return background_.size(); }

  /// Selects only the given rows, whatever modifier keys are held down. The first row becomes
  /// current.
  void SelectRows(int first, int last);
  /// \param rows from 0, ascending; not empty
  void SelectRows(const std::vector<int>& rows);
  /// Converts rows, from 0 and ascending, to selection ranges.
  QItemSelection RangesOf(const std::vector<int>& rows) const;

  /// Scrolls sideways only to follow the keyboard: the other callers want to see a row.
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  void keyboardSearch(const QString& search) override;
  /// Whether the user is typing a name: the next letter continues it.
  bool IsTyping() const;

  /// Call after SongListModel::ShowMarks: makes room for marks left of the rank icons, or removes
  /// it.
  void ShowMarks();

 signals:
  /// The user has moved a column, or has changed its width.
  void ColumnsChanged(const std::vector<tallow::ChosenColumn>& columns);
  /// The user wants all selected songs to have a rank, see RankClicks.
  void RankWanted(int rank);
  /// The user wants each selected song to have a higher or a lower rank, see RankClicks.
  void RankStepsWanted(int steps);
  /// The user has started to drag the selected rows. The receiver runs the drag before it returns.
  void DragStarted();
  /// The user drags something over the list, or drops something on it. The receiver accepts or
  /// ignores the event.
  void DragsOver(QDropEvent* event);
  void Dropped(QDropEvent* event);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  /// A double-click of another button than the left has no effect.
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void startDrag(Qt::DropActions actions) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;

 private:
  /// Returns the first row, searching from a row and wrapping around at the end, whose text of a
  /// role begins with a text; -1 if there is none.
  int FindRow(const QString& beginning, int from, int role) const;
  /// The visible part of the row of a cell, in the viewport.
  QRect RowRect(const QModelIndex& index) const;
  void FrameCurrentRow();

  SongListModel& songs_;
  ColumnLayout* layout_ = nullptr;  ///< a child of the view
  QPixmap background_;
  bool tiled_ = false;
  bool moves_sideways_ = false;  ///< a key that is being handled moves to another column
  QString typed_;
  QElapsedTimer since_typed_;
};

}  // namespace tallow
