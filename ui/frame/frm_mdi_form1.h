// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <QMainWindow>

#include "app/jukebox_documents.h"
#include "ui/frame/active_jukebox_commands.h"
#include "ui/frame/background_picture.h"
#include "ui/frame/busy_frame.h"
#include "ui/frame/frame_commands.h"
#include "ui/frame/frame_details.h"
#include "ui/frame/frame_documents.h"
#include "ui/frame/frame_filing.h"
#include "ui/frame/frame_find.h"
#include "ui/frame/frame_findings.h"
#include "ui/frame/frame_help.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/frame_player.h"
#include "ui/frame/frame_player_bar.h"
#include "ui/frame/frame_properties.h"
#include "ui/frame/frame_queue.h"
#include "ui/frame/frame_sums.h"
#include "ui/frame/frame_title.h"
#include "ui/frame/jukebox_area.h"
#include "ui/frame/jukebox_places.h"
#include "ui/frame/jukebox_window_maker.h"
#include "ui/frame/linked_undo.h"
#include "ui/frame/new_song_search.h"
#include "ui/frame/panel_window.h"
#include "ui/frame/playing_lists.h"
#include "ui/frame/unsaved_keeper.h"
#include "ui/frame/waiting_files.h"
#include "ui/frame/window_arrangement.h"

class QMdiArea;
class QMenu;
class QToolBar;

namespace tallow {

class DriveSearches;
class CommandStates;
class FileMenu;
class PlaceStates;
class StyleBar;

/// The frame window: holds the window of each open jukebox and the player panel.
///
/// It makes menus, toolbar and jukebox windows, and passes their commands to the objects that it
/// owns, one for each kind of command.
class frmMDIForm1 : public QMainWindow, public JukeboxWindowMaker {
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

  frmMain& NewJukeboxWindow() override;
  void ShowJukeboxWindow(frmMain& window) override;

  /// The open jukeboxes, in the order they were opened.
  std::vector<Jukebox*> OpenJukeboxes() const { return jukeboxes_.Open(); }
  /// The window of an open jukebox; null when the jukebox is not open in this frame.
  frmMain* WindowOf(const Jukebox& jukebox) const { return jukeboxes_.WindowOf(jukebox); }

  /// See FrameMessages.
  void Notice(const std::vector<std::string>& lines) { messages_.Notice(lines); }
  /// Shows the result of a start or a search as a notice; a click on it opens the list of left-out
  /// files.
  void NoticeScan(const std::vector<std::string>& lines);

  /// The song details.
  FrameDetails& Details() noexcept { return details_; }

  /// The findings of a start or a search.
  FrameFindings& Findings() noexcept { return findings_; }

  /// Opens jukebox files, see WaitingFiles.
  void OpenFiles(const std::vector<std::string>& paths) { files_.Open(paths); }

  /// See FrameHelp.
  void ShowTipOfStart() { help_.ShowTipOfStart(); }
  void OnOpenHelp(std::function<bool(const std::string& path)> open) {
    help_.OnOpenHelp(std::move(open));
  }

  /// Saves the unsaved changes of the open jukeboxes, see UnsavedKeeper, and which are open.
  void KeepUnsavedChanges() {
    unsaved_.Keep();
    places_.Store();
  }

  /// The dialog with the properties of songs.
  FrameProperties& Properties() noexcept { return properties_; }

  /// The places of the jukebox windows.
  JukeboxPlaces& Places() noexcept { return places_; }

  /// The player panel; null when it is not open.
  frmMainWinamp* PlayerPanel() const { return panel_.Panel(); }
  /// What plays.
  FramePlayer& Player() noexcept { return player_; }

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  QMenu* createPopupMenu() override;

 private:
  void SetUpArea();
  void SetUpMenus();
  void RestoreOptions();
  void Run(FrameCommand command);
  void RunOfToolbar(FrameCommand command);
  /// Runs the commands on the player, the windows and the program, not on jukeboxes and songs.
  void RunOnProgram(FrameCommand command);
  /// Gives the keyboard focus to the active jukebox.
  void FocusSongs();
  void ShowPreferences();
  void ShowMusicPlaces();

  Tallow& tallow_;
  PlayerLink& link_;
  DriveSearches& searches_;
  QMdiArea* area_;
  StyleBar* style_bar_;
  FileMenu* file_menu_ = nullptr;
  QToolBar* toolbar_ = nullptr;

  FrameMessages messages_;
  JukeboxArea jukeboxes_;
  JukeboxPlaces places_;
  UnsavedKeeper unsaved_;
  BusyFrame busy_;
  PanelWindow panel_;
  FramePlayer player_;
  FramePlayerBar player_bar_;
  FrameTitle title_;
  PlayingLists lists_;
  FrameQueue queue_;
  FrameDocuments document_windows_;
  JukeboxDocuments documents_;
  WaitingFiles files_;
  BackgroundPicture picture_;
  FrameFindings findings_;
  FrameDetails details_;
  FrameSums sums_;
  NewSongSearch search_;
  FrameFiling filing_;
  TextFocus text_focus_;
  ActiveJukeboxCommands commands_;
  LinkedUndo linked_undo_;
  FrameProperties properties_;
  WindowArrangement arrangement_;
  FrameHelp help_;
  std::unique_ptr<FrameFind> find_field_;
  std::unique_ptr<CommandStates> states_;
  std::shared_ptr<PlaceStates> place_states_;  ///< of the dialog of the places with music
};

}  // namespace tallow
