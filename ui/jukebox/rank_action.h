// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAction>

namespace tallow {

/// An item of the rank menu. The item may show an icon without text; screen readers read the rank.
class RankAction : public QAction {
  Q_OBJECT

 public:
  /// \param rank rank of the icon, see RankPicture
  RankAction(const QString& caption, int rank, QObject* parent);

  int Rank() const noexcept { return rank_; }

 private:
  int rank_;
};

}  // namespace tallow
