// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMdiArea;

namespace tallow {

/// Tiles the open windows horizontally: up to three below each other, more in columns of such. Minimized
/// ones stay as they are.
void TileHorizontally(QMdiArea& area);

/// Puts the minimized windows in rows at the bottom, from the left.
void ArrangeIcons(QMdiArea& area);

}  // namespace tallow
