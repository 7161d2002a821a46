// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include <QObject>
#include <QStringList>

#include "app/long_work.h"
#include "app/playing/player_model.h"
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

  /// Plays a song because the user opened it: with the switch plays_on the list from there on, else
  /// only the song.
  /// \param row index of the song in the folder of the list, from 0
  void OpenSong(int row);

  /// Raises the rank of each selected song, up to the best one, or lowers it down to none.
  /// \param steps negative to lower
  void RaiseRanks(int steps);

 signals:
  // See frmMain.
  void PlaySongs(std::vector<std::int32_t> songs, tallow::SongsOrigin origin);
  void PlayFromHere(std::vector<std::int32_t> songs, std::size_t chosen,
                    tallow::SongsOrigin origin);
  void PlayNext(std::vector<std::int32_t> songs, tallow::SongsOrigin origin);
  void AddToQueue(std::vector<std::int32_t> songs, tallow::SongsOrigin origin);
  void Problem(const QStringList& lines);
  void ChangeBackgroundPicture();
  void RanksChanged(const std::vector<std::int32_t>& songs);
  void ShowProperties(const std::vector<std::int32_t>& songs, const QString& folder);

 private:
  void ActOnList(ListCommand command, Folder& node);
  void Play(const Folder& folder, const std::vector<std::int32_t>& songs, const QString& if_none);
  void PlayFolder(TreeCommand command, const Folder& folder);
  void PlayFrom(const Folder& folder, int row);
  SongsOrigin OriginOf(const Folder& folder) const;
  bool RefusesForHits(ListCommand command);
  void ShowInFolder(int row);
  void ShowPropertiesOf(const Folder& node);
  void RankSelectedSongs(int item);
  void ShowRanks(const std::vector<int>& rows, bool saved);
  void ReportRanks(const std::vector<std::int32_t>& songs, bool saved);
  void SaveRanks(const std::vector<std::int32_t>& songs);
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
