// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/pv_explorer.h"

#include <algorithm>

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScrollBar>

#include "ui/jukebox/explorer/explorer_dragging.h"
#include "ui/jukebox/explorer/explorer_keys.h"
#include "ui/jukebox/explorer/explorer_steps.h"
#include "ui/jukebox/explorer/folder_choice.h"
#include "ui/jukebox/explorer/folder_expansion.h"
#include "ui/jukebox/explorer/hidden_folders.h"
#include "ui/jukebox/explorer/pane_focus.h"
#include "ui/jukebox/explorer/playing_marks.h"
#include "ui/jukebox/explorer/pop_up_requests.h"
#include "ui/jukebox/explorer_drag.h"
#include "ui/jukebox/folder_tree_model.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/song_list_model.h"
#include "ui/jukebox/song_list_view.h"
#include "ui/support/display_text.h"

namespace tallow {
namespace {

/// Initial width of the tree, in average characters, and its bounds when it fits its names.
constexpr int kTreeCharacters = 34;
constexpr int kMinTreeCharacters = 22;
constexpr int kMaxTreeCharacters = 50;
/// Another upper bound, in pixels at 96 dpi.
constexpr int kMaxTreeWidth = 240;
constexpr int kUsualDpi = 96;
/// Minimum width of the list, in average characters: the tree and docks give way.
constexpr int kMinListCharacters = 28;

}  // namespace

PVExplorer::PVExplorer(Jukebox& jukebox, const clsMain& library, JukeboxClipboard& clipboard,
                       QWidget* parent)
    : QSplitter(Qt::Horizontal, parent),
      jukebox_(jukebox),
      library_(library),
      folders_(new FolderTreeModel(jukebox.Nodes(), this)),
      songs_(new SongListModel(jukebox, library, this)),
      tree_(new FolderTreeView(*folders_, this)),
      list_(new SongListView(*songs_, this)),
      shown_songs_(jukebox, library, *songs_, *list_),
      edits_(jukebox, clipboard, *tree_, shown_songs_),
      steps_(std::make_unique<ExplorerSteps>(jukebox, *tree_, shown_songs_)),
      dragging_(std::make_unique<ExplorerDragging>(jukebox, library, *tree_, *list_, shown_songs_,
                                                   edits_)),
      expansion_(std::make_unique<FolderExpansion>(jukebox.Nodes(), *folders_, *tree_)),
      hidden_(std::make_unique<HiddenFolders>(jukebox.Nodes(), library, *folders_, *tree_)),
      choice_(std::make_unique<FolderChoice>(*folders_, *tree_, *list_)),
      pop_ups_(std::make_unique<PopUpRequests>(*tree_, *list_)),
      keys_(std::make_unique<ExplorerKeys>(library, *tree_, *list_)),
      focus_(std::make_unique<PaneFocus>(*this, *tree_, *list_, *choice_)) {
  setObjectName(QStringLiteral("PVExplorer1"));
  setStretchFactor(0, 0);
  setStretchFactor(1, 1);
  setChildrenCollapsible(false);
  const int character = fontMetrics().averageCharWidth();
  list_->setMinimumWidth(kMinListCharacters * character);
  setSizes({kTreeCharacters * character, 2 * kTreeCharacters * character});
  ConnectTree();
  ConnectList();
  ConnectKeys();
  connect(&edits_, &ExplorerEdits::BeforeCut, this, &PVExplorer::BeforeCut);
  connect(&edits_, &ExplorerEdits::Problem, this, &PVExplorer::Problem);
  connect(steps_.get(), &ExplorerSteps::LinkedStepDone, this, &PVExplorer::LinkedStepDone);
  connect(steps_.get(), &ExplorerSteps::RanksChanged, this, &PVExplorer::RanksChanged);
  connect(dragging_.get(), &ExplorerDragging::FilesDropped, this, &PVExplorer::FilesDropped);
  connect(focus_.get(), &PaneFocus::FocusChanged, this, &PVExplorer::FocusChanged);
  jukebox_.SetView(this);
}

PVExplorer::~PVExplorer() { jukebox_.SetView(nullptr); }

void PVExplorer::ConnectTree() {
  folders_->SetRename(
      [this](Folder& folder, const std::string& text) { return edits_.Rename(folder, text); });
  connect(choice_.get(), &FolderChoice::NodeClick, this, &PVExplorer::NodeClick);
  connect(pop_ups_.get(), &PopUpRequests::TreePopUp, this, &PVExplorer::TreePopUp);
}

void PVExplorer::ConnectList() {
  const QHeaderView* const header = list_->horizontalHeader();
  connect(header, &QHeaderView::sectionClicked, this, [this](int section) {
    emit ColumnClick(songs_->Columns()[static_cast<std::size_t>(section)]);
  });
  connect(header, &QWidget::customContextMenuRequested, this,
          [this, header](const QPoint& position) {
            emit HeaderPopUp(header->viewport()->mapToGlobal(position));
          });
  connect(list_, &SongListView::ColumnsChanged, this, &PVExplorer::ColumnsChanged);
  connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &PVExplorer::SelectionChanged);
  connect(list_, &SongListView::RankWanted, this, &PVExplorer::RankWanted);
  connect(list_, &SongListView::RankStepsWanted, this, &PVExplorer::RankStepsWanted);
  connect(list_, &QTableView::doubleClicked, this,
          [this](const QModelIndex& index) { emit ItemOpened(songs_->PlaceOf(index.row())); });
  connect(pop_ups_.get(), &PopUpRequests::ListPopUp, this, &PVExplorer::ListPopUp);
}

