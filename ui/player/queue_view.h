// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <unordered_set>
#include <vector>

#include <QTableView>

#include "app/playing/player_model.h"

class QMenu;

namespace tallow {

class QueueModel;

/// The list of the songs that are to come. Rows are rearranged by dragging, with Alt+Up and
/// Alt+Down, and removed with Del; Enter and a double-click play a row, the blank pauses if the
/// user has chosen that. What the player cannot do is disabled. A line shows where dragged rows
/// will be.
///
/// There is no search by typing, because it would ask the player for all entries.
///
/// The keys of the frame's menus that would change the jukebox, Del above all, have no effect on it
/// while the list has the focus.
class QueueView : public QTableView {
  Q_OBJECT

 public:
  /// \param player, rows must outlive the view
  QueueView(PlayerModel& player, QueueModel& rows, QWidget* parent);

  /// Sets whether the blank pauses what plays, and lets it go on. At first it does not.
  void SetSpacePauses(bool pauses) { space_pauses_ = pauses; }

  /// The selected rows, from 0, ascending.
  std::vector<int> SelectedRows() const;

  void PlayCurrent();
  /// Removes the selected rows, and selects the row below them, or the last row.
  void RemoveSelected();
  /// Moves the selected rows up or down by one; they are below each other afterwards.
  void MoveSelected(bool up);

  void keyboardSearch(const QString& /*text*/) override {}

 signals:
  /// The user drags something else than rows over the list, or drops it there. The receiver accepts
  /// or ignores the event; what it accepts comes to the end of the queue.
  void DragsOver(QDropEvent* event);
  void Dropped(QDropEvent* event);

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void MakeMenu();
  void EnableItems();
  void DragTo(QDropEvent& event);
  /// The row that rows dropped at a position come before; the number of rows for the end.
  int DropRowAt(const QPoint& place) const;
  void ShowDropLine(std::optional<int> row);
  void StoreSelection();
  void RestoreSelection();

  PlayerModel& player_;
  QueueModel& rows_;
  QMenu* menu_;
  bool space_pauses_ = false;
  std::optional<int> drop_line_;  ///< the row above which the line is drawn during a drag
  // The selection while the view is refilled.
  std::unordered_set<std::uint64_t> selected_;
  std::uint64_t current_ = 0;  ///< 0 for none
  int scrolled_ = 0;
};

}  // namespace tallow
