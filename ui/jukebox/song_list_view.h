// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include <QElapsedTimer>
#include <QItemSelection>
#include <QPixmap>
#include <QTableView>

namespace tallow {

/// The list half of the explorer control, with the habits of a list of files: Home and End go to its ends,
/// typing finds a name, rows can be dragged, and a picture may lie behind it.
class SongListView : public QTableView {
  Q_OBJECT

 public:
  explicit SongListView(QWidget* parent);

  /// Puts a picture behind the rows, in the middle or tiled, or takes it away. A veil in the background's
  /// colour lies over it, so that the rows stay readable. It does not scroll.
  ///
  /// \param address "file:\\" or "file://" and the path of the picture; empty, or of a picture that cannot
  ///        be read: none
  /// \returns why the picture cannot be read; empty otherwise
  std::string SetBackgroundImage(const QString& address, bool tiled);
  bool HasBackgroundImage() const { return !background_.isNull(); }
  QSize BackgroundSize() const { return background_.size(); }

  /// Selects some rows and nothing else, whatever keys are held down. The first one is current then.
  void SelectRows(int first, int last);
  /// \param rows from 0, rising; not empty
  void SelectRows(const std::vector<int>& rows);
  /// Some rows, from 0 and rising, as ranges.
  QItemSelection RangesOf(const std::vector<int>& rows) const;

  void keyboardSearch(const QString& search) override;

 signals:
  /// The selected rows are being dragged. Whoever starts the drag does it before returning.
  void DragWanted();
  /// Something is dragged over the list, or dropped on it; to be accepted or ignored.
  void DragsOver(QDropEvent* event);
  void Drops(QDropEvent* event);

 protected:
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  void startDrag(Qt::DropActions actions) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;

 private:
  /// The next row, from a row on and around the end, whose text of a role begins with a text; -1 for none.
  int FindRow(const QString& beginning, int from, int role) const;

  QPixmap background_;
  bool tiled_ = false;
  QString typed_;
  QElapsedTimer since_typed_;
};

}  // namespace tallow