void PVExplorer::ConnectKeys() {
  const ExplorerKeys* const keys = keys_.get();
  connect(keys, &ExplorerKeys::TreeCommandKey, this, &PVExplorer::TreeCommandKey);
  connect(keys, &ExplorerKeys::ListCommandKey, this, &PVExplorer::ListCommandKey);
  connect(keys, &ExplorerKeys::UndoKey, this, &PVExplorer::Undo);
  connect(keys, &ExplorerKeys::RedoKey, this, &PVExplorer::Redo);
  connect(keys, &ExplorerKeys::MoveKey, &edits_, &ExplorerEdits::MoveSongsByOne);
  connect(keys, &ExplorerKeys::MenuKey, pop_ups_.get(), &PopUpRequests::RequestAtCurrentRow);
  connect(keys, &ExplorerKeys::ParentKey, this, [this] {
    const Folder* const folder = selectednode();
    if (folder != nullptr && folder->Parent() != nullptr) Select(*folder->Parent());
  });
  connect(keys, &ExplorerKeys::OpenKey, this,
          [this](int row) { emit ItemOpened(songs_->PlaceOf(row)); });
  connect(keys, &ExplorerKeys::EscapeKey, this, &PVExplorer::Escaped);
  connect(keys, &ExplorerKeys::PauseKey, this, &PVExplorer::PlayOrPause);
}

bool PVExplorer::ShowsSongs() const { return songs_->rowCount() > 0; }

void PVExplorer::FitTree() {
  const int character = fontMetrics().averageCharWidth();
  const int beside = 2 * tree_->frameWidth() + tree_->verticalScrollBar()->sizeHint().width();
  const int least = kMinTreeCharacters * character;
  const int most =
      std::min(kMaxTreeCharacters * character, kMaxTreeWidth * logicalDpiX() / kUsualDpi);
  const int names =
      std::clamp(static_cast<QAbstractItemView&>(*tree_).sizeHintForColumn(0) + beside, least,
                 std::max(least, most));
  setSizes({names, std::max(width() - names, list_->minimumWidth())});
}

void PVExplorer::GrabFocus(bool list) {
  if (list)
    list_->setFocus();
  else
    tree_->setFocus();
}

