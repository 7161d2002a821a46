// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAction>

namespace tallow {

/// An item of the rank menu. The item may show an icon without text; screen readers read the rank.
class RankAction : public QAction {
  Q_OBJECT

 public:
  /// \param picture rank of the icon, see RankPicture
  /// \param rank    rank that the item gives; the tooltip tells it
  RankAction(const QString& caption, int picture, int rank, QObject* parent);
};

}  // namespace tallow
