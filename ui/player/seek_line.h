// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/player/clicked_slider.h"

namespace tallow {

/// The line that shows the position in a song, and seeks: to the place that is clicked, at the end
/// of a drag, and by keys. The values are seconds.
class SeekLine : public ClickedSlider {
  Q_OBJECT

 public:
  static constexpr int kStep = 5;   ///< s, of an arrow key
  static constexpr int kPage = 30;  ///< s, of Page Up and Page Down

  explicit SeekLine(QWidget* parent);

  /// Shows a position, unless the user drags the line.
  /// \param length 0 or less when there is nothing to seek in; the line is then disabled
  void ShowPosition(int position, int length);
  /// Gives up what the user drags, because another song has begun.
  void CancelDrag();

 signals:
  /// The user chose a position.
  void Sought(int seconds);
  /// The line shows another position, which the user may be dragging.
  void PositionShown(int seconds);

 protected:
  void mouseMoveEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
};

}  // namespace tallow
