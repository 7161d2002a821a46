// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frm_mdi_form1.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QCloseEvent>
#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QStringList>
#include <QToolBar>
#include <QVBoxLayout>

#include "app/playing/command_effect.h"
#include "app/search/drive_searches.h"
#include "app/search/place_states.h"
#include "app/style_switches.h"
#include "app/tallow.h"
#include "library/drive_timeouts.h"
#include "player/player_messages.h"
#include "ui/dialogs/frm_music_places.h"
#include "ui/dialogs/frm_preferences.h"
#include "ui/frame/command_states.h"
#include "ui/frame/file_menu.h"
#include "ui/frame/frame_menus.h"
#include "ui/frame/frame_player_page.h"
#include "ui/frame/frame_toolbar.h"
#include "ui/frame/new_jukebox.h"
#include "ui/frame/status_bar.h"
#include "ui/frame/style_bar.h"
#include "ui/jukebox/frm_main.h"
#include "ui/support/help_page.h"

namespace tallow {
namespace {

/// Gives a window its status bar.
StatusBar& MakeStatusBar(QMainWindow& window) {
  auto* const bar = new StatusBar(&window);
  window.setStatusBar(bar);
  return *bar;
}

constexpr QSize kFirstSize(1000, 680);
constexpr QSize kMinSize(480, 320);

/// How long a text is shown that concerns only what the user has just done, in ms.
constexpr int kShortly = 10 * 1000;

/// The user's options that hold the geometry of the window and the state of its toolbar.
const QString kGeometryOption = QStringLiteral("Window/Geometry");
const QString kStateOption = QStringLiteral("Window/State");

}  // namespace

frmMDIForm1::frmMDIForm1(Tallow& tallow, PlayerLink& link, DriveSearches& searches,
                         ShowMessage show, QWidget* parent)
    : QMainWindow(parent),
      tallow_(tallow),
      link_(link),
      searches_(searches),
      area_(new QMdiArea(this)),
      style_bar_(new StyleBar(this)),
      messages_(*this, MakeStatusBar(*this), std::move(show)),
      jukeboxes_(*area_),
      places_(tallow, jukeboxes_, messages_),
      unsaved_(*this, tallow, jukeboxes_, messages_),
      busy_(*this, tallow, jukeboxes_, unsaved_),
      panel_(jukeboxes_),
      player_(tallow, link, searches, jukeboxes_, panel_, messages_, busy_),
      player_bar_(*this, tallow, player_, [this] { FocusSongs(); }),
      title_(*this, player_.Model()),
      lists_(tallow, jukeboxes_, messages_, player_.Model(), CommandsOf(player_)),
      queue_(*this, tallow, jukeboxes_, messages_, player_.Model()),
      document_windows_(*this, jukeboxes_, panel_, messages_, busy_),
      documents_(tallow, document_windows_),
      files_(jukeboxes_, documents_),
      picture_(*this, tallow, jukeboxes_, messages_),
      findings_(*statusBar(), tallow, messages_.Shower(), [this] { return OpenJukeboxes(); }),
      details_(
          *this, *style_bar_, *statusBar(), tallow, messages_, [this] { busy_.FocusJukebox(); },
          [this] { filing_.FinishStyle(); },
          [this] { jukeboxes_.ForEachWindow([](frmMain& window) { window.ShowNewDetails(); }); }),
      sums_(*statusBar(), jukeboxes_),
      search_(tallow, searches, jukeboxes_, messages_, busy_, findings_,
              [this](const std::vector<std::string>& lines) { NoticeScan(lines); }),
      filing_(tallow, jukeboxes_, messages_, busy_, search_,
              [this](const std::vector<std::string>& lines) { NoticeScan(lines); }),
      commands_(*this, tallow, jukeboxes_, messages_, text_focus_),
      linked_undo_(jukeboxes_, messages_),
      properties_(*this, tallow, jukeboxes_, messages_),
      arrangement_(*area_, panel_),
      help_(*this, tallow),
      place_states_(std::make_shared<PlaceStates>(kMaxWait)) {
  setObjectName(QStringLiteral("frmMDIForm1"));
  setProperty(kHelpPage, QStringLiteral("windows"));
  SetUpArea();
  // Visible from the start, so that the first message does not change the layout.
  statusBar()->show();
  SetUpMenus();
  RestoreOptions();
  tallow_.preferences.OnChange([this](const Switches& before) {
    filing_.Follow(before);
    player_.FollowPreferences();
    player_bar_.Follow();
    lists_.FollowPreferences();
    queue_.FollowPreferences();
    find_field_->FollowPreferences();
    jukeboxes_.ForEachWindow([](frmMain& window) { window.FollowPreferences(); });
  });
  queue_.OnSongsDropped([this](std::vector<std::int32_t> songs, SongsOrigin origin) {
    lists_.AddToQueue(std::move(songs), origin);
  });
  player_.OnPlaySelection([this] { commands_.Run(ListCommand::kPlaySelectedSongs); });
}

frmMDIForm1::~frmMDIForm1() {
  tallow_.preferences.OnChange({});
  tallow_.settings.SetMenuUpdate({});
}

void frmMDIForm1::SetUpArea() {
  area_->setObjectName(QStringLiteral("MDIArea"));
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  // Otherwise the panel would be maximized when shown with a maximized jukebox.
  area_->setOption(QMdiArea::DontMaximizeSubWindowOnActivation);
  auto* const center = new QWidget(this);
  auto* const layout = new QVBoxLayout(center);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(style_bar_, 0);
  layout->addWidget(area_, 1);
  style_bar_->hide();
  setCentralWidget(center);
  connect(&findings_, &FrameFindings::DriveForgotten, this, [this] {
    Notice(tallow_.TakeProblems());
    details_.Changed();
  });
  setMinimumSize(kMinSize);
  // With a large scale factor a screen is small in logical pixels.
  resize(kFirstSize.boundedTo(QGuiApplication::primaryScreen()->availableSize()));
}

void frmMDIForm1::SetUpMenus() {
  file_menu_ = AddFrameMenus(*menuBar(), [this](FrameCommand command) {
    Run(command);
    // A menu may have left the focus on no widget.
    busy_.FocusJukebox();
  });
  connect(file_menu_, &FileMenu::OpenRecent, this,
          [this](int element) { documents_.OpenRecent(element); });
  player_bar_.SetItem(*menuBar()->findChild<QAction*>(QStringLiteral("mnuPlayerBar")));
  queue_.SetItem(*menuBar()->findChild<QAction*>(QStringLiteral("mnuQueue")));
  KeepWindowList(*menuBar()->findChild<QMenu*>(QStringLiteral("mnuWindowList")), *area_);
  toolbar_ = AddFrameToolbar(*this, [this](FrameCommand command, bool checks) {
    if (!checks || player_.CheckPlayer()) RunOfToolbar(command);
    busy_.FocusJukebox();
  });
  find_field_ = std::make_unique<FrameFind>(*toolbar_, tallow_, jukeboxes_, messages_);
  find_field_->SetItem(*menuBar()->findChild<QAction*>(QStringLiteral("mnuFindField")));
  states_ = std::make_unique<CommandStates>(jukeboxes_, tallow_.clipboard, text_focus_, *menuBar(),
                                            *toolbar_);
  tallow_.settings.SetMenuUpdate([this] { UpdateTheMenuControlArray(); });
  UpdateTheMenuControlArray();
}

void frmMDIForm1::RunOfToolbar(FrameCommand command) {
  // Without a player, the button Play starts one.
  const bool starts = command == FrameCommand::kPlay && !player_.FindsPlayer();
  Run(starts ? FrameCommand::kPlaySelectedSongs : command);
}

void frmMDIForm1::RestoreOptions() {
  const QSettings options;
  restoreGeometry(options.value(kGeometryOption).toByteArray());
  restoreState(options.value(kStateOption).toByteArray());
  toolbar_->show();
  // The state has whether bar and queue were shown, too, perhaps in another style.
  player_bar_.Follow();
  queue_.FollowPreferences();
}

QMenu* frmMDIForm1::createPopupMenu() {
  // The default menu could only hide the toolbar, and nothing could show it again.
  return nullptr;
}

void frmMDIForm1::SaveDatForm() {
  if (documents_.SaveDatForm()) places_.StoreLater();
}

void frmMDIForm1::UpdateTheMenuControlArray() {
  file_menu_->UpdateTheMenuControlArray(tallow_.settings);
}

frmMain& frmMDIForm1::NewJukeboxWindow() {
  auto* const window = new frmMain(tallow_, messages_.Shower());
  window->setProperty(kHelpPage, QStringLiteral("jukebox"));
  jukeboxes_.Add(*window);
  places_.Follow(*window);
  window->OnLongWork([this](std::string_view text) { return busy_.BeginWork(text); });
  window->OnSaveBeforeClosing([this, window] {
    // The window does not become active if it, or the frame, is minimized.
    jukeboxes_.Activate(*window);
    return documents_.Save(window->Jukebox());
  });
  connect(window, &frmMain::Problem, this,
          [this](const QStringList& lines) { messages_.NoticeTexts(lines); });
  connect(window, &frmMain::LinkedStepDone, this,
          [this, window](EditHistory::MoveLink link, bool back) {
            linked_undo_.StepOther(*window, link, back);
          });
  connect(window, &frmMain::SongsReturned, this, [this](const std::vector<ReturnedSong>& songs) {
    search_.FollowSongs(songs);
    details_.Changed();
  });
  // A rank belongs to the song, which other jukeboxes may show as well.
  connect(window, &frmMain::RanksChanged, this,
          [this, window](const std::vector<std::int32_t>& songs) {
            jukeboxes_.ForEachWindow([&](frmMain& each) {
              if (&each != window) each.Jukebox().RanksChanged(tallow_.library, songs);
            });
          });
  connect(window, &frmMain::WhereMyMusicIs, this, [this] { ShowMusicPlaces(); });
  connect(window, &frmMain::ChangeBackgroundPicture, this, [this] { picture_.Change(); });
  lists_.Follow(*window);
  sums_.Follow(*window);
  states_->Follow(*window);
  return *window;
}

void frmMDIForm1::ShowJukeboxWindow(frmMain& window) {
  window.ShowJukebox();
  picture_.ReportProblem(window);
  jukeboxes_.Show(window);
  places_.WindowShown();
}

void frmMDIForm1::NoticeScan(const std::vector<std::string>& lines) {
  std::vector<std::string> all = lines;
  // The first jukebox window is made before the start reports its result.
  if (const std::string problem = picture_.TakeProblem(); !problem.empty())
    all.insert(all.begin(), problem);
  Notice(all);
  findings_.Changed();
  details_.Changed();
}

void frmMDIForm1::Run(FrameCommand command) {
  if (find_field_ != nullptr) find_field_->FindNow();
  if (commands_.Run(command)) return;
  switch (command) {
    case FrameCommand::kNew:
      return MakeNewJukebox(tallow_, jukeboxes_, document_windows_);
    case FrameCommand::kOpen:
      return documents_.Open();
    case FrameCommand::kClose:
      if (QMdiSubWindow* const active = area_->currentSubWindow()) active->close();
      return;
    case FrameCommand::kSave:
      if (commands_.HasJukebox()) SaveDatForm();
      return;
    case FrameCommand::kSaveAs:
      if (commands_.HasJukebox() && documents_.SaveAs()) places_.StoreLater();
      return;
    case FrameCommand::kExit:
      close();
      return;
    case FrameCommand::kNewSongsNormalLocations:
      search_.BringIn(NewSongsPlace::kKnownFolders);
      return;
    case FrameCommand::kNewSongsWholeComputerSearch:
      search_.BringIn(NewSongsPlace::kWholeComputer);
      return;
    default:
      RunOnProgram(command);
  }
}

void frmMDIForm1::RunOnProgram(FrameCommand command) {
  if (const std::optional<PlayerCommand> sent = PlayerCommandOf(command)) {
    const std::string why = WhyNoEffect(*sent, player_.Model().Now());
    player_.Send(*sent);
    if (!why.empty()) return messages_.ShowStatus(why, kShortly);
    // Nothing else shows that it has an effect.
    if (*sent == kStopAfterTrack && player_.Model().Now().status != kStopped)
      messages_.ShowStatus("Playing stops after this song.", kShortly);
    return;
  }
  switch (command) {
    case FrameCommand::kChangeBackgroundPicture:
      return picture_.Change();
    case FrameCommand::kCascade:
      return arrangement_.Cascade();
    case FrameCommand::kTile:
      return arrangement_.Tile(tallow_.preferences.style() == Style::kModern);
    case FrameCommand::kArrangeIcons:
      return arrangement_.ArrangeIcons();
    case FrameCommand::kFindField:
      return find_field_->Focus();
    case FrameCommand::kPreferences:
      return ShowPreferences();
    case FrameCommand::kWhereMyMusicIs:
      return ShowMusicPlaces();
    case FrameCommand::kFileAgainByTags:
      return filing_.FileAgain();
    case FrameCommand::kPlayerBar:
      return player_bar_.Toggle();
    case FrameCommand::kPlayerPanel:
      return player_.ShowPanel();
    case FrameCommand::kQueue:
      return queue_.Toggle();
    case FrameCommand::kShowPlayingSong:
      return lists_.ShowPlayingSong();
    case FrameCommand::kHelp:
      return help_.ShowHelp({});
    case FrameCommand::kTip:
      return help_.ShowTip();
    case FrameCommand::kAbout:
      return help_.ShowAbout();
    default:
      return;
  }
}

void frmMDIForm1::FocusSongs() {
  if (frmMain* const window = jukeboxes_.ActiveWindow()) window->GrabFocus();
}

void frmMDIForm1::ShowPreferences() {
  bool files_again = false;
  frmPreferences dialog({.tallow = tallow_,
                         .changed = [this] { Notice(tallow_.TakeProblems()); },
                         .style_chosen = [this] { filing_.FinishStyle(); },
                         .show_places = [this] { ShowMusicPlaces(); },
                         .file_again = [&files_again] { files_again = true; },
                         .player = MakePlayerPageContext(tallow_, searches_, link_, busy_)},
                        this);
  dialog.exec();
  filing_.Finish();
  if (files_again) filing_.FileAgain();
  details_.Changed();
}

void frmMDIForm1::ShowMusicPlaces() {
  frmMusicPlaces dialog(
      {.tallow = tallow_,
       .read_drives = [this] { return searches_.DrivesNow(); },
       .search = [this] { search_.BringIn(NewSongsPlace::kWholeComputer); },
       .changed = [this] { Notice(tallow_.TakeProblems()); },
       .states = place_states_,
       .begin_work = [this](std::string_view text) { return busy_.BeginWork(text); }},
      this);
  dialog.exec();
  // The empty lists name the places that are searched.
  jukeboxes_.ForEachWindow([](frmMain& window) { window.ShowEmptyLibrary(); });
}

void frmMDIForm1::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  // Queued, so that all other handlers of the event run first.
  if (event->type() == QEvent::ActivationChange && isActiveWindow())
    QMetaObject::invokeMethod(
        this, [this] { busy_.FocusJukebox(); }, Qt::QueuedConnection);
}

bool frmMDIForm1::event(QEvent* event) {
  // No item has a status tip, so the empty tip of an open menu would only remove the message.
  return event->type() == QEvent::StatusTip || QMainWindow::event(event);
}

void frmMDIForm1::closeEvent(QCloseEvent* event) {
  // A disabled frame has work in progress, which is cancelled and ends as soon as it can.
  if (!isEnabled()) {
    tallow_.SearchCancelled = true;
    return event->ignore();
  }
  // If a jukebox must stay open, or another start has handed over a jukebox file in the meantime,
  // the program and its music keep running.
  if (!jukeboxes_.CloseAll() || files_.AreWaiting()) return event->ignore();
  player_.End();
  // The program ends with its last window, so the help window closes, too.
  help_.Close();
  QSettings options;
  options.setValue(kGeometryOption, saveGeometry());
  options.setValue(kStateOption, saveState());
  event->accept();
}

}  // namespace tallow
