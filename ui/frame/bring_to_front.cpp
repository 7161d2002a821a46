// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/bring_to_front.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace tallow {

void BringToFront(QMdiArea& area, QMdiSubWindow& window) {
  if (window.isMinimized()) window.showNormal();
  area.setActiveSubWindow(&window);
}

void ComeToFront(QWidget& window) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.raise();
  window.activateWindow();
}

}  // namespace tallow
