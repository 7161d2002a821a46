// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QWidget>

#include "app/long_work.h"
#include "app/playing/player_model.h"
#include "jukebox/jukebox.h"
#include "library/scan_report.h"
#include "ui/jukebox/pop_up_menus.h"
#include "util/message.h"

class QMenu;
class QTimer;

namespace tallow {

class DroppedFiles;
class EmptyFolderHint;
class EmptyLibraryNotice;
class JukeboxColumns;
class JukeboxCommands;
class ListSums;
class PVExplorer;
class Tallow;

/// The window of one jukebox, a child of the frame window. Its title is the caption, with a star
/// while the jukebox has changes that are not in its file.
class frmMain : public QWidget {
  Q_OBJECT

 public:
  /// \param tallow must outlive the window
  /// \param show   shows messages; if empty, message boxes over this window are used
  explicit frmMain(Tallow& tallow, ShowMessage show = {}, QWidget* parent = nullptr);
  ~frmMain() override;

  tallow::Jukebox& Jukebox() noexcept { return jukebox_; }
  PVExplorer& PVExplorer1() noexcept { return *explorer_; }

  /// The pane that last had the keyboard focus, see PopUpPane; 0 if neither had it yet.
  int CurrentPaneWFocus() const noexcept { return pane_with_focus_; }

  /// The preferred size, used when the window is no longer maximized.
  QSize sizeHint() const override;

  /// Why the window does not show the picture that the settings specify; empty if there is no
  /// problem.
  const std::string& PictureProblem() const noexcept { return picture_problem_; }

  /// Sets the keyboard focus to the pane that last had it, or to the tree.
  void GrabFocus();

  /// Expands and collapses the tree's folders as marked in the jukebox and, if no folder is on show
  /// yet, shows the first folder.
  void ShowJukebox();

  /// Shows in an empty list that the library has no songs or else, with the switch
  /// `columns_of_details`, what the folder is for; or stops showing it. Call when the library or
  /// the searched places have changed; a refilled list calls it itself.
  void ShowEmptyLibrary();

  /// Returns the folder that a pane's keys, and the frame's commands for that pane, act on; null if
  /// there is none, and null for the root in the tree.
  /// \param pane see PopUpPane
  Folder* FolderOfPane(int pane) const;

  /// Runs a command of a pop-up menu, whether the menu, a key or the frame asks for it.
  /// \param node the folder to act on; null for none
  void Run(TreeCommand command, Folder* node);
  void Run(ListCommand command, Folder* node);

  /// Plays a song of the list, as a double click on it does.
  /// \param row index of the song in the folder of the list, from 0
  void OpenSong(int row);

  /// Runs a command of a pop-up menu, given by its number; Run() gets the command itself.
  ///
  /// \param item the value of a TreeCommand or ListCommand; other numbers do nothing
  /// \param pane the pane of the menu, see PopUpPane
  /// \param node the folder to act on; null for none
  void ActOnPopUpClick(int item, int pane, Folder* node);

  /// Asks whether to save unsaved changes, and saves them if the user wants that. Once this has
  /// returned true, the window closes without asking again.
  /// \returns whether the window may close
  bool AskBeforeClosing();
  /// Returns whether closing asks, because changes would be lost.
  bool WillAsk() const;
  /// Cancels the closing of the window: the next attempt to close it asks again.
  void KeepOpen() noexcept { may_close_ = false; }

  /// Sets the player that the window shows, and that its menus ask what it can do.
  /// \param player null for none; must outlive the window, or the next call
  void SetPlayer(PlayerModel* player);
  /// Call after preferences have changed: shows the columns and the commands that they name.
  void FollowPreferences();
  /// Call regularly: shows details of songs that were read since the last call.
  void ShowNewDetails();
  /// The sums of the list for the status bar, see ListSums.
  QString SumsText() const;
  /// Marks what plays, and what could not be played, in the list.
  void ShowMarks(bool on);

  /// Sets the callback that saves the jukebox when the user chooses to save on closing.
  /// \param save returns whether the jukebox was saved
  void OnSaveBeforeClosing(std::function<bool()> save) { save_ = std::move(save); }
  /// Sets the callback that shows progress while many files are added or filed.
  void OnLongWork(const BeginLongWork& begin);

 signals:
  // The user wants to play songs, given as record numbers, in this order, of the folder `origin`.
  void PlaySongs(std::vector<std::int32_t> songs, tallow::SongsOrigin origin = {});
  /// \param songs  those that the list shows
  /// \param chosen index of the song to begin with, from 0
  void PlayFromHere(std::vector<std::int32_t> songs, std::size_t chosen,
                    tallow::SongsOrigin origin);
  void PlayNext(std::vector<std::int32_t> songs, tallow::SongsOrigin origin);
  void AddToQueue(std::vector<std::int32_t> songs, tallow::SongsOrigin origin);
  /// The user wants to pause what plays, or to let it go on.
  void PlayOrPause();
  /// SumsText() has changed.
  void SumsChanged();
  /// An operation failed or succeeded only in part; the lines explain it to the user.
  void Problem(const QStringList& lines);
  /// Songs that were found again have new record numbers; this window's jukebox and the clipboard
  /// are already updated.
  void SongsReturned(const std::vector<tallow::ReturnedSong>& songs);
  /// A command of a pop-up menu is about to run, given by its number.
  void PopUpClick(int item, int pane);
  /// Ranks of songs have changed, in the library and in the list of this window.
  /// \param songs record numbers
  void RanksChanged(const std::vector<std::int32_t>& songs);
  /// See PVExplorer::LinkedStepDone.
  void LinkedStepDone(tallow::EditHistory::MoveLink link, bool back);
  /// The user wants to open the dialog for the background picture.
  void ChangeBackgroundPicture();
  /// The user wants to see the properties of songs.
  /// \param songs  record numbers, at least one
  /// \param folder the text of the folder whose songs they are; empty for songs chosen in the list
  void ShowProperties(const std::vector<std::int32_t>& songs, const QString& folder);
  /// The user wants to choose where songs are searched, because there are none.
  void WhereMyMusicIs();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ConnectExplorer();
  void MarkUnsaved();
  /// Follows the switch `more_commands`.
  void UseMoreCommands();
  void ShowPicture();
  void ShowFolder(Folder& folder);
  bool MayClose();
  bool HasDetails() const;
  bool CanPaste() const;
  QSize WholeSize() const;

  Tallow& tallow_;
  ShowMessage show_;
  tallow::Jukebox jukebox_;
  PVExplorer* explorer_;
  EmptyLibraryNotice* empty_library_;  ///< a child of the list
  EmptyFolderHint* empty_folder_;      ///< a child of the list
  std::unique_ptr<JukeboxCommands> commands_;
  std::unique_ptr<JukeboxColumns> columns_;
  std::unique_ptr<ListSums> sums_;
  std::unique_ptr<DroppedFiles> dropped_files_;
  PlayerModel* player_ = nullptr;  ///< null for none
  bool shows_marks_ = false;
  QTimer* unsaved_timer_;  ///< runs after a change until the title shows whether it is unsaved
  QMenu* list_menu_;
  QMenu* tree_menu_;
  /// Key of the folder that the tree menu was opened on; 0 for none.
  std::uint32_t menu_folder_ = 0;
  bool may_close_ = false;  ///< whether the user was already asked
  int pane_with_focus_ = 0;
  std::function<bool()> save_;
  std::string picture_problem_;
};

}  // namespace tallow
