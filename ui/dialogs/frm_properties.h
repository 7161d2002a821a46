// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include <QDialog>
#include <QString>

#include "app/columns/song_properties.h"

class QTreeWidget;

namespace tallow {

/// A folder of an open jukebox that holds the song of a properties dialog.
struct FolderOfProperties {
  QString jukebox;             ///< its caption
  QString folder;              ///< its texts from the top level on
  std::function<void()> show;  ///< shows the song in the folder
};

/// What a properties dialog shows.
struct PropertiesContext {
  QString title;  ///< of the window
  std::vector<SongProperty> properties;
  std::vector<FolderOfProperties> folders = {};  ///< of one song; empty for several
  bool names_jukeboxes = false;                  ///< whether the folders come with their jukebox
  /// Shows the file of the song in the file manager; empty for several songs.
  std::function<void()> show_file = {};
};

/// The properties of one or several songs, and of one song the folders of the open jukeboxes that
/// hold it.
class frmProperties : public QDialog {
  Q_OBJECT

 public:
  explicit frmProperties(PropertiesContext context, QWidget* parent = nullptr);

 private:
  QTreeWidget* MakeList();
  QTreeWidget* MakeFolders();
  /// Sets the size of the window for all properties, as far as the screen has room.
  void FitTheScreen();
  /// Closes the dialog and shows the song in a folder.
  void Open(int folder);
  void CopyValue() const;

  PropertiesContext context_;
  QTreeWidget* list_;
};

}  // namespace tallow
