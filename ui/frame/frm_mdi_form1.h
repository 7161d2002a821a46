// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <QMainWindow>
#include <QPointer>

#include "app/new_songs.h"
#include "app/play_commands.h"
#include "jukebox/edit_history.h"
#include "library/scan_report.h"
#include "player/winamp_control.h"
#include "ui/frame/frame_commands.h"
#include "ui/jukebox/pop_up_menus.h"

class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QToolBar;

namespace tallow {

class DriveSearches;
class FileMenu;
class FrameFindings;
class Jukebox;
class JukeboxDocuments;
class Tallow;
class frmFind;
class frmHelp;
class frmMain;
class frmMainWinamp;
class frmSearching;

/// The frame window: holds the window of each open jukebox and the player panel.
class frmMDIForm1 : public QMainWindow, private PlayWindows, private NewSongsWindows {
  Q_OBJECT

 public:
  /// \param tallow, link, searches have to outlive the window
  /// \param show shows message boxes; the default shows real message boxes over this window
  frmMDIForm1(Tallow& tallow, PlayerLink& link, DriveSearches& searches, ShowMessage show = {},
              QWidget* parent = nullptr);
  ~frmMDIForm1() override;

  /// Saves the active jukebox, see JukeboxDocuments.
  void SaveDatForm();
  /// Updates the recent files of the File menu from the settings.
  void UpdateTheMenuControlArray();

  /// Makes a jukebox window, which is not shown yet. The frame owns it.
  frmMain& NewJukeboxWindow();
  /// Shows a jukebox window maximized in the frame.
  void ShowJukeboxWindow(frmMain& window);

  /// The open jukeboxes, in the order they were opened.
  std::vector<Jukebox*> OpenJukeboxes() const;
  /// The window of an open jukebox; null when the jukebox is not open in this frame.
  frmMain* WindowOf(const Jukebox& jukebox) const;

  /// Shows a notice in the status bar: the first line as its text, all lines as its tool tip.
  void Notice(const std::vector<std::string>& lines) override;
  /// Shows the result of a start or a search as a notice; a click on it opens the list of left-out
  /// files.
  void NoticeScan(const std::vector<std::string>& lines) override;

  /// The findings of a start or a search.
  FrameFindings& Findings() noexcept { return *findings_; }

  /// Opens jukebox files, or activates the windows of those already open, and brings the frame to
  /// the front. While a dialog is open or the frame is disabled, the files wait.
  void OpenFiles(const std::vector<std::string>& paths);

  /// Shows the tip window. Unless the user asked for the tip, it stays closed when tips are turned
  /// off.
  void ShowTip(bool asked_for);

  /// Saves the unsaved changes of the open jukeboxes for recovery after a crash. The frame calls
  /// this itself every minute.
  void KeepUnsavedChanges();

  /// Sets the function that opens the help file for the help key and the help commands, in place of
  /// OpenHelpFile.
  void OnOpenHelp(std::function<bool(const std::string& path)> open) {
    open_help_ = std::move(open);
  }

  /// The player panel; null when it is not open.
  frmMainWinamp* PlayerPanel() const;
  /// Closes the player panel, which also closes the player.
  void ClosePlayerPanel();

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;
  QMenu* createPopupMenu() override;

 private:
  class Documents;

  void SetUpMenus();
  void Run(FrameCommand command);
  /// The jukebox window that commands act on: the active window or, while the player panel is
  /// active, the jukebox window that was active last; null for none.
  frmMain* ActiveJukeboxWindow() const;
  bool IsActive(const frmMain& window) const;
  /// Like ActiveJukeboxWindow(), but reports in the status bar when there is none.
  frmMain* JukeboxWindowForCommand();
  /// \param command a TreeCommand or a ListCommand
  template <typename Command>
  void SendNodeCommand(Command command);
  void CommandPlayer(std::int32_t command);
  void SendEditCommand(TreeCommand of_tree, ListCommand of_list);
  void OpenWaitingFiles();
  void ComeToFront();
  void UndoOtherHalf(frmMain& window, EditHistory::MoveLink link, bool back);
  /// Calls `act`, which refills the lists of all jukeboxes, and then restores each list's selection
  /// and scroll position.
  void KeepPlaces(const std::function<void()>& act);
  void BringIn(NewSongsPlace place);
  /// Whether a player is known, see PlayCommands.
  bool CheckPlayer();
  void PlaySongs(std::vector<std::int32_t> songs);
  /// Runs the player search and shows its progress in the splash window.
  void SearchForPlayer();
  /// Shows the problems that a step has added to the session, if any, as a notice.
  void ShowProblems();
  void FollowSongs(const std::vector<ReturnedSong>& songs);
  void ShowFind();
  void ShowAbout();
  /// Opens the help file or, if it cannot be opened, a page of the manual.
  void ShowHelp(const QString& page);
  void ShowHelpPage(const QString& page);
  void NewJukebox();
  bool IsOpenTwice(const Jukebox& jukebox) const;
  void FitInsideArea(QMdiSubWindow& sub, int number) const;
  void RestoreJukeboxes();
  void ActivateUnminimizedJukebox();
  void ArrangeJukeboxes(const std::function<void(QMdiArea&)>& arrange);
  void ChangeBackgroundPicture();
  QMdiSubWindow* LastActiveJukebox() const;

  // Overrides of PlayWindows and NewSongsWindows, which share some functions.
  MessageAnswer Show(const Message& message) override;
  SearchProgress& ShowSearching() override;
  void UnloadSearching() override;
  Jukebox* ActiveJukebox() override;
  std::span<Jukebox* const> AllJukeboxes() override;
  void ShowStatus(const std::string& text) override;
  void EnableFrame(bool enabled) override;
  std::unique_ptr<LongWork> BeginWork(std::string_view text) override;
  void PlayOnPanel() override;
  bool Start(const std::string& program) override;
  void SetFrameEnabled(bool enabled);
  void OpenPanel();
  void ActivateJukebox();
  void FocusJukebox();
  void ClampPanelPosition(QSize before);

  Tallow& tallow_;
  DriveSearches& searches_;
  ShowMessage show_;
  WinAMP_Control player_;
  PlayCommands play_commands_;
  std::function<bool(const std::string& path)> open_help_;
  QMdiArea* area_;
  QPointer<QMdiSubWindow> panel_;  ///< the subwindow of the player panel
  bool is_handing_over_ = false;   ///< the panel is handing songs over and must not close
  bool panel_is_to_close_ = false;
  FileMenu* file_menu_ = nullptr;
  QToolBar* toolbar_ = nullptr;
  frmFind* find_ = nullptr;  ///< created when first shown
  FrameFindings* findings_;
  QPointer<frmHelp> help_;
  QPointer<QWidget> saved_focus_;  ///< the focus widget before the frame was disabled
  std::unique_ptr<frmSearching> searching_;
  std::vector<Jukebox*> open_;
  std::vector<std::string> waiting_files_;  ///< jukebox files that are to be opened
  std::unique_ptr<Documents> document_windows_;
  std::unique_ptr<JukeboxDocuments> documents_;
  int jukebox_windows_ = 0;  ///< number of jukebox windows made so far
  std::string
      picture_problem_;  ///< of the first window: why it has no picture; cleared by NoticeScan
};

}  // namespace tallow
