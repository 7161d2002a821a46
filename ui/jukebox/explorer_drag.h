// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include <QMimeData>
#include <QPointer>
#include <QString>

namespace tallow {

class ExplorerEdits;
class Folder;

/// The data of a drag out of a jukebox window: songs of a folder, or a folder. Other programs
/// receive the files of the songs.
class ExplorerDrag : public QMimeData {
  Q_OBJECT

 public:
  /// \param source the edits of the control that the drag starts from
  /// \param from   the folder that holds the songs, or the dragged folder
  /// \param songs  whether songs are dragged
  /// \param rows   indexes of the songs in the folder, from 0, ascending
  ExplorerDrag(ExplorerEdits& source, Folder& from, bool songs, std::vector<int> rows);

  /// The edits of the control that the drag started from; null once the control is destroyed.
  ExplorerEdits* Source() const { return source_; }
  Folder& From() const { return *from_; }
  bool IsSongs() const { return songs_; }
  const std::vector<int>& Rows() const { return rows_; }
  /// A short description: "3 songs", or the folder's text.
  QString Description() const;

 private:
  QPointer<ExplorerEdits> source_;
  Folder* from_;
  bool songs_;
  std::vector<int> rows_;
};

/// Returns the paths of files dragged in from another program, in the encoding of the file system;
/// empty when other data is dragged.
std::vector<std::string> DraggedFiles(const QMimeData& data);

/// Returns the URI under which other programs see a path; works for any bytes:
/// "file:///music/caf%E9.mp3".
QByteArray UriOfPath(const std::string& path);

}  // namespace tallow
