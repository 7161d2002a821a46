// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/queue_view.h"

#include <algorithm>
#include <functional>

#include <QAction>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include "ui/player/queue_model.h"
#include "ui/support/display_text.h"

namespace tallow {
namespace {

constexpr int kRowPadding = 6;

/// How many rows above and below the first visible one are searched for selected entries after the
/// view was refilled.
constexpr int kRowsAround = 500;

/// Whether a key is one of the frame's menus that changes the jukebox or its clipboard.
bool IsEditKey(const QKeyEvent& key) {
  const QKeyCombination pressed(key.modifiers() & ~Qt::KeypadModifier, Qt::Key(key.key()));
  return pressed == QKeyCombination(Qt::Key_Delete) || pressed == (Qt::CTRL | Qt::Key_X) ||
         pressed == (Qt::CTRL | Qt::Key_C) || pressed == (Qt::CTRL | Qt::Key_V) ||
         pressed == (Qt::CTRL | Qt::Key_Z) || pressed == (Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
}

/// Draws the mark of a row right of its text, so that all texts begin below each other.
class MarkAtTheRight : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->decorationPosition = QStyleOptionViewItem::Right;
  }
};

}  // namespace

QueueView::QueueView(PlayerModel& player, QueueModel& rows, QWidget* parent)
    : QTableView(parent), player_(player), rows_(rows), menu_(new QMenu(this)) {
  setObjectName(QStringLiteral("QueueView"));
  setAccessibleName(tr("Queue"));
  setAccessibleDescription(tr("Enter plays the song, Del removes it, Alt+Up and Alt+Down move it"));
  setModel(&rows);
  setItemDelegate(new MarkAtTheRight(this));
  setShowGrid(false);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setWordWrap(false);
  setTabKeyNavigation(false);
  // The title comes first, so the artist is elided.
  setTextElideMode(Qt::ElideRight);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  horizontalHeader()->hide();
  horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  const int text_height = fontMetrics().height();
  verticalHeader()->setDefaultSectionSize(text_height + kRowPadding);
  setIconSize(QSize(text_height, text_height));
  setDragDropMode(QAbstractItemView::DragDrop);
  setDragDropOverwriteMode(false);
  setDefaultDropAction(Qt::MoveAction);
  // The view draws its own.
  setDropIndicatorShown(false);
  MakeMenu();
  connect(&rows, &QueueModel::Refilling, this, &QueueView::StoreSelection);
  connect(&rows, &QueueModel::Refilled, this, &QueueView::RestoreSelection);
}

void QueueView::MakeMenu() {
  menu_->setObjectName(QStringLiteral("QueueMenu"));
  menu_->setToolTipsVisible(true);
  const auto add = [this](const char* name, const QString& caption, QKeyCombination key,
                          const std::function<void()>& act) {
    QAction* const action = menu_->addAction(caption);
    action->setObjectName(QLatin1String(name));
    // The view handles the key itself.
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetShortcut);
    action->setShortcutVisibleInContextMenu(true);
    connect(action, &QAction::triggered, this, act);
  };
  add("mnuQueuePlay", tr("&Play"), QKeyCombination(Qt::Key_Return), [this] { PlayCurrent(); });
  menu_->addSeparator();
  add("mnuQueueUp", tr("Move &Up"), Qt::ALT | Qt::Key_Up, [this] { MoveSelected(true); });
  add("mnuQueueDown", tr("Move Do&wn"), Qt::ALT | Qt::Key_Down, [this] { MoveSelected(false); });
  add("mnuQueueRemove", tr("&Remove From Queue"), QKeyCombination(Qt::Key_Delete),
      [this] { RemoveSelected(); });
}

void QueueView::EnableItems() {
  const bool any = selectionModel()->hasSelection();
  const std::string reason = player_.WhyNot(PlayerFeature::kRearrange);
  for (QAction* const action : menu_->actions()) {
    const bool plays = action->objectName() == QLatin1String("mnuQueuePlay");
    action->setEnabled(any && (plays || reason.empty()));
    if (!plays) action->setToolTip(DisplayText(reason));
  }
}

