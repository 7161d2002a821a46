// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QString>

#include "jukebox/ranking.h"
#include "ui/support/song_mark.h"

class QPainter;
class QRect;

namespace tallow {

/// The highest and the lowest rank that has a picture.
inline constexpr int kBestRankPicture = kBestRank;
inline constexpr int kMinRankPicture = kNeverRanked;

/// Returns the icon of a rank: five bars of rising height, of which the rank fills none (2) to all
/// (7). The number of filled bars shows the rank; the colour is redundant. The icon is drawn as
/// vectors, so it is sharp at every size and on every background.
///
/// \param rank kMinRankPicture to kBestRankPicture; other values give an empty icon
QIcon RankPicture(int rank);

/// The number of bars; the bar k, from 0, is filled by kMinRankPicture + k + 1 and better ranks.
inline constexpr int kRankBars = kBestRankPicture - kMinRankPicture;

/// Draws the bars of a rank over the whole width of a place, the first bar at its left edge.
/// \param rank as of RankPicture; other values draw nothing
void PaintRankBars(QPainter& painter, const QRect& place, int rank, QIcon::Mode mode);

/// Returns the icon of a rank with a mark left of it. The room for the mark is kept without one as
/// well, so that the icons of all rows are below each other.
/// \param rank as of RankPicture; of other values only the mark is drawn
QIcon MarkedRankPicture(int rank, SongMark mark);
/// The width of an icon of MarkedRankPicture, in pixels.
/// \param height of the icon, in pixels
constexpr int WidthWithMark(int height) noexcept { return height + height * 3 / 4; }

/// Returns the text of the icon for screen readers: "rank 7 of 7"; "not ranked" for the lowest one;
/// empty if the rank has no icon.
QString RankPictureText(int rank);

}  // namespace tallow
