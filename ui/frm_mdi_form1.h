// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include <QMainWindow>

class QMdiArea;

namespace tallow {

class Jukebox;
class Tallow;
class frmMain;

/// The frame window: holds the window of each open jukebox.
class frmMDIForm1 : public QMainWindow {
  Q_OBJECT

 public:
  /// \param tallow has to outlive the window
  explicit frmMDIForm1(Tallow& tallow, QWidget* parent = nullptr);

  /// Makes a jukebox window, not shown yet. It belongs to the frame.
  frmMain& NewJukeboxWindow();
  /// Shows a jukebox window, filling the frame.
  void ShowJukeboxWindow(frmMain& window);

  /// The open jukeboxes, in the order they were opened.
  std::vector<Jukebox*> OpenJukeboxes() const;
  /// The window of an open jukebox; null when it is none of this frame.
  frmMain* WindowOf(const Jukebox& jukebox) const;

  /// Says something in the status bar: the first line, with all of them as its tool tip.
  void Notice(const std::vector<std::string>& lines);

 private:
  Tallow& tallow_;
  QMdiArea* area_;
};

}  // namespace tallow
