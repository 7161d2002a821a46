// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/columns/song_list_header.h"

#include <QStyleOptionHeader>

#include "ui/jukebox/columns/song_list_delegate.h"

namespace tallow {

void SongListHeader::initStyleOptionForIndex(QStyleOptionHeader* option, int section) const {
  QHeaderView::initStyleOptionForIndex(option, section);
  if (option->textAlignment.testFlag(Qt::AlignRight)) option->text = ApartFromNext(option->text);
}

}  // namespace tallow
