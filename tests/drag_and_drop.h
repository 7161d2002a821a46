// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>

namespace tallow {

/// Drags data over a position of a view and drops it there, with the events that a real drag sends,
/// and processes the events that follow.
/// \returns whether the view accepted the data
inline bool DropAt(QAbstractItemView& view, const QPoint& place, const QMimeData& data,
                   Qt::KeyboardModifiers keys = {}) {
  constexpr Qt::DropActions kActions = Qt::CopyAction | Qt::MoveAction;
  QDragEnterEvent enter(place, kActions, &data, Qt::LeftButton, keys);
  QApplication::sendEvent(view.viewport(), &enter);
  QDragMoveEvent move(place, kActions, &data, Qt::LeftButton, keys);
  QApplication::sendEvent(view.viewport(), &move);
  const bool taken = move.isAccepted();
  QDropEvent drop(place, kActions, &data, Qt::LeftButton, keys);
  QApplication::sendEvent(view.viewport(), &drop);
  EXPECT_EQ(drop.isAccepted(), taken);
  QApplication::processEvents();
  return taken;
}

}  // namespace tallow
