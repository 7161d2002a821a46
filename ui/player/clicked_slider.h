// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSlider>

namespace tallow {

/// A horizontal slider whose handle goes to the place that is clicked, and follows the pointer from
/// there. A click gives it no keyboard focus.
///
/// It is drawn in the colours of the palette and not by the style, because the grooves of some
/// styles cannot be seen on dark ground.
class ClickedSlider : public QSlider {
  Q_OBJECT

 public:
  explicit ClickedSlider(QWidget* parent);

  /// The value at a place.
  /// \param x in the slider's coordinates
  int ValueAt(int x) const;
  /// The x of the middle of the handle at a value, in the slider's coordinates.
  int PlaceOf(int value) const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  /// The width that the middle of the handle can move.
  int TrackLength() const;
  bool IsMirrored() const;
};

}  // namespace tallow
