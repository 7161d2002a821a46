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
  /// \param tallow, link have to outlive the window
  /// \param show shows message boxes; without it they are real ones over this window
  frmMDIForm1(Tallow& tallow, PlayerLink& link, ShowMessage show = {}, QWidget* parent = nullptr);
  ~frmMDIForm1() override;

  /// Saves the active jukebox, see JukeboxDocuments.
  void SaveDatForm();
  /// Brings the recent files of the File menu into step with the settings.
  void UpdateTheMenuControlArray();

  /// Makes a jukebox window, not shown yet. It belongs to the frame.
  frmMain& NewJukeboxWindow();
  /// Shows a jukebox window, filling the frame.
  void ShowJukeboxWindow(frmMain& window);

  /// The open jukeboxes, in the order they were opened.
  std::vector<Jukebox*> OpenJukeboxes() const;
  /// The window of an open jukebox; null when it is none of this frame.
  frmMain* WindowOf(const Jukebox& jukebox) const;

  /// Says something in the status bar: the first line, with all of them as its tool tip.
  void Notice(const std::vector<std::string>& lines) override;
  /// Notice of what a start or a search came to; a click on it opens the list of what was not taken.
  void NoticeScan(const std::vector<std::string>& lines) override;

  /// What is left to tell after a start or a search.
  FrameFindings& Findings() noexcept { return *findings_; }

  /// Opens jukebox files, or shows those that are open, and brings the window to the front. Files that come
  /// while something else has to end first wait for that.
  void OpenFiles(const std::vector<std::string>& paths);

  /// Shows the tip window, which may decide to stay away unless it was asked for.
  void ShowTip(bool asked_for);

  /// Keeps what is not saved of the open jukeboxes, in case the program does not come to its end. The frame
  /// does so itself every minute.
  void KeepUnsavedChanges();

  /// Sets what opens the help file for the help key and the help commands, in place of OpenHelpFile.
  void OnOpenHelp(std::function<bool(const std::string& path)> open) {
    open_help_ = std::move(open);
  }

  /// The player panel; null when it is not open.
  frmMainWinamp* PlayerPanel() const;
  /// Closes the player panel, and with it the player.
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
  /// The jukebox that commands are for: the active window, or the last jukebox that was it while another
  /// one is; null for none.
  frmMain* ActiveJukeboxWindow() const;
  bool IsActive(const frmMain& window) const;
  /// The active jukebox window; where there is none, says so.
  frmMain* JukeboxWindowForCommand();
  void SendNodeCommand(int pane, int item);
  void CommandPlayer(std::int32_t command);
  void SendEditCommand(TreeCommand of_tree, ListCommand of_list);
  void OpenWaitingFiles();
  void ComeToFront();
  void StepOtherHalf(frmMain& window, EditHistory::Half half, bool back);
  /// Does what fills the lists of all jukeboxes anew; whoever looks at one stays where they are.
  void KeepPlaces(const std::function<void()>& act);
  void BringIn(NewSongsPlace place);
  void FollowSongs(const std::vector<ReturnedSong>& songs);
  void ShowFind();
  void ShowAbout();
  /// Opens the help file, or where that cannot be, a page of the manual.
  void ShowHelp(const QString& page);
  void ShowHelpPage(const QString& page);
  void NewJukebox();
  bool IsOpenTwice(const Jukebox& jukebox) const;
  void PlaceInside(QMdiSubWindow& sub, int number) const;
  void RestoreJukeboxes();
  void LeaveMinimized();
  void ArrangeJukeboxes(const std::function<void(QMdiArea&)>& arrange);
  void ChangeBackgroundPicture();
  QMdiSubWindow* LastActiveJukebox() const;

  // Both kinds of commands need some of these.
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
  void KeepPanelInside(QSize before);

  Tallow& tallow_;
  ShowMessage show_;
  WinAMP_Control player_;
  PlayCommands play_commands_;
  std::function<bool(const std::string& path)> open_help_;
  QMdiArea* area_;
  QPointer<QMdiSubWindow> panel_;  ///< holds the player panel
  bool hands_over_ = false;        ///< the panel does, and must not go meanwhile
  bool panel_is_to_close_ = false;
  FileMenu* file_menu_ = nullptr;
  QToolBar* toolbar_ = nullptr;
  frmFind* find_ = nullptr;  ///< once it was shown
  FrameFindings* findings_;
  QPointer<frmHelp> help_;
  QPointer<QWidget> focus_before_;  ///< the frame was disabled
  std::unique_ptr<frmSearching> searching_;
  std::vector<Jukebox*> open_;
  std::vector<std::string> waiting_files_;  ///< to be opened
  std::unique_ptr<Documents> document_windows_;
  std::unique_ptr<JukeboxDocuments> documents_;
  int jukebox_windows_ = 0;  ///< made so far
  std::string
      picture_problem_;  ///< of the first of them, until it has been told with a start's notice
};

}  // namespace tallow
