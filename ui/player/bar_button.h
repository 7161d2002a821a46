// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

#include <QToolButton>

namespace tallow {

/// A button of the player bar: a picture without text. A click gives it no keyboard focus.
class BarButton : public QToolButton {
  Q_OBJECT

 public:
  BarButton(const char* name, QWidget* parent);

  /// Shows a picture, and a text as the tool tip and for screen readers.
  /// \param picture see FramePicture; a literal
  void Show(std::string_view picture, const QString& text);

 private:
  std::string_view picture_;
};

}  // namespace tallow
