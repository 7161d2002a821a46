// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of the frame window's menus and toolbar.
#include <utility>

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <QTimer>

#include "app/data_paths.h"
#include "app/jukebox_documents.h"
#include "app/search/drive_searches.h"
#include "app/tallow.h"
#include "app/tip_list.h"
#include "jukebox/returned_songs.h"
#include "player/player_messages.h"
#include "ui/dialogs/frm_find.h"
#include "ui/dialogs/frm_help.h"
#include "ui/dialogs/frm_searching.h"
#include "ui/dialogs/frm_splash.h"
#include "ui/dialogs/frm_tip.h"
#include "ui/frame/edit_in_text.h"
#include "ui/frame/frame_findings.h"
#include "ui/frame/frm_mdi_form1.h"
#include "ui/frame/window_arrangement.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/player/frm_main_winamp.h"
#include "ui/support/help_page.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/user_folders.h"

namespace tallow {
namespace {

/// How often the program retries to open waiting files, in ms.
constexpr int kLookAgain = 200;

}  // namespace

frmMain* frmMDIForm1::ActiveJukeboxWindow() const {
  const QMdiSubWindow* const active = area_->currentSubWindow();
  frmMain* const window = active != nullptr ? qobject_cast<frmMain*>(active->widget()) : nullptr;
  if (window != nullptr) return window;
  // While the player panel is active, commands still act on the jukebox that was used before it.
  const QMdiSubWindow* const last = LastActiveJukebox();
  return last != nullptr ? qobject_cast<frmMain*>(last->widget()) : nullptr;
}

frmMain* frmMDIForm1::JukeboxWindowForCommand() {
  frmMain* const window = ActiveJukeboxWindow();
  if (window == nullptr)
    ShowStatus("No jukebox is open. Open one, or make a new one, and try again.");
  return window;
}

void frmMDIForm1::CommandPlayer(std::int32_t command) {
  player_.FindAgainIfEnded();
  player_.SendWinampCommand(command);
}

template <typename Command>
void frmMDIForm1::SendNodeCommand(Command command) {
  frmMain* const window = JukeboxWindowForCommand();
  if (window == nullptr) return;
  if (Folder* const node = window->Jukebox().selectednode()) window->Run(command, node);
}

void frmMDIForm1::SendEditCommand(TreeCommand of_tree, ListCommand of_list) {
  frmMain* const window = JukeboxWindowForCommand();
  if (window == nullptr) return;
  const int pane = window->CurrentPaneWFocus();
  Folder* const folder = window->FolderOfPane(pane);
  if (pane == kTreePane) window->Run(of_tree, folder);
  if (pane == kListPane) window->Run(of_list, folder);
}

void frmMDIForm1::Run(FrameCommand command) {
  switch (command) {
    case FrameCommand::kNew:
      return NewJukebox();
    case FrameCommand::kOpen:
      return documents_->Open();
    case FrameCommand::kClose:
      if (QMdiSubWindow* const active = area_->currentSubWindow()) active->close();
      return;
    case FrameCommand::kSave:
      if (LastActiveJukebox() == nullptr) return (void)JukeboxWindowForCommand();
      return SaveDatForm();
    case FrameCommand::kSaveAs:
      if (LastActiveJukebox() == nullptr) return (void)JukeboxWindowForCommand();
      documents_->SaveAs();
      return;
    case FrameCommand::kExit:
      close();
      return;
    case FrameCommand::kCut:
      if (!EditInText(TextEdit::kCut))
        SendEditCommand(TreeCommand::kCutFolder, ListCommand::kCutSongs);
      return;
    case FrameCommand::kCopy:
      if (!EditInText(TextEdit::kCopy))
        SendEditCommand(TreeCommand::kCopyFolder, ListCommand::kCopySongs);
      return;
    case FrameCommand::kPaste:
      if (!EditInText(TextEdit::kPaste))
        SendEditCommand(TreeCommand::kPasteFolder, ListCommand::kPasteSongs);
      return;
    case FrameCommand::kDelete:
      if (!EditInText(TextEdit::kDelete))
        SendEditCommand(TreeCommand::kDeleteFolder, ListCommand::kDeleteSongs);
      return;
    case FrameCommand::kAddFolderToRoot:
      return SendNodeCommand(TreeCommand::kAddFolderToRoot);
    case FrameCommand::kAddFolderToSelectedFolder:
      return SendNodeCommand(TreeCommand::kAddFolderToSelected);
    case FrameCommand::kPlaySelectedSongs:
      return SendNodeCommand(ListCommand::kPlaySelectedSongs);
    case FrameCommand::kPlayAllSongsInFolder:
      return SendNodeCommand(ListCommand::kPlayAllSongsInFolder);
    case FrameCommand::kNextTrack:
      return CommandPlayer(kNextTrack);
    case FrameCommand::kPreviousTrack:
      return CommandPlayer(kPreviousTrack);
    case FrameCommand::kPause:
      return CommandPlayer(kPause);
    case FrameCommand::kPlay:
      return CommandPlayer(kPlay);
    case FrameCommand::kStop:
      return CommandPlayer(kStop);
    case FrameCommand::kStopAfterTrack:
      return CommandPlayer(kStopAfterTrack);
    case FrameCommand::kCloseWinAmp:
      return CommandPlayer(kClosePlayer);
    case FrameCommand::kNewSongsNormalLocations:
      return BringIn(NewSongsPlace::kKnownFolders);
    case FrameCommand::kNewSongsWholeComputerSearch:
      return BringIn(NewSongsPlace::kWholeComputer);
    case FrameCommand::kFind:
      return ShowFind();
    case FrameCommand::kChangeBackgroundPicture:
      return ChangeBackgroundPicture();
    case FrameCommand::kCascade:
      return ArrangeJukeboxes(Cascade);
    case FrameCommand::kTile:
      return ArrangeJukeboxes(TileHorizontally);
    case FrameCommand::kArrangeIcons:
      return ArrangeIcons(*area_);
    case FrameCommand::kHelp:
      return ShowHelp({});
    case FrameCommand::kTip:
      return ShowTip(true);
    case FrameCommand::kAbout:
      return ShowAbout();
  }
}

void frmMDIForm1::KeepPlaces(const std::function<void()>& act) {
  std::vector<std::pair<PVExplorer*, PVExplorer::Place>> places;
  for (const Jukebox* const jukebox : OpenJukeboxes()) {
    PVExplorer& explorer = WindowOf(*jukebox)->PVExplorer1();
    places.emplace_back(&explorer, explorer.CurrentPlace());
  }
  act();
  for (const auto& [explorer, before] : places) explorer->GoTo(before);
}

void frmMDIForm1::BringIn(NewSongsPlace place) {
  if (searching_) return;
  KeepPlaces([&] {
    BringInNewSongs(place, tallow_, *this, [this](SearchProgress& progress) {
      return searches_.SearchForSongs(progress);
    });
  });
  findings_->FindSizes();
}

bool frmMDIForm1::CheckPlayer() {
  return play_commands_.CheckPlayer([this] { SearchForPlayer(); });
}

void frmMDIForm1::PlaySongs(std::vector<std::int32_t> songs) {
  play_commands_.Play(std::move(songs), [this] { SearchForPlayer(); });
}

void frmMDIForm1::SearchForPlayer() {
  frmSplash splash([this] { tallow_.SearchCancelled = true; });
  splash.Load();
  splash.ShowForSearch();
  splash.ShowCancelButton(true);
  searches_.SearchForPlayer(splash);
  ShowProblems();
}

void frmMDIForm1::FollowSongs(const std::vector<ReturnedSong>& songs) {
  KeepPlaces([&] {
    const std::vector<Jukebox*> open = OpenJukeboxes();
    RenumberReturnedSongs(songs, open, tallow_.clipboard);
    for (Jukebox* const jukebox : open) jukebox->ListRefilled(tallow_.library);
  });
  findings_->Changed();
}

void frmMDIForm1::OpenFiles(const std::vector<std::string>& paths) {
  waiting_files_.insert(waiting_files_.end(), paths.begin(), paths.end());
  OpenWaitingFiles();
}

void frmMDIForm1::ComeToFront() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  raise();
  activateWindow();
}

