// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

class frmMain;

/// Makes jukebox windows that are connected to the frame window, and shows them.
class JukeboxWindowMaker {
 public:
  virtual ~JukeboxWindowMaker() = default;

  /// Makes a jukebox window, which is not shown yet. The frame owns it.
  virtual frmMain& NewJukeboxWindow() = 0;
  /// Shows a jukebox window maximized in the frame.
  virtual void ShowJukeboxWindow(frmMain& window) = 0;
};

}  // namespace tallow
