// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include <QMimeData>
#include <QPointer>
#include <QString>

namespace tallow {

class Folder;
class PVExplorer;

/// What is being dragged out of a jukebox window: songs of a folder, or a folder. Other programs see the
/// files of the songs.
class ExplorerDrag : public QMimeData {
  Q_OBJECT

 public:
  /// \param from   the folder of the songs, or the one dragged
  /// \param songs  whether songs are dragged
  /// \param rows   their places in the list, from 0, rising
  ExplorerDrag(PVExplorer& source, Folder& from, bool songs, std::vector<int> rows);

  /// The control that it comes from; null once that is gone.
  PVExplorer* Source() const { return source_; }
  Folder& From() const { return *from_; }
  bool IsSongs() const { return songs_; }
  const std::vector<int>& Rows() const { return rows_; }
  /// In a few words: "3 songs", or the folder's text.
  QString Description() const;

 private:
  QPointer<PVExplorer> source_;
  Folder* from_;
  bool songs_;
  std::vector<int> rows_;
};

/// The files that are dragged in from another program, in the bytes of the disk; none when it drags
/// something else.
std::vector<std::string> DraggedFiles(const QMimeData& data);

/// A path as other programs are told of it, whatever its bytes are: "file:///music/caf%E9.mp3".
QByteArray UriOfPath(const std::string& path);

}  // namespace tallow
