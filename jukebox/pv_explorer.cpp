// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/pv_explorer.h"

#include <algorithm>

#include <QEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QTableView>
#include <QTreeView>

#include "jukebox/folder_tree_model.h"
#include "jukebox/song_list_model.h"
#include "ui/display_text.h"

namespace tallow {
namespace {

/// Widths at the start, in average characters: the tree, and the record numbers.
constexpr int kTreeCharacters = 34;
constexpr int kKeyCharacters = 10;

constexpr int kRowPadding = 6;

template <typename Act>
void ForEachFolder(Folder& folder, const Act& act) {
  act(folder);
  for (std::int32_t k = 0; k < folder.Children(); ++k) ForEachFolder(folder.ChildAt(k), act);
}

template <typename Act>
void ForEachFolder(FolderTree& tree, const Act& act) {
  for (std::int32_t k = 0; k < tree.Children(); ++k) ForEachFolder(tree.ChildAt(k), act);
}

}  // namespace

PVExplorer::PVExplorer(Jukebox& jukebox, const clsMain& library, QWidget* parent)
    : QSplitter(Qt::Horizontal, parent),
      jukebox_(jukebox),
      folders_(new FolderTreeModel(jukebox.Nodes(), this)),
      songs_(new SongListModel(jukebox, library, this)),
      tree_(new QTreeView(this)),
      list_(new QTableView(this)) {
  setObjectName(QStringLiteral("PVExplorer1"));
  SetUpTree();
  SetUpList();
  setStretchFactor(0, 0);
  setStretchFactor(1, 1);
  setChildrenCollapsible(false);
  const int character = fontMetrics().averageCharWidth();
  setSizes({kTreeCharacters * character, 2 * kTreeCharacters * character});
  jukebox_.SetView(this);
}

PVExplorer::~PVExplorer() { jukebox_.SetView(nullptr); }

void PVExplorer::SetUpTree() {
  tree_->setObjectName(QStringLiteral("TreeView"));
  tree_->setAccessibleName(tr("Folders"));
  tree_->setModel(folders_);
  tree_->setHeaderHidden(true);
  tree_->setUniformRowHeights(true);
  tree_->viewport()->installEventFilter(this);
  connect(tree_, &QTreeView::expanded, this,
          [](const QModelIndex& index) { FolderTreeModel::FolderOf(index)->Open(true); });
  connect(tree_, &QTreeView::collapsed, this,
          [](const QModelIndex& index) { FolderTreeModel::FolderOf(index)->Open(false); });
  connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) {
            if (!current.isValid()) return;
            told_ = true;
            Folder* const folder = FolderTreeModel::FolderOf(current);
            folders_->SetShown(folder);
            emit NodeClick(folder);
          });
  connect(tree_, &QTreeView::clicked, this, [this](const QModelIndex& index) {
    if (!told_) emit NodeClick(FolderTreeModel::FolderOf(index));
  });
}

bool PVExplorer::eventFilter(QObject* watched, QEvent* event) {
  // A click that moves the selection is told when it does; one on the folder on show, when it is over.
  if (watched == tree_->viewport() && event->type() == QEvent::MouseButtonPress) told_ = false;
  if (watched == list_ && event->type() == QEvent::KeyPress)
    return ListKeyPressed(*static_cast<QKeyEvent*>(event));
  return QSplitter::eventFilter(watched, event);
}

bool PVExplorer::ListKeyPressed(const QKeyEvent& key) {
  if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return false;
  if (list_->currentIndex().isValid() && !key.isAutoRepeat())
    emit ItemOpened(list_->currentIndex().row());
  return true;
}

void PVExplorer::SetUpList() {
  list_->setObjectName(QStringLiteral("ListView"));
  list_->setAccessibleName(tr("Songs"));
  list_->setModel(songs_);
  list_->setShowGrid(false);
  list_->setSelectionBehavior(QAbstractItemView::SelectRows);
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->setWordWrap(false);
  list_->setTabKeyNavigation(false);
  // The label of a song ends in what tells it from others of its kind.
  list_->setTextElideMode(Qt::ElideMiddle);
  list_->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  list_->verticalHeader()->hide();
  list_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  list_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
  QHeaderView* const header = list_->horizontalHeader();
  header->setHighlightSections(false);
  header->setSectionsClickable(true);
  header->setStretchLastSection(false);
  connect(header, &QHeaderView::sectionClicked, this, [this] { emit ColumnClick(); });
  list_->installEventFilter(this);
  connect(list_, &QTableView::doubleClicked, this,
          [this](const QModelIndex& index) { emit ItemOpened(index.row()); });
  list_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(list_, &QTableView::customContextMenuRequested, this, [this](const QPoint& position) {
    emit ListPopUp(list_->viewport()->mapToGlobal(position));
  });
}

void PVExplorer::Select(const Folder& folder) {
  tree_->setCurrentIndex(folders_->IndexOf(folder));
  tree_->scrollTo(folders_->IndexOf(folder));
}

void PVExplorer::ExpandAll() {
  ForEachFolder(jukebox_.Nodes(), [](Folder& folder) { folder.Open(true); });
  tree_->expandAll();
}

void PVExplorer::ExpandMarked() {
  ForEachFolder(jukebox_.Nodes(), [this](Folder& folder) {
    tree_->setExpanded(folders_->IndexOf(folder), folder.Open());
  });
}

std::vector<int> PVExplorer::SelectedRows() const {
  std::vector<int> rows;
  for (const QModelIndex& index : list_->selectionModel()->selectedRows())
    rows.push_back(index.row());
  std::sort(rows.begin(), rows.end());
  return rows;
}

void PVExplorer::CaptionChanged() { emit CaptionChanged(DisplayText(jukebox_.Caption())); }

void PVExplorer::ListChanged() {
  songs_->Refill();
  list_->scrollToTop();
}

void PVExplorer::LabelsChanged() { songs_->Relabel(); }

void PVExplorer::HeadersChanged() {
  const int before = list_->horizontalHeader()->count();
  songs_->ChangeHeaders();
  QHeaderView* const header = list_->horizontalHeader();
  if (header->count() == before || header->count() == 0) return;
  header->setSectionResizeMode(SongListModel::kText, QHeaderView::Stretch);
  if (header->count() > SongListModel::kKey)
    header->resizeSection(SongListModel::kKey, kKeyCharacters * fontMetrics().averageCharWidth());
}

}  // namespace tallow
