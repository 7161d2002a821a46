// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include <QObject>
#include <QStringList>

#include "app/long_work.h"
#include "ui/jukebox/pop_up_menus.h"
#include "util/message.h"

namespace tallow {

class Folder;
class Jukebox;
class PVExplorer;
class Tallow;
struct BeforeCutEvent;

/// The commands of a jukebox window's pop-up menus: decides what a command acts on, asks before a
/// folder is deleted, and protects the special folders; the explorer control makes the edits.
class JukeboxCommands : public QObject {
  Q_OBJECT

 public:
  /// \param tallow, jukebox, explorer must outlive this object
  /// \param show shows messages
  JukeboxCommands(Tallow& tallow, Jukebox& jukebox, PVExplorer& explorer, ShowMessage show);

  /// Sets the callback that shows progress while many songs are filed.
  void OnLongWork(BeginLongWork begin) { begin_work_ = std::move(begin); }

  /// \param node the folder to act on; null for none
  void Run(TreeCommand command, Folder* node);
  void Run(ListCommand command, Folder* node);

 signals:
  // See frmMain.
  void PlaySongs(std::vector<std::int32_t> songs);
  void Problem(const QStringList& lines);
  void ChangeBackgroundPicture();

 private:
  void ActOnList(ListCommand command, Folder& node);
  void Play(const std::vector<std::int32_t>& songs, const QString& if_none);
  void RankSelectedSongs(int item);
  void DeleteFolder(Folder& node);
  void AddAlbum();
  void BeforeCut(BeforeCutEvent& event);

  Tallow& tallow_;
  Jukebox& jukebox_;
  PVExplorer& explorer_;
  ShowMessage show_;
  BeginLongWork begin_work_;
};

}  // namespace tallow
