// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/columns/rank_clicks.h"

#include <QApplication>
#include <QItemSelectionModel>
#include <QMouseEvent>
#include <QWheelEvent>

#include "ui/jukebox/columns/song_list_delegate.h"
#include "ui/jukebox/song_list_model.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {

RankClicks::RankClicks(const SongListModel& songs, SongListView& list)
    : QObject(&list), songs_(songs), list_(list) {
  list.viewport()->installEventFilter(this);
}

bool RankClicks::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      ranks_ = false;
      return Pressed(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonDblClick:
      // The second click opens the song where the first one has only selected the row.
      return ranks_ && Pressed(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove:
      return Moved(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
      return Released(*static_cast<QMouseEvent*>(event));
    case QEvent::Wheel:
      return Turned(*static_cast<QWheelEvent*>(event));
    default:
      return QObject::eventFilter(watched, event);
  }
}

bool RankClicks::IsRankOfSelected(const QModelIndex& index) const {
  return index.isValid() && index.column() == songs_.IndexOf(ListColumn::kRank) &&
         list_.selectionModel()->isSelected(index);
}

bool RankClicks::Pressed(const QMouseEvent& event) {
  const QModelIndex index = list_.indexAt(event.position().toPoint());
  pressed_ = QModelIndex();
  if (event.button() != Qt::LeftButton || event.modifiers() != Qt::NoModifier ||
      !IsRankOfSelected(index))
    return false;
  // The list does not get the event, because its click would select only this row.
  list_.setFocus(Qt::MouseFocusReason);
  pressed_ = index;
  pressed_at_ = event.position().toPoint();
  ranks_ = true;
  return true;
}

bool RankClicks::Moved(const QMouseEvent& event) {
  if (!pressed_.isValid()) return false;
  const QPoint moved = event.position().toPoint() - pressed_at_;
  if (moved.manhattanLength() < QApplication::startDragDistance()) return true;
  // The list has not got the press, so it would not start the drag.
  pressed_ = QModelIndex();
  emit list_.DragStarted();
  return true;
}

bool RankClicks::Released(const QMouseEvent& event) {
  if (!pressed_.isValid() || event.button() != Qt::LeftButton) return false;
  const QModelIndex index = list_.indexAt(event.position().toPoint());
  const bool is_there = index == pressed_;
  pressed_ = QModelIndex();
  const int rank =
      SongListDelegate::RankAt(list_.visualRect(index), event.position().toPoint().x());
  if (is_there && rank != 0) emit RankWanted(rank);
  return true;
}

bool RankClicks::Turned(const QWheelEvent& event) {
  const QModelIndex index = list_.indexAt(event.position().toPoint());
  const int turned = event.angleDelta().y();
  if (event.modifiers() != Qt::ControlModifier || turned == 0 || !IsRankOfSelected(index))
    return false;
  // Touchpads report parts of a step.
  if (index != turned_at_ || (turned > 0) != (turned_ > 0)) turned_ = 0;
  turned_at_ = index;
  turned_ += turned;
  const int steps = turned_ / QWheelEvent::DefaultDeltasPerStep;
  turned_ -= steps * QWheelEvent::DefaultDeltasPerStep;
  if (steps != 0) emit RankStepsWanted(steps);
  return true;
}

}  // namespace tallow
