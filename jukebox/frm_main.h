// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include "jukebox/jukebox.h"

namespace tallow {

class PVExplorer;
class Tallow;

/// The window of one jukebox, a child of the frame window.
class frmMain : public QWidget {
  Q_OBJECT

 public:
  /// \param tallow has to outlive the window
  explicit frmMain(Tallow& tallow, QWidget* parent = nullptr);
  ~frmMain() override;

  tallow::Jukebox& Jukebox() noexcept { return jukebox_; }
  PVExplorer& PVExplorer1() noexcept { return *explorer_; }

  /// Brings the tree into the state its jukebox asks for and, when no folder is on show yet, shows
  /// the first one.
  void ShowJukebox();

 signals:
  /// Something went wrong that the user should read.
  void Problem(const QString& text);

 private:
  void ShowFolder(Folder& folder);
  void SortList();

  Tallow& tallow_;
  tallow::Jukebox jukebox_;
  PVExplorer* explorer_;
};

}  // namespace tallow
