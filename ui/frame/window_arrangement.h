// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMdiArea;
class QMdiSubWindow;

namespace tallow {

/// Activates a window, and restores it first if it is minimized.
void BringToFront(QMdiArea& area, QMdiSubWindow& window);

/// Cascades the open windows in their stacking order, the active one last; the titles of the
/// windows behind stay visible. Minimized windows are left alone.
void Cascade(QMdiArea& area);

/// Tiles the open windows horizontally: up to three in one column, more in several columns.
/// Minimized windows get a strip at the bottom.
void TileHorizontally(QMdiArea& area);

/// Puts the minimized windows in rows at the bottom, from the left, in front of all others.
void ArrangeIcons(QMdiArea& area);

}  // namespace tallow
