// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include "app/playing/player_model.h"

class QLabel;
class QPushButton;

namespace tallow {

class QueueModel;
class QueueView;

/// The content of the dock "Queue": how many songs are to come, a button that saves them as a
/// folder, and the list of them. Says how songs get into an empty queue, and what the player cannot
/// do.
class QueuePane : public QWidget {
  Q_OBJECT

 public:
  /// \param player must outlive the pane
  explicit QueuePane(PlayerModel& player, QWidget* parent = nullptr);

  QueueView& View() noexcept { return *view_; }
  QSize sizeHint() const override;

 signals:
  /// The user wants to save the songs of the queue as a folder.
  void SaveAsFolder();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowState();
  QString EmptyText() const;

  PlayerModel& player_;
  QueueModel* rows_;
  QueueView* view_;
  QLabel* count_;
  QLabel* empty_;  ///< a child of the list's viewport
  QLabel* note_;
  QPushButton* save_;
};

}  // namespace tallow
