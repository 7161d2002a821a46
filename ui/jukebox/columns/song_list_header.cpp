// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/columns/song_list_header.h"

#include <QStyleOptionHeader>

namespace tallow {

void SongListHeader::initStyleOptionForIndex(QStyleOptionHeader* option, int section) const {
  QHeaderView::initStyleOptionForIndex(option, section);
  // Two blanks that are not cut off at the end of a line, because the style sets the margins.
  constexpr QChar kBlank(0x00A0);
  if ((option->textAlignment & Qt::AlignRight) != 0) option->text += QString(2, kBlank);
}

}  // namespace tallow
