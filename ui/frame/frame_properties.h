// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <QObject>
#include <QString>

class QWidget;

namespace tallow {

class Jukebox;
class JukeboxArea;
class Tallow;
struct FolderOfProperties;

/// Opens the dialog with the properties of songs, for the jukebox windows.
class FrameProperties : public QObject {
  Q_OBJECT

 public:
  /// \param frame, tallow, jukeboxes have to outlive this object
  FrameProperties(QWidget& frame, Tallow& tallow, JukeboxArea& jukeboxes);

  /// Sets the function that shows a file, given by its path, in place of ShowInFileManager.
  void OnShowFile(std::function<void(const std::string& path)> show) {
    show_file_ = std::move(show);
  }

 private:
  void Show(const std::vector<std::int32_t>& songs, const QString& folder);
  std::vector<FolderOfProperties> FoldersOf(std::int32_t song) const;
  /// Shows a song in a folder of a jukebox, if both are still there.
  void ShowSong(const Jukebox* jukebox, std::uint32_t folder, std::int32_t song) const;

  QWidget& frame_;
  Tallow& tallow_;
  JukeboxArea& jukeboxes_;
  std::function<void(const std::string& path)> show_file_;
};

}  // namespace tallow
