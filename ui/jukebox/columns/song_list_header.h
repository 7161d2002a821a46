// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHeaderView>

namespace tallow {

/// The column headers of a list of songs. Texts that are aligned at the right keep a distance from
/// the next header, which may be aligned at the left.
class SongListHeader : public QHeaderView {
  Q_OBJECT

 public:
  explicit SongListHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}

 protected:
  void initStyleOptionForIndex(QStyleOptionHeader* option, int section) const override;
};

}  // namespace tallow
