// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QTimer>
#include <QWidget>

class QTableView;

namespace tallow {

/// The line between two rows of a list that shows where dragged rows go. Near an edge of the list
/// it scrolls the list. It disappears when the drag leaves the list or ends.
class DropLine : public QWidget {
  Q_OBJECT

 public:
  /// \param list must outlive this object, which becomes a child of its viewport
  explicit DropLine(QTableView& list);

  /// The row that rows dropped at a position go before: the row under the position or the next one,
  /// whichever edge is nearer; the number of rows below the last one.
  /// \param position in the viewport
  int RowAt(const QPoint& position) const;

  /// Shows the line where rows dropped at a position go.
  void ShowAt(const QPoint& position);
  void Hide();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void Place();
  void Scroll();

  QTableView& list_;
  QPoint position_;
  QTimer scrolling_;
};

}  // namespace tallow
