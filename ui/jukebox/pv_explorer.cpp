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

/// Widths at the start, in average characters: the tree, and the record numbers.
constexpr int kTreeCharacters = 34;
constexpr int kKeyCharacters = 10;

constexpr int kRowPadding = 6;

/// How far inside a row a menu opens that was asked for by key, in average characters.
constexpr int kMenuInset = 16;

/// Of a rank's picture, in pixels.
constexpr int kMinPicture = 16;

constexpr auto kRenameByKey = QAbstractItemView::EditTriggers(QAbstractItemView::EditKeyPressed);
constexpr auto kRenameByKeyOrClick = kRenameByKey | QAbstractItemView::SelectedClicked;

/// Whether the keyboard has come by a key.
bool IsByKey(const QFocusEvent& event) {
  return event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason ||
         event.reason() == Qt::ShortcutFocusReason;
}

/// Whether a key goes from folder to folder.
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
  // A folder that comes back is open as it was.
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
            ActBeside(false);
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
      // A click that moves the selection is told when it does; one on the folder on show, when it is over.
      if (watched == tree_->viewport()) {
        told_ = false;
        // One that only comes back to the tree is no second click on the folder.
        tree_->setEditTriggers(came_by_click_ ? kRenameByKey : kRenameByKeyOrClick);
        came_by_click_ = false;
        const auto& click = *static_cast<QMouseEvent*>(event);
        ActBeside(tree_->FolderAt(click.position().toPoint()) == nullptr);
      }
      break;
    case QEvent::MouseButtonDblClick:
      // The views would take that of any button for one that opens a song or a folder.
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
      // What is being hidden passes the focus on once more, which is nobody's wish.
      if ((watched == list_ || watched == tree_) && isVisible())
        emit FocusChanged(in_list ? kListPane : kTreePane);
      // The focus comes before the click that brings it.
      if (watched == tree_)
        came_by_click_ = static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason;
      // A menu that closes, or a window that comes to the front, only gives the keyboard back.
      if (watched == list_ || (watched == tree_ && IsByKey(*static_cast<QFocusEvent*>(event))))
        ActBeside(false);
      [[fallthrough]];
    case QEvent::FocusOut:
      // The view itself has to have seen it first.
      if (watched == list_ || watched == tree_)
        QMetaObject::invokeMethod(this, &PVExplorer::ShowFocus, Qt::QueuedConnection);
      break;
    default:
      break;
  }
  return QSplitter::eventFilter(watched, event);
}

bool PVExplorer::IsEditKey(const QKeyEvent& key, bool in_list) {
  // The keys of the keypad are the same keys.
  const QKeyCombination pressed(key.modifiers() & ~Qt::KeypadModifier, Qt::Key(key.key()));
  const auto is = [&](QKeyCombination combination) { return pressed == combination; };
  const auto command = [&](TreeCommand of_tree, ListCommand of_list) {
    emit CommandKey(in_list ? kListPane : kTreePane,
                    in_list ? static_cast<int>(of_list) : static_cast<int>(of_tree));
    return true;
  };
  if (is(Qt::CTRL | Qt::Key_X)) return command(kCutFolder, kCutSongs);
  if (is(Qt::CTRL | Qt::Key_C)) return command(kCopyFolder, kCopySongs);
  if (is(Qt::CTRL | Qt::Key_V)) return command(kPasteFolder, kPasteSongs);
  if (is(QKeyCombination(Qt::Key_Delete))) return command(kDeleteFolder, kDeleteSongs);
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
  if (!in_list && MovesInTree(key)) ActBeside(false);
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
      // A list that was only entered has a current row, but none that is selected.
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
  // Which half the keys act on is seen by its selection: that of the other one is grey.
  for (QAbstractItemView* const view :
       {static_cast<QAbstractItemView*>(tree_), static_cast<QAbstractItemView*>(list_)}) {
    QPalette colors = palette();
    const QWidget* const focus = QApplication::focusWidget();
    const bool has_focus = focus != nullptr && (focus == view || view->isAncestorOf(focus));
    const bool other_has_focus = focus != nullptr && !has_focus && isAncestorOf(focus);
    // Grey of the same lightness on light and dark: text and rank pictures stay white on it. It is that of
    // a window in the background as well, for which some desktops have a selection of black on white.
    constexpr int kGrey = 0x80;
    const QColor mark = colors.color(QPalette::Active, QPalette::Highlight);
    const auto mute = [](int part) { return (part + 2 * kGrey) / 3; };
    const QColor muted(mute(mark.red()), mute(mark.green()), mute(mark.blue()));
    colors.setColor(QPalette::Inactive, QPalette::Highlight, muted);
    colors.setColor(QPalette::Inactive, QPalette::HighlightedText,
                    colors.color(QPalette::Active, QPalette::HighlightedText));
    if (other_has_focus || (view == tree_ && beside_))
      colors.setColor(QPalette::Active, QPalette::Highlight, muted);
    view->setPalette(colors);
  }
}

void PVExplorer::ActBeside(bool beside) {
  if (std::exchange(beside_, beside) != beside) ShowFocus();
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
  // Near the beginning of its text: a row may be as long as the window.
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
  // The label of a song ends in what tells it from others of its kind.
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
  // Showing the folder takes out songs whose files are gone, so the song is looked for again: the same one of
  // those with its number.
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
  // A song may be in the folder several times; as many of its entries are selected as were.
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
  // Told in two steps: the difference of two selections takes the product of their numbers of ranges.
  selection.clearSelection();
  selection.setCurrentIndex(current, QItemSelectionModel::NoUpdate);
  selection.select(list_->RangesOf(selected), QItemSelectionModel::Select);
  list_->verticalScrollBar()->setValue(place.scrolled);
}

void PVExplorer::FollowSongs(const Place& place) {
  // The view would extend a selection from the row where the last click was.
  songs_->Refill();
  GoTo(place);
  if (!place.selected.empty()) list_->scrollTo(list_->currentIndex());
}

std::string PVExplorer::SetBackgroundImage(const QString& address, bool tiled) {
  return list_->SetBackgroundImage(address, tiled);
}

void PVExplorer::KeepFree(int width, int height) {
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
  // Range by range: asking for each row takes its time when there are many.
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