std::vector<int> QueueView::SelectedRows() const {
  std::vector<int> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

void QueueView::PlayCurrent() {
  if (const std::uint64_t entry = rows_.EntryAt(currentIndex().row()); entry != 0)
    player_.PlayFromQueue(entry);
}

void QueueView::RemoveSelected() {
  const std::vector<int> rows = SelectedRows();
  const std::vector<std::uint64_t> entries = rows_.EntriesAt(rows);
  if (entries.empty() || !player_.Can(PlayerFeature::kRearrange)) return;
  // The selection follows its entry when the rows are gone.
  int next = rows.back() + 1;
  if (next >= rows_.rowCount()) next = rows.front() - 1;
  if (next >= 0) {
    rows_.Remember(next);
    selectionModel()->setCurrentIndex(rows_.index(next, 0), QItemSelectionModel::ClearAndSelect);
  }
  player_.RemoveFromQueue(entries);
}

void QueueView::MoveSelected(bool up) {
  const std::vector<int> rows = SelectedRows();
  if (rows.empty() || !player_.Can(PlayerFeature::kRearrange)) return;
  const int last = rows_.rowCount() - 1;
  if (up)
    rows_.Move(rows, std::max(0, rows.front() - 1));
  else
    rows_.Move(rows, std::min(last, rows.back() + 1) + 1);
}

bool QueueView::event(QEvent* event) {
  // An accepted override passes the key to this view instead of a menu.
  if (event->type() == QEvent::ShortcutOverride && IsEditKey(*static_cast<QKeyEvent*>(event))) {
    event->accept();
    return true;
  }
  return QTableView::event(event);
}

void QueueView::keyPressEvent(QKeyEvent* event) {
  const QKeyCombination pressed(event->modifiers() & ~Qt::KeypadModifier, Qt::Key(event->key()));
  const auto is = [&](QKeyCombination combination) { return pressed == combination; };
  if (is(QKeyCombination(Qt::Key_Return)) || is(QKeyCombination(Qt::Key_Enter))) {
    if (!event->isAutoRepeat()) PlayCurrent();
  } else if (is(QKeyCombination(Qt::Key_Delete))) {
    RemoveSelected();
  } else if (is(Qt::ALT | Qt::Key_Up) || is(Qt::ALT | Qt::Key_Down)) {
    MoveSelected(event->key() == Qt::Key_Up);
  } else if (is(QKeyCombination(Qt::Key_Space)) && space_pauses_) {
    if (!event->isAutoRepeat()) player_.PlayOrPause();
  } else if (!IsEditKey(*event)) {
    QTableView::keyPressEvent(event);
  }
}

void QueueView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid())
    PlayCurrent();
}

void QueueView::contextMenuEvent(QContextMenuEvent* event) {
  QPoint position = event->globalPos();
  if (event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid())
    position = viewport()->mapToGlobal(visualRect(currentIndex()).center());
  EnableItems();
  menu_->popup(position);
}

int QueueView::DropRowAt(const QPoint& place) const {
  const QModelIndex index = indexAt(place);
  if (!index.isValid()) return rows_.rowCount();
  return place.y() < visualRect(index).center().y() ? index.row() : index.row() + 1;
}

void QueueView::ShowDropLine(std::optional<int> row) {
  if (drop_line_ == row) return;
  drop_line_ = row;
  viewport()->update();
}

void QueueView::DragTo(QDropEvent& event) {
  if (qobject_cast<const QueueDrag*>(event.mimeData()) == nullptr) {
    event.ignore();
    emit DragsOver(&event);
    return ShowDropLine(event.isAccepted() ? std::optional(rows_.rowCount()) : std::nullopt);
  }
  const bool accepts = rows_.CanDrop(*event.mimeData());
  event.setDropAction(Qt::MoveAction);
  event.setAccepted(accepts);
  ShowDropLine(accepts ? std::optional(DropRowAt(event.position().toPoint())) : std::nullopt);
}

void QueueView::dragEnterEvent(QDragEnterEvent* event) { DragTo(*event); }

void QueueView::dragMoveEvent(QDragMoveEvent* event) {
  // Scrolls near the edges.
  QTableView::dragMoveEvent(event);
  DragTo(*event);
}

void QueueView::dragLeaveEvent(QDragLeaveEvent* event) {
  QTableView::dragLeaveEvent(event);
  ShowDropLine(std::nullopt);
}

void QueueView::dropEvent(QDropEvent* event) {
  DragTo(*event);
  const bool is_own = qobject_cast<const QueueDrag*>(event->mimeData()) != nullptr;
  // QTableView would drop nothing if one of several rows keeps its place.
  if (event->isAccepted() && is_own)
    rows_.Drop(*event->mimeData(), DropRowAt(event->position().toPoint()));
  else if (event->isAccepted())
    emit Dropped(event);
  QDragLeaveEvent left;
  dragLeaveEvent(&left);
}

void QueueView::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (!drop_line_) return;
  const int last = rows_.rowCount() - 1;
  const int y = *drop_line_ <= last ? visualRect(rows_.index(*drop_line_, 0)).top()
                : last >= 0         ? visualRect(rows_.index(last, 0)).bottom() + 1
                                    : 0;
  constexpr int kThickness = 3;
  const int top = std::clamp(y - kThickness / 2, 0, viewport()->height() - kThickness);
  QPainter(viewport())
      .fillRect(0, top, viewport()->width(), kThickness, palette().color(QPalette::Highlight));
}

void QueueView::StoreSelection() {
  selected_.clear();
  for (const int row : SelectedRows())
    if (const std::uint64_t entry = rows_.KnownAt(row); entry != 0) selected_.insert(entry);
  current_ = rows_.KnownAt(currentIndex().row());
  scrolled_ = verticalScrollBar()->value();
}

void QueueView::RestoreSelection() {
  if (!selected_.empty() || current_ != 0) {
    const int first = std::max(0, scrolled_ - kRowsAround);
    const int last = std::min(rows_.rowCount() - 1, scrolled_ + kRowsAround);
    QItemSelection selection;
    QModelIndex current;
    for (int row = first; row <= last; ++row) {
      const std::uint64_t entry = rows_.EntryAt(row);
      const QModelIndex index = rows_.index(row, 0);
      if (entry != 0 && entry == current_) current = index;
      if (selected_.contains(entry)) selection.append(QItemSelectionRange(index));
    }
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    selectionModel()->select(selection, QItemSelectionModel::Select);
  }
  verticalScrollBar()->setValue(scrolled_);
}

}  // namespace tallow
