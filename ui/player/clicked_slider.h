// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSlider>

namespace tallow {

/// A horizontal slider whose handle goes to the place that is clicked, and follows the pointer from
/// there. A click gives it no keyboard focus.
class ClickedSlider : public QSlider {
  Q_OBJECT

 public:
  explicit ClickedSlider(QWidget* parent);

  /// The value at a place.
  /// \param x in the slider's coordinates
  int ValueAt(int x) const;
  /// The x of the middle of the handle at a value, in the slider's coordinates.
  int PlaceOf(int value) const;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  struct Track {
    int start;  ///< x of the middle of the handle at the minimum
    int length;
    bool upside_down;
  };
  Track TrackOfHandle() const;
};

}  // namespace tallow
