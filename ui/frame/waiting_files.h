// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include <QObject>

namespace tallow {

class JukeboxArea;
class JukeboxDocuments;

/// Opens the jukebox files on the command lines of this start and of later ones. While a dialog is
/// open or the frame window is disabled, the files wait.
class WaitingFiles : public QObject {
  Q_OBJECT

 public:
  /// The parameters have to outlive this object.
  WaitingFiles(JukeboxArea& jukeboxes, JukeboxDocuments& documents)
      : jukeboxes_(jukeboxes), documents_(documents) {}

  /// Opens files, or activates the windows of those already open, and brings the frame to the
  /// front.
  void Open(const std::vector<std::string>& paths);
  /// Whether there are files that wait.
  bool AreWaiting() const noexcept { return !waiting_.empty(); }

 private:
  void OpenWaiting();

  JukeboxArea& jukeboxes_;
  JukeboxDocuments& documents_;
  std::vector<std::string> waiting_;
};

}  // namespace tallow
