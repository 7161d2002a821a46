// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

#include <QWidget>

#include "jukebox/jukebox.h"

namespace tallow {

class PVExplorer;
class Tallow;

/// The halves of a jukebox window, as its pop-up menus are numbered.
enum PopUpPane : int {
  kTreePane = 1,
  kListPane = 2,
};

/// The commands of the list's pop-up menu, by their numbers.
enum ListCommand : int {
  kPlayAllSongsInFolder = 1,
  kPlaySelectedSongs = 2,
};

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

  /// Runs a command of a pop-up menu.
  ///
  /// \param item the command's number, see ListCommand
  /// \param pane whose menu, see PopUpPane
  /// \param node the folder concerned
  void ActOnPopUpClick(int item, int pane, Folder& node);

 signals:
  /// These songs, by their record numbers, are to be played in this order.
  void PlaySongs(std::vector<std::int32_t> songs);
  /// Something went wrong that the user should read.
  void Problem(const QString& text);

 private:
  void ShowFolder(Folder& folder);
  void SortList();
  void ShowListMenu(const QPoint& position);
  void PlaySong(int row);

  Tallow& tallow_;
  tallow::Jukebox jukebox_;
  PVExplorer* explorer_;
};

}  // namespace tallow
