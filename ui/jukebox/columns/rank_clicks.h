// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <QPoint>

class QMouseEvent;
class QWheelEvent;

namespace tallow {

class SongListModel;
class SongListView;

/// Sets ranks by the mouse, in the column of ranks of a selected row: a click sets the rank of the
/// bar there, and the wheel with Ctrl raises or lowers the ranks. A press that moves drags the
/// songs.
class RankClicks : public QObject {
  Q_OBJECT

 public:
  /// The parameters must outlive this object.
  RankClicks(const SongListModel& songs, SongListView& list);

 signals:
  /// The user wants all selected songs to have a rank.
  /// \param rank kNeverRanked to kBestRank
  void RankWanted(int rank);
  /// The user wants each selected song to have a higher or a lower rank.
  /// \param steps not 0; negative to lower
  void RankStepsWanted(int steps);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool IsRankOfSelected(const QModelIndex& index) const;
  bool Pressed(const QMouseEvent& event);
  bool Moved(const QMouseEvent& event);
  bool Released(const QMouseEvent& event);
  bool Turned(const QWheelEvent& event);

  const SongListModel& songs_;
  SongListView& list_;
  QPersistentModelIndex pressed_;    ///< the cell where the button is held down; else invalid
  QPoint pressed_at_;                ///< the place of that press
  bool ranks_ = false;               ///< the last press was one that ranks
  QPersistentModelIndex turned_at_;  ///< the cell over which the wheel was turned last
  int turned_ = 0;  ///< what is left of a step of the wheel, in eighths of a degree
};

}  // namespace tallow
