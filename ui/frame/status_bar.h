// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStatusBar>
#include <QString>

namespace tallow {

/// The status bar of the frame window. A message that does not fit beside the widgets at the right
/// is shown with an ellipsis, and is then the tool tip if the bar has no other.
class StatusBar : public QStatusBar {
  Q_OBJECT

 public:
  using QStatusBar::QStatusBar;

  /// Shows a message whose end is never cut off.
  /// \param end follows the text, such as "  (and 1 more)"; may be empty
  void ShowMessage(const QString& text, const QString& end);
  /// The message as it is shown, with an ellipsis where it was cut off.
  QString ShownText() const;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  /// Where the message is drawn: left of all widgets.
  QRect MessageRect() const;

  QString end_;  ///< of the message that ShowMessage has shown last
};

}  // namespace tallow
