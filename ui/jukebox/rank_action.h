// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAction>

namespace tallow {

/// An item of the rank menu. It may show a picture and no text; a screen reader hears the rank.
class RankAction : public QAction {
  Q_OBJECT

 public:
  /// \param rank whose picture it shows, see RankPicture
  RankAction(const QString& caption, int rank, QObject* parent);

  int Rank() const noexcept { return rank_; }

 private:
  int rank_;
};

}  // namespace tallow
