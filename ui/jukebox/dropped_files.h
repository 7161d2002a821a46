// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QObject>
#include <QStringList>

#include "app/add_files.h"
#include "app/long_work.h"

namespace tallow {

class Folder;
class Jukebox;
class PVExplorer;
class Tallow;

/// Adds files that were dropped on a folder from another program: to the library, filed by their
/// tags to the automatic folders, and to the folder itself. A dropped folder brings in the songs at
/// any depth.
class DroppedFiles : public QObject {
  Q_OBJECT

 public:
  /// \param tallow, jukebox, explorer must outlive this object
  DroppedFiles(Tallow& tallow, Jukebox& jukebox, PVExplorer& explorer);

  /// Sets the callback that shows progress while many files are added.
  void OnLongWork(BeginLongWork begin) { begin_work_ = std::move(begin); }

  /// \param paths in the encoding of the file system
  void Add(const std::vector<std::string>& paths, Folder& to);

 signals:
  // See frmMain.
  void Problem(const QStringList& lines);
  void SongsReturned(const std::vector<tallow::ReturnedSong>& songs);

 private:
  struct Outcome {
    AddedFiles added;
    bool is_filed = true;  ///< whether filing was not cancelled
    std::vector<std::string> problems;
  };
  std::unique_ptr<LongWork> Begin(std::string_view text) const;
  void AddToLibrary(const std::vector<std::string>& paths, Outcome& outcome);
  void FileNewSongs(Outcome& outcome);
  void Report(const Outcome& outcome);

  Tallow& tallow_;
  Jukebox& jukebox_;
  PVExplorer& explorer_;
  BeginLongWork begin_work_;
};

}  // namespace tallow