void PVExplorer::Select(const Folder& folder) {
  // Selecting the folder that is selected already changes nothing in the tree.
  if (&folder == selectednode()) HideHits();
  tree_->SelectFolder(folder);
}

int PVExplorer::SelectSong(const Folder& folder, int row) {
  // Showing the folder removes songs whose files are gone, so the song is looked up again.
  const ShownSongs::Entry entry = ShownSongs::EntryAt(folder, row);
  if (&folder != selectednode() || jukebox_.ShowsHits())
    Select(folder);
  else
    shown_songs_.Refill();
  return shown_songs_.Select(entry);
}

void PVExplorer::EditText(const Folder& folder) { tree_->EditText(folder); }

void PVExplorer::UpdateHiddenFolders() { hidden_->Update(); }

QAbstractScrollArea& PVExplorer::List() const { return *list_; }

void PVExplorer::ExpandAll() { expansion_->ExpandAll(); }

void PVExplorer::ExpandMarked() { expansion_->ExpandMarked(); }

Folder* PVExplorer::FolderForCommands() const noexcept {
  return choice_->IsInEmptyArea() ? nullptr : selectednode();
}

std::string PVExplorer::SetBackgroundImage(const QString& address, bool tiled) {
  return list_->SetBackgroundImage(address, tiled);
}

void PVExplorer::ShowColumns(const std::vector<ChosenColumn>& columns, const SongColumns& texts,
                             bool details) {
  const Place place = CurrentPlace();
  list_->ShowColumns(columns, &texts, details);
  GoTo(place);
}

void PVExplorer::ShowSort(std::optional<ListColumn> column, bool descending) {
  list_->ShowSort(column ? songs_->IndexOf(*column) : -1, descending);
}

QPoint PVExplorer::BelowHeaders() const {
  const QHeaderView& header = *list_->horizontalHeader();
  return header.mapToGlobal(QPoint(0, header.height()));
}

void PVExplorer::DetailsChanged() { songs_->Relabel(); }

void PVExplorer::ShowMarks(PlayerModel* player) {
  marks_.reset();
  if (player != nullptr) marks_ = std::make_unique<PlayingMarks>(*player, *songs_, *list_);
}

void PVExplorer::SetHiddenMargin(int width, int height) {
  setContentsMargins(0, 0, width, height);
  refresh();
}

bool PVExplorer::Save(const std::string& path) {
  CommitEditing();
  return jukebox_.Save(path, library_);
}

void PVExplorer::CommitEditing() { tree_->CommitEditing(); }

void PVExplorer::Undo() {
  steps_->Undo();
  UpdateHiddenFolders();
}

void PVExplorer::Redo() {
  steps_->Redo();
  UpdateHiddenFolders();
}

bool PVExplorer::StepLinked(std::uint64_t move, bool back) {
  return steps_->StepLinked(move, back);
}

void PVExplorer::UseMoreCommands(bool on) {
  keys_->UseMoreCommands(on);
  dragging_->UseMoreCommands(on);
}

std::unique_ptr<ExplorerDrag> PVExplorer::SongsToDrag() const { return dragging_->SongsToDrag(); }

std::unique_ptr<ExplorerDrag> PVExplorer::FolderToDrag() const { return dragging_->FolderToDrag(); }

void PVExplorer::CaptionChanged() { emit CaptionChanged(DisplayText(jukebox_.Caption())); }

void PVExplorer::ListChanged() {
  shown_songs_.FillList();
  // While hits are shown, the list holds the songs of no folder.
  tree_->MarkCurrent(!jukebox_.ShowsHits());
  emit ListRefilled();
}

void PVExplorer::LabelsChanged() { songs_->Relabel(); }

void PVExplorer::HeadersChanged() { list_->ChangeHeaders(); }

void PVExplorer::Renumbered(const NewNumbers& numbers) {
  shown_songs_.Renumber(numbers);
  emit SongsRenumbered(numbers);
}

}  // namespace tallow
