// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>

#include "ui/jukebox/pop_up_menus.h"

class QKeyEvent;

namespace tallow {

class FolderTreeView;
class SongListView;
class clsMain;

/// The keys of the explorer control, in both panes. Inside the frame window, whose menus have the
/// same shortcuts, the menus get those first.
class ExplorerKeys : public QObject {
  Q_OBJECT

 public:
  /// \param library, tree, list must outlive this object
  ExplorerKeys(const clsMain& library, FolderTreeView& tree, SongListView& list);

  /// Switches the keys of TreeCommand::kFolderProperties, ListCommand::kProperties and the ranks,
  /// and MoveKey; see Switches::more_commands. On at first.
  void UseMoreCommands(bool on) noexcept { has_more_commands_ = on; }

 signals:
  /// The key of a command of a pop-up menu.
  void TreeCommandKey(tallow::TreeCommand command);
  void ListCommandKey(tallow::ListCommand command);
  void UndoKey();
  void RedoKey();
  /// The key that moves the selected songs by one line.
  void MoveKey(bool up);
  /// The key that opens the pop-up menu of a pane.
  void MenuKey(tallow::PopUpPane pane);
  /// The key that shows the folder above the folder on show.
  void ParentKey();
  /// Esc. The view receives it, too.
  void EscapeKey();
  /// The key that opens a song.
  /// \param row the row of the list, from 0
  void OpenKey(int row);
  /// The key that pauses what plays, and lets it go on. Only with the switch plays_on.
  void PauseKey();

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  // Each returns whether it handled the key; the view must not receive a handled key.
  bool KeyPressed(const QKeyEvent& key, PopUpPane pane);
  bool EditKeyPressed(const QKeyEvent& key, PopUpPane pane);
  bool MoreKeyPressed(const QKeyEvent& key, PopUpPane pane);
  bool ListKeyPressed(const QKeyEvent& key);
  /// Whether the user is typing the name of a folder: the next letter continues it.
  bool IsTypingInTree() const;

  const clsMain& library_;
  FolderTreeView& tree_;
  SongListView& list_;
  bool has_more_commands_ = true;
  QElapsedTimer since_typed_;  ///< a letter of a name, in the tree
};

}  // namespace tallow