void frmMDIForm1::OpenWaitingFiles() {
  // A dialog, a search or the start has to end first.
  if (!isVisible() || !isEnabled() || QApplication::activeModalWidget() != nullptr) {
    QTimer::singleShot(kLookAgain, this, &frmMDIForm1::OpenWaitingFiles);
    return;
  }
  ComeToFront();
  for (const std::string& path : std::exchange(waiting_files_, {})) {
    QMdiSubWindow* open = nullptr;
    for (const Jukebox* const jukebox : OpenJukeboxes())
      if (!jukebox->FilePath().empty() && IsSamePath(jukebox->FilePath(), path))
        open = qobject_cast<QMdiSubWindow*>(WindowOf(*jukebox)->parentWidget());
    if (open != nullptr)
      BringToFront(*area_, *open);
    else
      documents_->OpenUnlessOpen(path);
  }
}

void frmMDIForm1::ArrangeJukeboxes(const std::function<void(QMdiArea&)>& arrange) {
  // Minimized, because otherwise the panel would get a place among the jukeboxes.
  if (panel_) panel_->showMinimized();
  QMdiSubWindow* const active = area_->currentSubWindow();
  arrange(*area_);
  if (active != area_->currentSubWindow()) area_->setActiveSubWindow(active);
}

void frmMDIForm1::ShowFind() {
  if (JukeboxWindowForCommand() == nullptr) return;
  if (find_ == nullptr)
    find_ = new frmFind([this] { return ActiveJukeboxWindow(); }, tallow_.library, show_, this);
  find_->Begin();
  find_->exec();
  // The keyboard goes to the song that was found.
  frmMain* const window = ActiveJukeboxWindow();
  if (window == nullptr || !find_->HasFound()) return;
  area_->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(window->parentWidget()));
  window->PVExplorer1().TakeFocus(true);
}

