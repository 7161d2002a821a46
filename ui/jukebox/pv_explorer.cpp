// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/pv_explorer.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include <QApplication>
#include <QContextMenuEvent>
#include <QEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QScrollBar>

#include "app/play_commands.h"
#include "ui/jukebox/folder_tree_model.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/pop_up_menus.h"
#include "ui/jukebox/song_list_model.h"
#include "ui/jukebox/song_list_view.h"
#include "ui/support/display_text.h"

namespace tallow {
namespace {

/// Initial widths of the tree and of the column of record numbers, in average characters.
constexpr int kTreeCharacters = 34;
constexpr int kKeyCharacters = 10;

constexpr int kRowPadding = 6;

/// Horizontal offset in a row of a menu that was opened with the keyboard, in average characters.
constexpr int kMenuInset = 16;

/// Minimum size of a rank icon, in pixels.
constexpr int kMinPicture = 16;

constexpr auto kRenameByKey = QAbstractItemView::EditTriggers(QAbstractItemView::EditKeyPressed);
constexpr auto kRenameByKeyOrClick = kRenameByKey | QAbstractItemView::SelectedClicked;

/// Returns whether the focus was moved with the keyboard.
bool IsByKey(const QFocusEvent& event) {
  return event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason ||
         event.reason() == Qt::ShortcutFocusReason;
}

/// Returns whether a key moves from folder to folder.
bool MovesInTree(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
      return true;
    default:
      return false;
  }
}

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

PVExplorer::PVExplorer(Jukebox& jukebox, const clsMain& library, JukeboxClipboard& clipboard,
                       QWidget* parent)
    : QSplitter(Qt::Horizontal, parent),
      jukebox_(jukebox),
      library_(library),
      edits_(jukebox, clipboard),
      folders_(new FolderTreeModel(jukebox.Nodes(), this)),
      songs_(new SongListModel(jukebox, library, this)),
      tree_(new FolderTreeView(this)),
      list_(new SongListView(this)) {
  setObjectName(QStringLiteral("PVExplorer1"));
  SetUpTree();
  SetUpList();
  SetUpDragging();
  setStretchFactor(0, 0);
  setStretchFactor(1, 1);
  setChildrenCollapsible(false);
  const int character = fontMetrics().averageCharWidth();
  setSizes({kTreeCharacters * character, 2 * kTreeCharacters * character});
  jukebox_.SetView(this);
  ShowFocus();
}

PVExplorer::~PVExplorer() { jukebox_.SetView(nullptr); }

void PVExplorer::SetUpTree() {
  tree_->setObjectName(QStringLiteral("TreeView"));
  tree_->setAccessibleName(tr("Folders"));
  tree_->setAccessibleDescription(tr("The songs of the chosen folder are in the list beside"));
  tree_->setModel(folders_);
  tree_->setHeaderHidden(true);
  tree_->setUniformRowHeights(true);
  tree_->setEditTriggers(kRenameByKeyOrClick);
  tree_->installEventFilter(this);
  tree_->viewport()->installEventFilter(this);
  folders_->SetRename([this](Folder& folder, const std::string& text) {
    const std::int32_t place = folder.Index();
    const bool renamed = edits_.Rename(folder, text);
    if (folder.Index() != place) tree_->scrollTo(folders_->IndexOf(folder));
    return renamed;
  });
  // A folder that is added again, for example by undo, is expanded as it was before.
  connect(folders_, &QAbstractItemModel::rowsInserted, this,
          [this](const QModelIndex& parent, int first, int last) {
            for (int row = first; row <= last; ++row)
              MarkOpen(*FolderTreeModel::FolderOf(folders_->index(row, 0, parent)));
          });
  connect(tree_, &QTreeView::expanded, this,
          [](const QModelIndex& index) { FolderTreeModel::FolderOf(index)->Open(true); });
  connect(tree_, &QTreeView::collapsed, this,
          [](const QModelIndex& index) { FolderTreeModel::FolderOf(index)->Open(false); });
  connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) {
            if (!current.isValid()) return;
            told_ = true;
            SetInEmptyArea(false);
            Folder* const folder = FolderTreeModel::FolderOf(current);
            folders_->SetShown(folder);
            emit NodeClick(folder);
          });
  connect(tree_, &QTreeView::clicked, this, [this](const QModelIndex& index) {
    if (!told_) emit NodeClick(FolderTreeModel::FolderOf(index));
  });
}

