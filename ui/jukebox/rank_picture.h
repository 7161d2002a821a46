// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QString>

namespace tallow {

/// The best rank that a song can have, and the one of a song that was never ranked.
inline constexpr int kBestRankPicture = 7;
inline constexpr int kMinRankPicture = 2;

/// The picture of a rank: five bars, rising, of which the rank fills from none (2) to all (7). The number
/// of bars tells the rank; the colour only helps. Drawn, so crisp at every size and on every background.
///
/// \param rank kMinRankPicture to kBestRankPicture; an empty icon for others
QIcon RankPicture(int rank);

/// What a screen reader says for the picture: "rank 7 of 7"; empty for what has no picture.
QString RankPictureText(int rank);

}  // namespace tallow
