// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMdiArea;
class QMdiSubWindow;

namespace tallow {

/// Makes a window the active one, restored if it was minimized.
void BringToFront(QMdiArea& area, QMdiSubWindow& window);

/// Cascades the open windows as they lie before each other, the active one last: each leaves the titles of
/// those behind it free. Minimized ones stay as they are.
void Cascade(QMdiArea& area);

/// Tiles the open windows horizontally: up to three below each other, more in columns of such. Minimized
/// ones get a strip at the bottom.
void TileHorizontally(QMdiArea& area);

/// Puts the minimized windows in rows at the bottom, from the left, before all others.
void ArrangeIcons(QMdiArea& area);

}  // namespace tallow