bool PVExplorer::eventFilter(QObject* watched, QEvent* event) {
  const bool in_list = watched == list_ || watched == list_->viewport();
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      // A click that changes the selection emits NodeClick immediately; a click on the folder on
      // show emits NodeClick on release.
      if (watched == tree_->viewport()) {
        told_ = false;
        // A click that only moves the focus to the tree must not start renaming.
        tree_->setEditTriggers(came_by_click_ ? kRenameByKey : kRenameByKeyOrClick);
        came_by_click_ = false;
        const auto& click = *static_cast<QMouseEvent*>(event);
        SetInEmptyArea(tree_->FolderAt(click.position().toPoint()) == nullptr);
      }
      break;
    case QEvent::MouseButtonDblClick:
      // The views also open songs and folders on double-clicks of other buttons.
      if ((watched == list_->viewport() || watched == tree_->viewport()) &&
          static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton)
        return true;
      break;
    case QEvent::KeyPress:
      if (watched == list_ || watched == tree_)
        return KeyPressed(*static_cast<QKeyEvent*>(event), in_list);
      break;
    case QEvent::ContextMenu:
      MenuWanted(*static_cast<QContextMenuEvent*>(event), in_list);
      return true;
    case QEvent::FocusIn:
      // Hiding a widget moves the focus to the next widget, which is no user action.
      if ((watched == list_ || watched == tree_) && isVisible())
        emit FocusChanged(in_list ? kListPane : kTreePane);
      // Qt sends FocusIn before the mouse press that causes it.
      if (watched == tree_)
        came_by_click_ = static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason;
      // When a menu closes or the window is activated, the tree only regains the focus, and in_empty_area_
      // is kept.
      if (watched == list_ || (watched == tree_ && IsByKey(*static_cast<QFocusEvent*>(event))))
        SetInEmptyArea(false);
      [[fallthrough]];
    case QEvent::FocusOut:
      // Queued, because the view must handle the focus event first.
      if (watched == list_ || watched == tree_)
        QMetaObject::invokeMethod(this, &PVExplorer::ShowFocus, Qt::QueuedConnection);
      break;
    default:
      break;
  }
  return QSplitter::eventFilter(watched, event);
}

bool PVExplorer::IsEditKey(const QKeyEvent& key, bool in_list) {
  // Keys of the numeric keypad are equivalent to the other keys.
  const QKeyCombination pressed(key.modifiers() & ~Qt::KeypadModifier, Qt::Key(key.key()));
  const auto is = [&](QKeyCombination combination) { return pressed == combination; };
  const auto command = [&](TreeCommand of_tree, ListCommand of_list) {
    if (in_list)
      emit ListCommandKey(of_list);
    else
      emit TreeCommandKey(of_tree);
    return true;
  };
  if (is(Qt::CTRL | Qt::Key_X)) return command(TreeCommand::kCutFolder, ListCommand::kCutSongs);
  if (is(Qt::CTRL | Qt::Key_C)) return command(TreeCommand::kCopyFolder, ListCommand::kCopySongs);
  if (is(Qt::CTRL | Qt::Key_V)) return command(TreeCommand::kPasteFolder, ListCommand::kPasteSongs);
  if (is(QKeyCombination(Qt::Key_Delete)))
    return command(TreeCommand::kDeleteFolder, ListCommand::kDeleteSongs);
  if (is(Qt::CTRL | Qt::Key_Z)) {
    Undo();
    return true;
  }
  if (is(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)) {
    Redo();
    return true;
  }
  return false;
}

