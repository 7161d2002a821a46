// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;

namespace tallow {

/// The notice that is shown while new songs are searched for from the main window.
class frmSearching : public QWidget {
  Q_OBJECT

 public:
  explicit frmSearching(QWidget* parent = nullptr);

  /// Puts the window in the middle of the screen.
  void Load();

 private:
  QLabel* label_;
};

}  // namespace tallow
