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

class FrameMessages;
class Jukebox;
class JukeboxArea;
class Tallow;
struct FolderOfProperties;

/// Opens the dialog with the properties of songs, for the jukebox windows.
class FrameProperties : public QObject {
  Q_OBJECT

 public:
  /// \param frame, tallow, jukeboxes, messages have to outlive this object
  FrameProperties(QWidget& frame, Tallow& tallow, JukeboxArea& jukeboxes, FrameMessages& messages);

  using ShowFile =
      std::function<void(const std::string& path, const std::function<void()>& failed)>;
  /// Sets the function that is called in place of ShowInFileManager.
  void OnShowFile(ShowFile show) { show_file_ = std::move(show); }

 private:
  void Show(const std::vector<std::int32_t>& songs, const QString& folder);
  std::vector<FolderOfProperties> FoldersOf(std::int32_t song) const;
  /// Shows the file of a song in the file manager, or a message that says why not.
  void ShowFileOf(std::int32_t song);
  /// Shows a song in a folder of a jukebox, if both are still there.
  void ShowSong(const Jukebox* jukebox, std::uint32_t folder, std::int32_t song) const;

  QWidget& frame_;
  Tallow& tallow_;
  JukeboxArea& jukeboxes_;
  FrameMessages& messages_;
  ShowFile show_file_;
};

}  // namespace tallow