bool PVExplorer::KeyPressed(const QKeyEvent& key, bool in_list) {
  if (IsEditKey(key, in_list)) return true;
  if (key.key() == Qt::Key_F10 && key.modifiers() == Qt::ShiftModifier) {
    MenuAtSelection(in_list);
    return true;
  }
  if (!in_list && MovesInTree(key)) SetInEmptyArea(false);
  const bool is_plain = (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (key.key() == Qt::Key_Backspace && is_plain) {
    const Folder* const folder = selectednode();
    if (folder != nullptr && folder->Parent() != nullptr) Select(*folder->Parent());
    return true;
  }
  return in_list && ListKeyPressed(key);
}

bool PVExplorer::ListKeyPressed(const QKeyEvent& key) {
  const int last = list_->model()->rowCount() - 1;
  switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if ((key.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return false;
      if (list_->currentIndex().isValid() && !key.isAutoRepeat())
        emit ItemOpened(songs_->PlaceOf(list_->currentIndex().row()));
      return true;
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Up:
    case Qt::Key_Down: {
      // A list that has only received the focus has a current row, but no selected row.
      if (last < 0 || list_->selectionModel()->hasSelection()) return false;
      const int current = std::max(0, list_->currentIndex().row());
      const int row = key.key() == Qt::Key_Home ? 0 : key.key() == Qt::Key_End ? last : current;
      list_->SelectRows(row, row);
      return true;
    }
    default:
      return false;
  }
}

void PVExplorer::ShowFocus() {
  // The pane without the focus shows its selection in grey.
  for (QAbstractItemView* const view :
       {static_cast<QAbstractItemView*>(tree_), static_cast<QAbstractItemView*>(list_)}) {
    QPalette colors = palette();
    const QWidget* const focus = QApplication::focusWidget();
    const bool has_focus = focus != nullptr && (focus == view || view->isAncestorOf(focus));
    const bool other_has_focus = focus != nullptr && !has_focus && isAncestorOf(focus);
    // This grey has the same lightness in light and dark colour schemes, so white text and white
    // rank icons stay readable on it. A window in the background uses the grey as well, because
    // some desktops show such a selection as black on white.
    constexpr int kGrey = 0x80;
    const QColor mark = colors.color(QPalette::Active, QPalette::Highlight);
    const auto mute = [](int part) { return (part + 2 * kGrey) / 3; };
    const QColor muted(mute(mark.red()), mute(mark.green()), mute(mark.blue()));
    colors.setColor(QPalette::Inactive, QPalette::Highlight, muted);
    colors.setColor(QPalette::Inactive, QPalette::HighlightedText,
                    colors.color(QPalette::Active, QPalette::HighlightedText));
    if (other_has_focus || (view == tree_ && in_empty_area_))
      colors.setColor(QPalette::Active, QPalette::Highlight, muted);
    view->setPalette(colors);
  }
}

void PVExplorer::SetInEmptyArea(bool beside) {
  if (std::exchange(in_empty_area_, beside) != beside) ShowFocus();
}

void PVExplorer::MenuWanted(const QContextMenuEvent& event, bool in_list) {
  if (event.reason() == QContextMenuEvent::Keyboard) return MenuAtSelection(in_list);
  if (in_list)
    emit ListPopUp(event.globalPos());
  else
    emit TreePopUp(tree_->FolderAt(tree_->viewport()->mapFromGlobal(event.globalPos())),
                   event.globalPos());
}

void PVExplorer::MenuAtSelection(bool in_list) {
  QAbstractItemView& view = in_list ? static_cast<QAbstractItemView&>(*list_) : *tree_;
  const QModelIndex index = view.currentIndex();
  if (index.isValid()) view.scrollTo(index);
  const QRect row = index.isValid() ? view.visualRect(index) : QRect();
  // Opens the menu near the beginning of the text, because a row may be as wide as the window.
  const int inside = kMenuInset * view.fontMetrics().averageCharWidth();
  const QPoint place(row.x() + std::min(row.width() / 2, inside), row.center().y());
  const QPoint position = view.viewport()->mapToGlobal(index.isValid() ? place : QPoint());
  if (in_list)
    emit ListPopUp(position);
  else
    emit TreePopUp(index.isValid() ? FolderTreeModel::FolderOf(index) : nullptr, position);
}

void PVExplorer::SetUpList() {
  list_->setObjectName(QStringLiteral("ListView"));
  list_->setAccessibleName(tr("Songs"));
  list_->setAccessibleDescription(tr("Enter plays the song, Shift+F10 opens its menu"));
  list_->setModel(songs_);
  list_->setShowGrid(false);
  list_->setSelectionBehavior(QAbstractItemView::SelectRows);
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->setWordWrap(false);
  list_->setTabKeyNavigation(false);
  // The end of a song's label distinguishes it from similar songs, so the middle is elided.
  list_->setTextElideMode(Qt::ElideMiddle);
  list_->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  list_->verticalHeader()->hide();
  list_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  list_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
  const int picture = std::max(kMinPicture, fontMetrics().height());
  list_->setIconSize(QSize(picture, picture));
  QHeaderView* const header = list_->horizontalHeader();
  header->setHighlightSections(false);
  header->setSectionsClickable(true);
  header->setStretchLastSection(false);
  connect(header, &QHeaderView::sectionClicked, this, [this] { emit ColumnClick(); });
  list_->installEventFilter(this);
  list_->viewport()->installEventFilter(this);
  connect(list_, &QTableView::doubleClicked, this,
          [this](const QModelIndex& index) { emit ItemOpened(songs_->PlaceOf(index.row())); });
}

void PVExplorer::TakeFocus(bool list) {
  if (list)
    list_->setFocus();
  else
    tree_->setFocus();
}

void PVExplorer::Select(const Folder& folder) {
  tree_->setCurrentIndex(folders_->IndexOf(folder));
  tree_->scrollTo(folders_->IndexOf(folder));
}

int PVExplorer::SelectSong(const Folder& folder, int row) {
  // Showing the folder removes songs whose files are gone, so the song is looked up again by its
  // record number, counting earlier entries with the same number.
  const auto& items = folder.Items();
  const std::int32_t record = items.at(static_cast<std::size_t>(row)).SubItem();
  const auto is_song = [record](const SongEntry& entry) { return entry.SubItem() == record; };
  auto nth = std::count_if(items.begin(), items.begin() + row, is_song);
  if (&folder != selectednode())
    Select(folder);
  else
    RefillList();
  for (int shown = 0; shown < songs_->rowCount(); ++shown) {
    const int now = songs_->PlaceOf(shown);
    if (!is_song(items[static_cast<std::size_t>(now)]) || nth-- > 0) continue;
    list_->SelectRows(shown, shown);
    return now;
  }
  return -1;
}

void PVExplorer::EditText(const Folder& folder) { tree_->edit(folders_->IndexOf(folder)); }

void PVExplorer::EnsureVisible(int row) { list_->scrollTo(songs_->index(songs_->RowAt(row), 0)); }

QRect PVExplorer::PlaceOfRow(int row) const {
  const QRect place = list_->visualRect(songs_->index(songs_->RowAt(row), SongListModel::kText));
  return {list_->viewport()->mapToGlobal(place.topLeft()), place.size()};
}

PVExplorer::Place PVExplorer::CurrentPlace() const {
  const Folder* const folder = selectednode();
  if (folder == nullptr) return {};
  const std::vector<int> rows = SelectedRows();
  Place place{folder->Key(), SongsOf(*folder, rows), 0, list_->verticalScrollBar()->value()};
  const std::vector<std::int32_t> current =
      SongsOf(*folder, {songs_->PlaceOf(list_->currentIndex().row())});
  if (!current.empty()) place.current = current.front();
  return place;
}

void PVExplorer::GoTo(const Place& place) {
  const Folder* const folder = selectednode();
  if (folder == nullptr || folder->Key() != place.folder) return;
  // A folder may contain a song several times; as many of its entries are selected as before.
  std::unordered_map<std::int32_t, int> wanted;
  for (const std::int32_t record : place.selected) ++wanted[record];
  std::vector<int> selected;
  QModelIndex current;
  for (int row = 0; row < songs_->rowCount(); ++row) {
    const std::int32_t record =
        folder->Items()[static_cast<std::size_t>(songs_->PlaceOf(row))].SubItem();
    if (!current.isValid() && record == place.current) current = songs_->index(row, 0);
    if (const auto found = wanted.find(record); found != wanted.end() && found->second-- > 0)
      selected.push_back(row);
  }
  QItemSelectionModel& selection = *list_->selectionModel();
  // In two steps, because the cost of replacing a selection grows with the product of the numbers
  // of ranges of both selections.
  selection.clearSelection();
  selection.setCurrentIndex(current, QItemSelectionModel::NoUpdate);
  selection.select(list_->RangesOf(selected), QItemSelectionModel::Select);
  list_->verticalScrollBar()->setValue(place.scrolled);
}

void PVExplorer::FollowSongs(const Place& place) {
  // Refills the list first; otherwise the view extends the selection from the last clicked row.
  songs_->Refill();
  GoTo(place);
  if (!place.selected.empty()) list_->scrollTo(list_->currentIndex());
}

std::string PVExplorer::SetBackgroundImage(const QString& address, bool tiled) {
  return list_->SetBackgroundImage(address, tiled);
}

void PVExplorer::SetHiddenMargin(int width, int height) {
  setContentsMargins(0, 0, width, height);
  refresh();
}

void PVExplorer::MarkOpen(const Folder& folder) {
  for (std::int32_t k = 0; k < folder.Children(); ++k) MarkOpen(folder.ChildAt(k));
  if (folder.Open()) tree_->expand(folders_->IndexOf(folder));
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
  // Reads the selection by ranges, because checking each row is slow for many rows.
  std::vector<int> rows;
  for (const QItemSelectionRange& range : list_->selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  for (int& row : rows) row = songs_->PlaceOf(row);
  return rows;
}

void PVExplorer::CaptionChanged() { emit CaptionChanged(DisplayText(jukebox_.Caption())); }

void PVExplorer::ListChanged() {
  QScrollBar& bar = *list_->verticalScrollBar();
  const int place = keep_place_ ? bar.value() : 0;
  songs_->Refill();
  bar.setValue(place);
  emit ListRefilled();
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
