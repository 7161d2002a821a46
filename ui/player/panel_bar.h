// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollBar>

namespace tallow {

/// A horizontal scroll bar of the player panel. A click beside the thumb moves the thumb to the
/// place of the click. Shows when it has the keyboard focus.
class PanelBar : public QScrollBar {
  Q_OBJECT

 public:
  explicit PanelBar(QWidget* parent);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool IsInTrough(QPoint place) const;
  /// The value at which the middle of the thumb is at a place.
  int ValueAt(int x) const;
};

}  // namespace tallow
