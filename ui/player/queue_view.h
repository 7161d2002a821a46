// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

#include <QTableView>

#include "app/playing/player_model.h"

class QMenu;

namespace tallow {

class QueueModel;

/// The list of the songs that are to come. Rows are rearranged by dragging, with Alt+Up and
/// Alt+Down, and removed with Del; Enter and a double-click play a row, the blank pauses. What the
/// player cannot do is disabled.
///
/// The keys of the frame's menus that would change the jukebox, Del above all, have no effect on it
/// while the list has the focus.
class QueueView : public QTableView {
  Q_OBJECT

 public:
  /// \param player, rows must outlive the view
  QueueView(PlayerModel& player, QueueModel& rows, QWidget* parent);

  /// The selected rows, from 0, ascending.
  std::vector<int> SelectedRows() const;

  void PlayCurrent();
  void RemoveSelected();
  /// Moves the selected rows up or down by one; they are below each other afterwards.
  void MoveSelected(bool up);

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void MakeMenu();
  void EnableItems();
  void StoreSelection();
  void RestoreSelection();

  PlayerModel& player_;
  QueueModel& rows_;
  QMenu* menu_;
  // The selection while the view is refilled.
  std::unordered_set<std::uint64_t> selected_;
  std::uint64_t current_ = 0;  ///< 0 for none
  int scrolled_ = 0;
};

}  // namespace tallow
