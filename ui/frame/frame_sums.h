// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QLabel;
class QStatusBar;

namespace tallow {

class JukeboxArea;
class frmMain;

/// The sums of the active jukebox's list, at the right end of the status bar.
class FrameSums {
 public:
  /// \param status, jukeboxes have to outlive this object
  FrameSums(QStatusBar& status, JukeboxArea& jukeboxes);

  /// Shows the sums of a new window while it is active.
  void Follow(frmMain& window);

 private:
  void Update();

  JukeboxArea& jukeboxes_;
  QLabel* text_;     ///< a child of the status bar
  QObject context_;  ///< ends the connections before the windows are destroyed
};

}  // namespace tallow