void frmMDIForm1::ShowTip(bool asked_for) {
  frmTip tip(TipFilePath(tallow_.application_folder, std::string(FolderOfPath(ExecutablePath()))),
             isVisible() ? this : nullptr);
  tip.setProperty(kHelpPage, QStringLiteral("windows"));
  tip.ShowFlag(asked_for);
  if (!tip.Load()) return;
  // Centered on the screen, because the frame may not have its final position yet.
  tip.adjustSize();
  tip.move(QGuiApplication::primaryScreen()->availableGeometry().center() - tip.rect().center());
  tip.exec();
}

void frmMDIForm1::ShowAbout() {
  frmSplash about({}, this);
  about.setProperty(kHelpPage, QStringLiteral("menus"));
  about.ShowOKButton(true);
  about.Load();
  about.exec();
}

void frmMDIForm1::ShowHelp(const QString& page) {
  if (!open_help_(tallow_.help_file)) ShowHelpPage(page);
}

void frmMDIForm1::ShowHelpPage(const QString& page) {
  // A modal dialog blocks all other windows, so the help becomes a child of the dialog.
  QWidget* const modal = QApplication::activeModalWidget();
  const bool is_usable = help_ != nullptr && (modal == nullptr || modal == help_->parentWidget());
  if (!is_usable) {
    if (help_ != nullptr) help_->deleteLater();
    help_ = new frmHelp(modal);
    help_->setAttribute(Qt::WA_DeleteOnClose);
  }
  help_->ShowPage(page);
  help_->show();
  help_->raise();
  help_->activateWindow();
}

SearchProgress& frmMDIForm1::ShowSearching() {
  searching_ = std::make_unique<frmSearching>([this] { tallow_.SearchCancelled = true; });
  searching_->setProperty(kHelpPage, QStringLiteral("new-songs"));
  searching_->Load();
  searching_->show();
  searching_->Redraw();
  return *searching_;
}

void frmMDIForm1::UnloadSearching() { searching_.reset(); }

Jukebox* frmMDIForm1::ActiveJukebox() {
  frmMain* const window = ActiveJukeboxWindow();
  return window != nullptr ? &window->Jukebox() : nullptr;
}

std::span<Jukebox* const> frmMDIForm1::AllJukeboxes() {
  open_ = OpenJukeboxes();
  return open_;
}

}  // namespace tallow
