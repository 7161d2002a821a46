// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMdiArea;
class QMdiSubWindow;
class QWidget;

namespace tallow {

/// Activates a window of the area, and restores it first if it is minimized.
void BringToFront(QMdiArea& area, QMdiSubWindow& window);

/// Activates a top-level window, and restores it first if it is minimized.
void ComeToFront(QWidget& window);

}  // namespace tallow
