// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/window_arrangement.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>

#include "ui/frame/panel_window.h"

namespace tallow {
namespace {

/// Maximum windows in one column; more would be too low to show anything.
constexpr int kMaxInOneColumn = 3;

/// Number of columns in which windows are tiled.
/// \param beside whether windows are rather side by side than below each other
int ColumnsFor(int windows, bool beside) {
  if (windows <= kMaxInOneColumn) return beside ? windows : 1;
  const int root = static_cast<int>(std::sqrt(static_cast<double>(windows)));
  return beside ? (windows + root - 1) / root : root;
}

QList<QMdiSubWindow*> ShownWindows(const QMdiArea& area, bool minimized) {
  QList<QMdiSubWindow*> windows;
  for (QMdiSubWindow* const window : area.subWindowList(QMdiArea::CreationOrder))
    if (window->isVisible() && window->isMinimized() == minimized) windows.append(window);
  return windows;
}

/// Height of the strip that minimized windows occupy at the bottom of the area, in pixels.
int StripOfIcons(const QMdiArea& area) {
  int top = area.viewport()->height();
  for (const QMdiSubWindow* const window : ShownWindows(area, true))
    top = std::min(top, window->y());
  return area.viewport()->height() - top;
}

void CascadeWindows(QMdiArea& area) {
  // A window that is restored from maximized comes to the front, so the stacking order is restored.
  QMdiSubWindow* const active = area.currentSubWindow();
  const QList<QMdiSubWindow*> stack = area.subWindowList(QMdiArea::StackingOrder);
  for (QMdiSubWindow* const window : stack)
    if (window->isMaximized()) window->showNormal();
  const auto put_back = [&stack] {
    for (QMdiSubWindow* const window : stack) window->raise();
  };
  put_back();
  const QMdiArea::WindowOrder order = area.activationOrder();
  area.setActivationOrder(QMdiArea::StackingOrder);
  area.cascadeSubWindows();
  area.setActivationOrder(order);
  if (active != nullptr) area.setActiveSubWindow(active);
  put_back();
}

void PlaceIcons(QMdiArea& area) {
  const QRect space = area.viewport()->rect();
  int left = 0;
  int bottom = space.height();
  int tallest = 0;
  for (QMdiSubWindow* const window : ShownWindows(area, true)) {
    if (left > 0 && left + window->width() > space.width()) {
      left = 0;
      bottom -= tallest;
      tallest = 0;
    }
    window->move(left, std::max(0, bottom - window->height()));
    window->raise();
    left += window->width();
    tallest = std::max(tallest, window->height());
  }
}

void TileWindows(QMdiArea& area, bool may_be_beside) {
  const QList<QMdiSubWindow*> windows = ShownWindows(area, false);
  const int count = static_cast<int>(windows.size());
  if (count == 0) return;
  for (QMdiSubWindow* const window : windows) window->showNormal();
  PlaceIcons(area);
  // On a small area the minimized windows overlap the others instead of leaving them no space.
  constexpr int kMaxOfArea = 3;
  QRect space = area.viewport()->rect();
  const int strip = StripOfIcons(area);
  if (strip < space.height() / kMaxOfArea) space.setHeight(space.height() - strip);
  const int columns = ColumnsFor(count, may_be_beside && space.width() > space.height());
  int next = 0;
  for (int column = 0; column < columns; ++column) {
    // The last columns get the remaining windows, one each.
    const int rows = count / columns + (column >= columns - count % columns ? 1 : 0);
    const int left = space.width() * column / columns;
    const int right = space.width() * (column + 1) / columns;
    for (int row = 0; row < rows; ++row) {
      const int top = space.height() * row / rows;
      const int bottom = space.height() * (row + 1) / rows;
      windows[next++]->setGeometry(left, top, right - left, bottom - top);
    }
  }
}

/// Calls `arrange`, and then activates the window again that was active before, and its part that
/// had the keyboard focus.
template <typename Arrange>
void KeepActive(QMdiArea& area, const Arrange& arrange) {
  QMdiSubWindow* const active = area.currentSubWindow();
  const QPointer<QWidget> focus = QApplication::focusWidget();
  arrange(area);
  if (active != area.currentSubWindow()) area.setActiveSubWindow(active);
  if (focus != nullptr && active != nullptr && active->isAncestorOf(focus)) focus->setFocus();
}

}  // namespace

void WindowArrangement::Cascade() {
  panel_.Minimize();
  KeepActive(area_, CascadeWindows);
}

void WindowArrangement::Tile(bool may_be_beside) {
  panel_.Minimize();
  KeepActive(area_, [may_be_beside](QMdiArea& area) { TileWindows(area, may_be_beside); });
}

void WindowArrangement::ArrangeIcons() { PlaceIcons(area_); }

}  // namespace tallow
