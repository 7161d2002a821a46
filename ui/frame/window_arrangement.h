// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMdiArea;

namespace tallow {

class PanelWindow;

/// Arranges the windows in the area of the frame window. The player panel is minimized before,
/// because otherwise it would get a place among the jukeboxes.
class WindowArrangement {
 public:
  /// The parameters have to outlive this object.
  WindowArrangement(QMdiArea& area, PanelWindow& panel) : area_(area), panel_(panel) {}

  /// Cascades the open windows in their stacking order, the active one last; the titles of the
  /// windows behind stay visible. Minimized windows are left alone.
  void Cascade();

  /// Tiles the open windows: up to three in one column, more in several columns. Minimized windows
  /// get a strip at the bottom.
  /// \param may_be_beside whether up to three windows are side by side, and more in as many columns
  ///        as rows or more, where the area is wider than high
  void Tile(bool may_be_beside);

  /// Puts the minimized windows in rows at the bottom, from the left, in front of all others. The
  /// panel stays as it is.
  void ArrangeIcons();

 private:
  QMdiArea& area_;
  PanelWindow& panel_;
};

}  // namespace tallow
