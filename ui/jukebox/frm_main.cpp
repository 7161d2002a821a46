// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/frm_main.h"

#include <algorithm>
#include <exception>
#include <utility>

#include <QCloseEvent>
#include <QFile>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPointer>
#include <QSettings>
#include <QStyle>

#include "app/add_files.h"
#include "app/play_commands.h"
#include "app/tallow.h"
#include "jukebox/initial_jukebox.h"
#include "jukebox/ranking.h"
#include "jukebox/returned_songs.h"
#include "jukebox/sorting.h"
#include "jukebox/special_folders.h"
#include "ui/jukebox/picture_address.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/resize_rule.h"
#include "ui/support/display_text.h"
#include "ui/support/message_box.h"

namespace tallow {
namespace {

/// Initial size, in pixels.
constexpr QSize kUsualSize(760, 480);

/// Settings key of the last position of the splitter.
const QString kSplitterOption = QStringLiteral("Jukebox/Splitter");

}  // namespace

frmMain::frmMain(Tallow& tallow, ShowMessage show, QWidget* parent)
    : QWidget(parent),
      tallow_(tallow),
      show_(show ? std::move(show)
                 : [this](const Message& message) { return ShowMessageBox(message, window()); }),
      explorer_(new PVExplorer(jukebox_, tallow.library, tallow.clipboard, this)),
      list_menu_(MakeListMenu(
          this, [this](int item) { ActOnPopUpClick(item, kListPane, jukebox_.selectednode()); })),
      tree_menu_(MakeTreeMenu(this, [this](int item) {
        // The folder may have been deleted while the menu was open.
        Folder* const folder = menu_folder_ != 0 ? jukebox_.Nodes().FindKey(menu_folder_) : nullptr;
        if (folder != nullptr || menu_folder_ == 0) ActOnPopUpClick(item, kTreePane, folder);
      })) {
  setObjectName(QStringLiteral("frmMain"));
  ConnectExplorer();
  explorer_->restoreState(QSettings().value(kSplitterOption).toByteArray());
  ShowPicture();
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
  connect(explorer_, &PVExplorer::ColumnClick, this, &frmMain::SortList);
  connect(explorer_, qOverload<const QString&>(&PVExplorer::CaptionChanged), this,
          &QWidget::setWindowTitle);
  connect(explorer_, &PVExplorer::ItemOpened, this, &frmMain::PlaySong);
  connect(explorer_, &PVExplorer::ListPopUp, list_menu_, [this](const QPoint& position) {
    if (jukebox_.selectednode() != nullptr) list_menu_->popup(position);
  });
  connect(explorer_, &PVExplorer::TreePopUp, tree_menu_,
          [this](Folder* folder, const QPoint& position) {
            menu_folder_ = folder != nullptr ? folder->Key() : 0;
            const JukeboxClipboard& clipboard = tallow_.clipboard;
            EnableTreeItems(*tree_menu_, folder,
                            clipboard.CopiedFolder() != nullptr ||
                                (folder != nullptr && !clipboard.Songs().empty()));
            tree_menu_->popup(position);
          });
  connect(explorer_, &PVExplorer::FocusChanged, this,
          [this](int pane) { pane_with_focus_ = pane; });
  connect(explorer_, &PVExplorer::CommandKey, this,
          [this](int pane, int item) { ActOnPopUpClick(item, pane, FolderOfPane(pane)); });
  connect(explorer_, &PVExplorer::BeforeCut, this, &frmMain::BeforeCut);
  connect(
      explorer_, &PVExplorer::FilesDropped, this,
      [this](const std::vector<std::string>& paths, Folder* to) { AddDroppedFiles(paths, *to); });
  connect(explorer_, &PVExplorer::Problem, this, &frmMain::Problem);
  connect(explorer_, &PVExplorer::LinkedStepDone, this, &frmMain::LinkedStepDone);
  connect(explorer_, &QSplitter::splitterMoved, this,
          [this] { QSettings().setValue(kSplitterOption, explorer_->saveState()); });
}

QSize frmMain::sizeHint() const { return kUsualSize; }

void frmMain::TakeFocus() { explorer_->TakeFocus(pane_with_focus_ == kListPane); }

void frmMain::ShowJukebox() {
  if (jukebox_.Expanded())
    explorer_->ExpandAll();
  else
    explorer_->ExpandMarked();
  if (jukebox_.selectednode() == nullptr && jukebox_.Nodes().Children() > 0)
    explorer_->Select(jukebox_.Nodes().ChildAt(0));
}

void frmMain::ShowFolder(Folder& folder) {
  jukebox_.ShowFolder(folder, tallow_.library, tallow_.folder_changes);
}

void frmMain::SortList() {
  // Sorting reassigns the songs of the entries; the selection follows the songs.
  const PVExplorer::Place place = explorer_->CurrentPlace();
  try {
    jukebox_.ColumnClick(tallow_.library);
  } catch (const std::exception& error) {
    emit Problem({tr("The list could not be sorted: a rank is not a number (%1).")
                      .arg(DisplayMessage(error.what()))});
  }
  explorer_->FollowSongs(place);
}

void frmMain::ActOnPopUpClick(int item, int pane, Folder* node) {
  emit PopUpClick(item, pane);
  if (pane == kTreePane) ActOnTree(item, node);
  if (pane == kListPane && node != nullptr) ActOnList(item, *node);
  // Without any folder, songs and folders can still be pasted into the root.
  if (pane == kListPane && node == nullptr && item == kPasteSongs) explorer_->Paste(nullptr);
}

Folder* frmMain::FolderOfPane(int pane) const {
  return pane == kTreePane ? explorer_->FolderForCommands() : jukebox_.selectednode();
}

void frmMain::ActOnTree(int item, Folder* node) {
  switch (item) {
    case kAddFolderToSelected:
      if (node != nullptr) explorer_->AddFolder(node);
      return;
    case kAddFolderToRoot:
      explorer_->AddFolder(nullptr);
      return;
    case kCutFolder:
      if (node != nullptr) explorer_->CutFolder(*node);
      return;
    case kCopyFolder:
      if (node != nullptr) explorer_->CopyFolder(*node);
      return;
    case kPasteFolder:
      explorer_->Paste(node);
      return;
    case kDeleteFolder:
      if (node != nullptr) DeleteFolder(*node);
      return;
    case kSortNodes:
      explorer_->SortNodes(node);
      return;
    case kMoveToRoot:
      if (node != nullptr) explorer_->MoveToRoot(*node);
      return;
    default:
      return;
  }
}

void frmMain::ActOnList(int item, Folder& node) {
  // Songs can be selected only in the folder on show.
  const bool on_show = &node == jukebox_.selectednode();
  // All commands of the list act on these songs.
  tallow_.SongsToPlay.clear();
  if (on_show) tallow_.SongsToPlay = SongsOf(node, explorer_->SelectedRows());
  const bool acts_on_selection = (item >= kRankBest && item <= kRankWorst) || item == kCutSongs ||
                                 item == kDeleteSongs || item == kCopySongs;
  if (acts_on_selection && tallow_.SongsToPlay.empty())
    return emit Problem({tr("No song is selected.")});
  if (item >= kRankBest && item <= kRankWorst) {
    if (on_show) RankSelectedSongs(item - kRankBest + 1);
    return;
  }
  switch (item) {
    case kPlayAllSongsInFolder:
      return Play(ShownSongsOf(node, tallow_.library), tr("This folder holds no songs to play."));
    case kPlaySelectedSongs:
      return Play(tallow_.SongsToPlay, tr("No song is selected, so none is played."));
    case kCutSongs:
    case kDeleteSongs:
      if (on_show) explorer_->CutSongs();
      return;
    case kCopySongs:
      if (on_show) explorer_->CopySongs();
      return;
    case kPasteSongs:
      explorer_->Paste(&node);
      return;
    case kChangeBackgroundPicture:
      emit ChangeBackgroundPicture();
      return;
    default:
      return;
  }
}

void frmMain::Play(const std::vector<std::int32_t>& songs, const QString& if_none) {
  emit PlaySongs(songs);
  if (songs.empty()) emit Problem({if_none});
}

QStringList frmMain::ProblemsOfSettings() {
  QStringList lines;
  for (const std::string& problem : tallow_.TakeProblems()) lines.append(DisplayMessage(problem));
  return lines;
}

void frmMain::RankSelectedSongs(int item) {
  const bool saved =
      RankSongs(*jukebox_.selectednode(), explorer_->SelectedRows(), item, tallow_.library);
  jukebox_.PicturesChanged();
  const QStringList lines = ProblemsOfSettings();
  if (!lines.isEmpty()) emit Problem(lines);
  if (!saved)
    show_({.text = "The ranks could not be saved. " + tallow_.library.SaveError() +
                   ".\n\nThey hold until Tallow is closed, and are saved with the next rank that "
                   "can be.",
           .icon = MessageIcon::kCritical});
}

void frmMain::DeleteFolder(Folder& node) {
  if (!OkToDelete(node)) return;
  // The folder and this window may be deleted while the message box is open.
  const std::uint32_t key = node.Key();
  const QPointer<frmMain> here(this);
  if (show_({.text = "Are you sure you want to delete this folder and all it's contents?",
             .icon = MessageIcon::kQuestion,
             .buttons = MessageButtons::kYesNoCancel}) != MessageAnswer::kYes ||
      here == nullptr)
    return;
  if (Folder* const folder = jukebox_.Nodes().FindKey(key)) explorer_->DeleteFolder(*folder);
}

void frmMain::BeforeCut(BeforeCutEvent& event) {
  std::string text;
  if (event.songs && IsAllSongs(event.folder))
    text = "Can not cut a song from 'All Songs.'  You can copy a song if you wish.";
  if (!event.songs && IsSpecialFolder(event.folder))
    text = "This is a special node that can not be cut.  It can be copied if you wish.";
  if (text.empty()) return;
  event.cancel = true;
  show_({.text = std::move(text), .icon = MessageIcon::kInformation});
}

void frmMain::AddDroppedFiles(const std::vector<std::string>& paths, Folder& to) {
  AddedFiles taken;
  std::vector<std::string> problems;
  // Restores selection and scroll position after the list was refilled.
  const PVExplorer::Place place = explorer_->CurrentPlace();
  std::unique_ptr<LongWork> work;
  bool is_filed = true;
  try {
    if (begin_work_) work = begin_work_(kAddingFiles);
    taken = tallow::AddFiles(paths, tallow_.library, [&work](std::string_view path) {
      return work == nullptr || work->GoOn([&] { return std::string(path); });
    });
    work.reset();
    problems = taken.problems;
    tallow::Jukebox* const own[] = {&jukebox_};
    RenumberReturnedSongs(taken.returned, own, tallow_.clipboard);
    if (!taken.returned.empty() || taken.report.missing > 0) emit SongsReturned(taken.returned);
    if (taken.has_new_songs) {
      if (begin_work_) work = begin_work_(kFilingSongs);
      FillAutomaticFolders(kFillNewToo, true, {}, tallow_.library, own, nullptr,
                           [&](std::size_t filed, std::size_t songs) {
                             is_filed = work == nullptr ||
                                        work->GoOn([=] { return FilingLine(filed, songs); });
                             return is_filed;
                           });
    }
  } catch (const FilingError& error) {
    problems.insert(problems.end(), error.problems().begin(), error.problems().end());
  } catch (const std::exception& error) {
    problems.push_back(std::string("The new songs could not be filed. ") + error.what());
  }
  work.reset();
  if (taken.has_new_songs) explorer_->GoTo(place);
  // If filing was cancelled, songs are not added to "All Songs", because songs that are already
  // there are never filed.
  if (is_filed || !IsAllSongs(to)) explorer_->AddSongs(to, taken.songs);
  if (!is_filed) {
    tallow_.filing_is_pending = true;
    problems.push_back(FilingCancelledLine() + ".");
  }
  QStringList lines;
  const std::string counts = TextOf(taken.report, false);
  if (!counts.empty()) lines.append(DisplayText(counts));
  for (const std::string& problem : problems) lines.append(DisplayMessage(problem));
  lines.append(ProblemsOfSettings());
  if (!lines.isEmpty()) emit Problem(lines);
}

void frmMain::PlaySong(int row) {
  if (const Folder* const folder = jukebox_.selectednode()) emit PlaySongs(SongsOf(*folder, {row}));
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
