// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/frm_main.h"

#include <algorithm>
#include <utility>

#include <QAbstractScrollArea>
#include <QCloseEvent>
#include <QMdiSubWindow>
#include <QMenu>
#include <QSettings>
#include <QStyle>
#include <QTimer>

#include "app/file_again_command.h"
#include "app/play_commands.h"
#include "app/search/music_places.h"
#include "app/tallow.h"
#include "jukebox/empty_folder_text.h"
#include "jukebox/initial_jukebox.h"
#include "ui/jukebox/columns/jukebox_columns.h"
#include "ui/jukebox/columns/list_sums.h"
#include "ui/jukebox/dropped_files.h"
#include "ui/jukebox/empty_folder_hint.h"
#include "ui/jukebox/empty_library_notice.h"
#include "ui/jukebox/jukebox_commands.h"
#include "ui/jukebox/picture_address.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/resize_rule.h"
#include "ui/support/display_text.h"
#include "ui/support/message_box.h"
#include "ui/support/shown_title.h"

namespace tallow {
namespace {

/// Initial size, in pixels.
constexpr QSize kUsualSize(760, 480);

/// How long after a change the jukebox is compared with its file, in ms.
constexpr int kCompareAfter = 100;

/// Settings key of the last position of the splitter.
const QString kSplitterOption = QStringLiteral("Jukebox/Splitter");

}  // namespace

frmMain::frmMain(Tallow& tallow, ShowMessage show, QWidget* parent)
    : QWidget(parent),
      tallow_(tallow),
      show_(show ? std::move(show)
                 : [this](const Message& message) { return ShowMessageBox(message, window()); }),
      explorer_(new PVExplorer(jukebox_, tallow.library, tallow.clipboard, this)),
      empty_library_(new EmptyLibraryNotice(explorer_->List())),
      empty_folder_(new EmptyFolderHint(explorer_->List())),
      commands_(std::make_unique<JukeboxCommands>(tallow, jukebox_, *explorer_, show_)),
      columns_(std::make_unique<JukeboxColumns>(tallow, jukebox_, *explorer_)),
      sums_(std::make_unique<ListSums>(tallow, jukebox_, *explorer_)),
      dropped_files_(std::make_unique<DroppedFiles>(tallow, jukebox_, *explorer_)),
      unsaved_timer_(new QTimer(this)),
      list_menu_(
          MakeListMenu(this, [this](ListCommand command) { Run(command, jukebox_.ListFolder()); })),
      tree_menu_(MakeTreeMenu(this, [this](TreeCommand command) {
        // The folder may have been deleted while the menu was open.
        Folder* const folder = menu_folder_ != 0 ? jukebox_.Nodes().FindKey(menu_folder_) : nullptr;
        if (folder != nullptr || menu_folder_ == 0) Run(command, folder);
      })) {
  setObjectName(QStringLiteral("frmMain"));
  AddColumnsItem(*list_menu_, columns_->Menu());
  ConnectExplorer();
  connect(commands_.get(), &JukeboxCommands::PlaySongs, this, &frmMain::PlaySongs);
  connect(commands_.get(), &JukeboxCommands::PlayFromHere, this, &frmMain::PlayFromHere);
  connect(commands_.get(), &JukeboxCommands::PlayNext, this, &frmMain::PlayNext);
  connect(commands_.get(), &JukeboxCommands::AddToQueue, this, &frmMain::AddToQueue);
  connect(commands_.get(), &JukeboxCommands::Problem, this, &frmMain::Problem);
  connect(commands_.get(), &JukeboxCommands::ChangeBackgroundPicture, this,
          &frmMain::ChangeBackgroundPicture);
  connect(commands_.get(), &JukeboxCommands::RanksChanged, this, &frmMain::RanksChanged);
  connect(commands_.get(), &JukeboxCommands::ShowProperties, this, &frmMain::ShowProperties);
  connect(dropped_files_.get(), &DroppedFiles::Problem, this, &frmMain::Problem);
  connect(dropped_files_.get(), &DroppedFiles::SongsReturned, this, &frmMain::SongsReturned);
  explorer_->restoreState(QSettings().value(kSplitterOption).toByteArray());
  connect(explorer_, &PVExplorer::ListRefilled, this, &frmMain::ShowEmptyLibrary);
  connect(empty_library_, &EmptyLibraryNotice::WhereMyMusicIs, this, &frmMain::WhereMyMusicIs);
  MarkUnsaved();
  ShowPicture();
  ShowEmptyLibrary();
  UseMoreCommands();
}

void frmMain::MarkUnsaved() {
  // The comparison reads all folders, so several changes are compared once.
  unsaved_timer_->setSingleShot(true);
  unsaved_timer_->setInterval(kCompareAfter);
  connect(unsaved_timer_, &QTimer::timeout, this, [this] {
    // Qt warns about the mark of a window without a title.
    if (windowTitle().isEmpty()) return;
    // Unlike on closing, the disk is not asked for the file, because it may take long to answer.
    setWindowModified(jukebox_.IsUnsaved());
  });
  jukebox_.OnChange([this] {
    if (!unsaved_timer_->isActive()) unsaved_timer_->start();
  });
}

void frmMain::ShowEmptyLibrary() {
  const QString of_library = DisplayText(EmptyLibraryText(tallow_));
  empty_library_->ShowText(of_library);
  const Folder* const shown = jukebox_.ListFolder();
  const bool is_empty =
      HasDetails() && of_library.isEmpty() && shown != nullptr && !explorer_->ShowsSongs();
  const QString of_folder = is_empty ? DisplayText(EmptyFolderText(*shown)) : QString();
  empty_folder_->ShowText(of_folder);
  // Screen readers have no access to widgets over a list.
  const QString why = of_library.isEmpty() ? of_folder : of_library;
  explorer_->List().setAccessibleDescription(
      why.isEmpty() ? tr("Enter plays the song, Shift+F10 opens its menu") : why);
}

void frmMain::ShowPicture() {
  const clsINI& settings = tallow_.settings;
  if (settings.IsThereAPicture() &&
      tallow_.library.Unanswered()->Covers(settings.PictureLocation())) {
    picture_problem_ =
        settings.PictureLocation() + " cannot be read: " + std::string(kDoesNotAnswer);
    return;
  }
  picture_problem_ = PictureAddressProblem(settings);
  std::string problem =
      explorer_->SetBackgroundImage(PictureAddress(settings), settings.IsItTiled());
  if (picture_problem_.empty()) picture_problem_ = std::move(problem);
}

frmMain::~frmMain() {
  tallow_.unsaved.Release(jukebox_);
  // The control uses jukebox_, which is destroyed before the child widgets are.
  delete explorer_;
}

void frmMain::ConnectExplorer() {
  connect(explorer_, &PVExplorer::NodeClick, this, [this](Folder* folder) { ShowFolder(*folder); });
  connect(explorer_, &PVExplorer::RankWanted, this,
          [this](int rank) { Run(CommandOfRank(rank), jukebox_.ListFolder()); });
  connect(columns_.get(), &JukeboxColumns::Problem, this, &frmMain::Problem);
  connect(sums_.get(), &ListSums::TextChanged, this, &frmMain::SumsChanged);
  connect(explorer_, qOverload<const QString&>(&PVExplorer::CaptionChanged), this,
          [this](const QString& caption) { setWindowTitle(TitleWithMark(caption)); });
  connect(explorer_, &PVExplorer::ItemOpened, commands_.get(), &JukeboxCommands::OpenSong);
  connect(explorer_, &PVExplorer::PlayOrPause, this, &frmMain::PlayOrPause);
  connect(explorer_, &PVExplorer::ListPopUp, list_menu_, [this](const QPoint& position) {
    if (jukebox_.ListFolder() == nullptr) return;
    EnableListItems(*list_menu_, player_, CanPaste());
    EnableItemsForHits(*list_menu_, jukebox_.ShowsHits(),
                       tallow_.preferences.switches().find_field);
    list_menu_->popup(position);
  });
  connect(explorer_, &PVExplorer::TreePopUp, tree_menu_,
          [this](Folder* folder, const QPoint& position) {
            menu_folder_ = folder != nullptr ? folder->Key() : 0;
            OfferAlbumFolder(*tree_menu_, OffersAlbumFolder(jukebox_, tallow_.library));
            EnableTreeItems(*tree_menu_, folder, player_, CanPaste());
            tree_menu_->popup(position);
          });
  connect(explorer_, &PVExplorer::FocusChanged, this,
          [this](int pane) { pane_with_focus_ = pane; });
  connect(explorer_, &PVExplorer::TreeCommandKey, this,
          [this](TreeCommand command) { Run(command, FolderOfPane(kTreePane)); });
  connect(explorer_, &PVExplorer::ListCommandKey, this,
          [this](ListCommand command) { Run(command, FolderOfPane(kListPane)); });
  connect(explorer_, &PVExplorer::FilesDropped, dropped_files_.get(),
          [this](const std::vector<std::string>& paths, Folder* to) {
            dropped_files_->Add(paths, *to);
          });
  connect(explorer_, &PVExplorer::Problem, this, &frmMain::Problem);
  connect(explorer_, &PVExplorer::LinkedStepDone, this, &frmMain::LinkedStepDone);
  connect(explorer_, &QSplitter::splitterMoved, this,
          [this] { QSettings().setValue(kSplitterOption, explorer_->saveState()); });
}

bool frmMain::CanPaste() const {
  // Songs that are pasted into no folder say that they need one.
  return tallow_.clipboard.CopiedFolder() != nullptr || !tallow_.clipboard.Songs().empty();
}

QSize frmMain::sizeHint() const { return kUsualSize; }

void frmMain::GrabFocus() { explorer_->GrabFocus(pane_with_focus_ == kListPane); }

void frmMain::ShowJukebox() {
  if (jukebox_.Expanded())
    explorer_->ExpandAll();
  else
    explorer_->ExpandMarked();
  explorer_->UpdateHiddenFolders();
  if (HasDetails() && !QSettings().contains(kSplitterOption)) explorer_->FitTree();
  if (jukebox_.selectednode() == nullptr && jukebox_.Nodes().Children() > 0)
    explorer_->Select(jukebox_.Nodes().ChildAt(0));
}

void frmMain::ShowFolder(Folder& folder) {
  jukebox_.ShowFolder(folder, tallow_.library, tallow_.folder_changes);
}

bool frmMain::HasDetails() const { return tallow_.preferences.switches().columns_of_details; }

void frmMain::UseMoreCommands() {
  const bool is_on = tallow_.preferences.switches().more_commands;
  ShowMoreCommands(*list_menu_, *tree_menu_, is_on);
  explorer_->UseMoreCommands(is_on);
}

void frmMain::FollowPreferences() {
  UseMoreCommands();
  columns_->Follow();
  ShowEmptyLibrary();
  sums_->Changed();
}

void frmMain::ShowNewDetails() {
  if (columns_->ShowNewDetails()) sums_->Changed();
}

QString frmMain::SumsText() const { return sums_->Text(); }

void frmMain::OpenSong(int row) { commands_->OpenSong(row); }

void frmMain::ActOnPopUpClick(int item, int pane, Folder* node) {
  if (pane == kTreePane) Run(TreeCommand(item), node);
  if (pane == kListPane) Run(ListCommand(item), node);
}

Folder* frmMain::FolderOfPane(int pane) const {
  return pane == kTreePane ? explorer_->FolderForCommands() : jukebox_.ListFolder();
}

void frmMain::Run(TreeCommand command, Folder* node) {
  emit PopUpClick(static_cast<int>(command), kTreePane);
  commands_->Run(command, node);
}

void frmMain::Run(ListCommand command, Folder* node) {
  emit PopUpClick(static_cast<int>(command), kListPane);
  if (command == ListCommand::kColumns) return columns_->PopUp();
  commands_->Run(command, node);
}

void frmMain::SetPlayer(PlayerModel* player) {
  if (player == player_) return;
  player_ = player;
  explorer_->ShowMarks(shows_marks_ ? player_ : nullptr);
}

void frmMain::ShowMarks(bool on) {
  // Every change of a preference comes here, and showing the marks lays the list out anew.
  if (on == shows_marks_) return;
  shows_marks_ = on;
  explorer_->ShowMarks(on ? player_ : nullptr);
}

void frmMain::OnLongWork(const BeginLongWork& begin) {
  dropped_files_->OnLongWork(begin);
  commands_->OnLongWork(begin);
}

bool frmMain::WillAsk() const {
  return jukebox_.IsFormDirty() && jukebox_.HasUnsavedChanges(tallow_.library);
}

bool frmMain::AskBeforeClosing() {
  // A text that is being typed is an unsaved change as well.
  explorer_->CommitEditing();
  may_close_ = may_close_ || MayClose();
  return may_close_;
}

bool frmMain::MayClose() {
  if (!WillAsk()) return true;
  Message question;
  question.icon = MessageIcon::kQuestion;
  question.buttons = MessageButtons::kYesNo;
  question.can_be_dismissed = true;
  question.text =
      jukebox_.Caption() == kSampleCaption
          ? "You should save this initial Jukebox to speed up the program.  Do you want "
            "to save this Jukebox?"
          : "Do you want to save changes to " + jukebox_.Caption();
  switch (show_(question)) {
    case MessageAnswer::kYes:
      return save_ && save_();
    case MessageAnswer::kNo:
      return true;
    default:
      return false;
  }
}

void frmMain::closeEvent(QCloseEvent* event) {
  if (!AskBeforeClosing()) return event->ignore();
  tallow_.unsaved.Forget(jukebox_);
  event->accept();
}

QSize frmMain::WholeSize() const {
  auto* const sub = qobject_cast<QMdiSubWindow*>(parentWidget());
  if (sub == nullptr) return size();
  // A maximized subwindow's size does not include its frame, so the frame is added.
  const int border = style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, sub);
  const int title = style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, sub);
  return sub->size().expandedTo(size() + QSize(2 * border, title + border));
}

void frmMain::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const QSize whole = WholeSize();
  const QSize control(ControlExtent(whole.width(), explorer_->width(), kMoreWidth),
                      ControlExtent(whole.height(), explorer_->height(), kMoreHeight));
  explorer_->resize(control);
  explorer_->SetHiddenMargin(std::max(0, control.width() - width()),
                             std::max(0, control.height() - height()));
}

}  // namespace tallow
