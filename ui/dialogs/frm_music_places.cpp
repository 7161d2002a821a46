// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_music_places.h"

#include <algorithm>
#include <utility>

#include <QDir>
#include <QDragEnterEvent>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/search/place_states.h"
#include "app/tallow.h"
#include "library/drive_timeouts.h"
#include "library/scan_report.h"
#include "ui/dialogs/common_dialog.h"
#include "ui/jukebox/explorer/explorer_edits.h"  // IWYU pragma: keep, for QPointer
#include "ui/jukebox/explorer_drag.h"
#include "ui/support/display_text.h"
#include "ui/support/help_page.h"
#include "ui/support/qt_path.h"

namespace tallow {
namespace {

/// Size of the list, in average characters and in lines. A small screen gets a smaller dialog.
constexpr int kListCharacters = 96;
constexpr int kListLines = 12;

/// How often the list follows searches and answers of drives, in ms.
constexpr int kRefreshInterval = 500;

enum Column { kPlace, kKind, kSongs, kState };

/// Draws the ticks of places that cannot be changed as disabled ones, and their texts as ever.
class FixedTicks : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyledItemDelegate::paint(painter, option, index);
    QStyleOptionViewItem tick(option);
    initStyleOption(&tick, index);
    const QStyle& style = *tick.widget->style();
    tick.rect = style.subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &tick, tick.widget);
    const bool is_selected = tick.state.testFlag(QStyle::State_Selected);
    const bool is_active = tick.state.testFlag(QStyle::State_Active);
    painter->fillRect(tick.rect,
                      tick.palette.color(is_active ? QPalette::Active : QPalette::Inactive,
                                         is_selected ? QPalette::Highlight : QPalette::Base));
    tick.state.setFlag(QStyle::State_Enabled, false);
    tick.state.setFlag(QStyle::State_HasFocus, false);
    tick.state |= tick.checkState == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
    tick.palette.setCurrentColorGroup(QPalette::Disabled);
    style.drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &tick, painter, tick.widget);
  }
};

}  // namespace

frmMusicPlaces::frmMusicPlaces(MusicPlacesContext context, QWidget* parent)
    : QDialog(parent),
      context_(std::move(context)),
      list_(new QTreeWidget(this)),
      message_(new QLabel(this)),
      add_(AddButton("cmdAddFolder", tr("&Add Folder..."), tr("Adds a folder to the places"))),
      remove_(AddButton("cmdRemove", tr("&Remove"),
                        tr("Removes the selected folder from the places; its songs stay"))),
      search_(AddButton("cmdSearchNow", tr("&Search Now"), tr("Searches the ticked places"))),
      close_(AddButton("cmdClose", tr("&Close"),
                       tr("Closes the dialog; all changes are stored already"))) {
  setObjectName(QStringLiteral("frmMusicPlaces"));
  setWindowTitle(tr("Where My Music Is"));
  setProperty(kHelpPage, QStringLiteral("music-places"));
  setAcceptDrops(!context_.tallow.has_given_drives);
  if (context_.states == nullptr) context_.states = std::make_shared<PlaceStates>(kMaxWait);
  if (!context_.ask_for_folder)
    context_.ask_for_folder = [this] { return AskForFolder(this, PathOfQt(QDir::homePath())); };
  SetUpList();
  SetUpLayout();
  ReadDrives();
  FitColumns();
  if (list_->topLevelItemCount() > 0) list_->setCurrentItem(list_->topLevelItem(0));
  EnableButtons();
  startTimer(kRefreshInterval);
}

frmMusicPlaces::~frmMusicPlaces() = default;

QPushButton* frmMusicPlaces::AddButton(const char* name, const QString& caption,
                                       const QString& description) {
  auto* const button = new QPushButton(caption, this);
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  button->setAccessibleDescription(description);
  return button;
}

void frmMusicPlaces::SetUpList() {
  list_->setObjectName(QStringLiteral("lstPlaces"));
  list_->setAccessibleName(tr("Places with music"));
  list_->setAccessibleDescription(tr("The space key ticks or unticks a place"));
  list_->setHeaderLabels({tr("Place"), tr("Kind"), tr("Songs"), tr("State")});
  list_->headerItem()->setTextAlignment(kSongs, Qt::AlignRight | Qt::AlignVCenter);
  list_->header()->setSectionsMovable(false);
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setTextElideMode(Qt::ElideMiddle);
  if (context_.tallow.has_given_drives)
    list_->setItemDelegateForColumn(kPlace, new FixedTicks(list_));
  // Tab leaves the list, so that the dialog can be used by keyboard alone.
  list_->setTabKeyNavigation(false);
  connect(list_, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item) { Tick(*item); });
  connect(list_, &QTreeWidget::currentItemChanged, this, &frmMusicPlaces::EnableButtons);
  connect(add_, &QPushButton::clicked, this, &frmMusicPlaces::AddFolder);
  connect(remove_, &QPushButton::clicked, this, &frmMusicPlaces::Remove);
  connect(search_, &QPushButton::clicked, this, &frmMusicPlaces::SearchNow);
  connect(close_, &QPushButton::clicked, this, &QDialog::accept);
}

void frmMusicPlaces::SetUpLayout() {
  close_->setDefault(true);
  auto* const intro = new QLabel(
      context_.tallow.has_given_drives
          ? tr("This run searches only the &places that were given by --drive. To choose others, "
               "start Tallow without this option.")
          : tr("The ticked &places are searched by the first start and by \"Search my whole "
               "computer\". Songs that were found stay, also when you untick their place."),
      this);
  intro->setWordWrap(true);
  intro->setBuddy(list_);
  message_->setObjectName(QStringLiteral("lblMessage"));
  message_->setWordWrap(true);
  message_->setTextFormat(Qt::PlainText);
  message_->hide();
  auto* const buttons = new QVBoxLayout;
  for (QPushButton* const button : {add_, remove_, search_}) buttons->addWidget(button);
  buttons->addStretch(1);
  buttons->addWidget(close_);
  auto* const layout = new QGridLayout(this);
  layout->addWidget(intro, 0, 0, 1, 2);
  layout->addWidget(list_, 1, 0);
  layout->addLayout(buttons, 1, 1);
  layout->addWidget(message_, 2, 0, 1, 2);
  layout->setColumnStretch(0, 1);
  layout->setRowStretch(1, 1);
  const QSize list(kListCharacters * fontMetrics().averageCharWidth(),
                   kListLines * fontMetrics().lineSpacing());
  // The window's frame needs some of the screen, too.
  resize((sizeHint().expandedTo(list + QSize(add_->sizeHint().width(), 0)))
             .boundedTo(screen()->availableSize() * 0.9));
}

void frmMusicPlaces::FitColumns() {
  const int character = fontMetrics().averageCharWidth();
  list_->header()->setStretchLastSection(false);
  list_->header()->setSectionResizeMode(kPlace, QHeaderView::Stretch);
  for (const Column column : {kKind, kSongs, kState}) {
    list_->resizeColumnToContents(column);
    list_->header()->resizeSection(column, list_->header()->sectionSize(column) + 2 * character);
  }
  // The longest state that needs no name of another place.
  const int state = fontMetrics().horizontalAdvance(tr("Not searched yet")) + 4 * character;
  list_->header()->resizeSection(kState, std::max(state, list_->header()->sectionSize(kState)));
}

void frmMusicPlaces::ReadDrives() {
  drives_ = context_.read_drives();
  context_.states->Clear();
  Refresh();
}

void frmMusicPlaces::Refresh() {
  const auto is_there = [this](const std::string& root) { return context_.states->IsThere(root); };
  std::vector<PlaceLine> lines = PlaceLines(context_.tallow, *drives_, is_there);
  std::vector<std::string> asked;
  for (const PlaceLine& line : lines)
    if (line.place.is_ticked && line.place.kind != PlaceKind::kAway)
      asked.push_back(line.place.root);
  context_.states->Ask(asked);
  const QSignalBlocker blocker(list_);
  const int rows = static_cast<int>(lines.size());
  while (list_->topLevelItemCount() > rows) delete list_->topLevelItem(rows);
  while (list_->topLevelItemCount() < rows) new QTreeWidgetItem(list_);
  for (int row = 0; row < rows; ++row)
    Show(*list_->topLevelItem(row), lines[static_cast<std::size_t>(row)]);
  lines_ = std::move(lines);
  EnableButtons();
}

void frmMusicPlaces::Show(QTreeWidgetItem& item, const PlaceLine& line) const {
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (!context_.tallow.has_given_drives) flags |= Qt::ItemIsUserCheckable;
  item.setFlags(flags);
  const QString texts[] = {DisplayText(line.place.root), DisplayText(line.kind),
                           DisplayText(line.songs), DisplayText(line.state)};
  // Setting a text repaints the row, even an equal one.
  for (const Column column : {kPlace, kKind, kSongs, kState})
    if (item.text(column) != texts[column]) item.setText(column, texts[column]);
  item.setTextAlignment(kSongs, Qt::AlignRight | Qt::AlignVCenter);
  item.setToolTip(kPlace, texts[kPlace]);
  item.setToolTip(kState, texts[kState]);
  item.setCheckState(kPlace, line.place.is_ticked ? Qt::Checked : Qt::Unchecked);
}

const MusicPlace* frmMusicPlaces::Current() const {
  const int row = list_->indexOfTopLevelItem(list_->currentItem());
  if (row < 0 || row >= static_cast<int>(lines_.size())) return nullptr;
  return &lines_[static_cast<std::size_t>(row)].place;
}

void frmMusicPlaces::EnableButtons() {
  const MusicPlace* const current = Current();
  const bool may_change = !context_.tallow.has_given_drives && !is_searching_;
  list_->setEnabled(!is_searching_);
  add_->setEnabled(may_change);
  remove_->setEnabled(may_change && current != nullptr && current->kind == PlaceKind::kFolder);
  search_->setEnabled(!is_searching_);
  close_->setEnabled(!is_searching_);
}

void frmMusicPlaces::Tick(QTreeWidgetItem& item) {
  const auto row = static_cast<std::size_t>(list_->indexOfTopLevelItem(&item));
  if (row >= lines_.size()) return;
  const bool is_ticked = item.checkState(kPlace) == Qt::Checked;
  if (is_ticked == lines_[row].place.is_ticked) return;
  TickPlace(context_.tallow, MusicPlace(lines_[row].place), is_ticked);
  ShowMessage({});
  // The list may lose the item of a drive that is away, which must not happen during its signal.
  QMetaObject::invokeMethod(
      this, [this] { Refresh(); }, Qt::QueuedConnection);
  context_.changed();
}

void frmMusicPlaces::AddFolder() {
  if (const std::optional<std::string> folder = context_.ask_for_folder()) Add({*folder});
}

std::vector<std::string> frmMusicPlaces::AddToPlaces(const std::vector<std::string>& paths) {
  // Shows a progress window if a disk does not answer, and lets the user cancel.
  const std::unique_ptr<LongWork> work =
      context_.begin_work ? context_.begin_work(kAddingFolder) : nullptr;
  QPointer<QWidget> focus;
  std::vector<std::string> messages;
  for (const std::string& path : paths) {
    const auto go_on = [&] {
      if (!std::exchange(is_searching_, true)) {
        focus = focusWidget();
        EnableButtons();
      }
      return work == nullptr || work->GoOn([&] { return WaitingLine(path); });
    };
    if (std::string message = AddMusicFolder(context_.tallow, drives_, path, go_on);
        !message.empty())
      messages.push_back(std::move(message));
  }
  if (std::exchange(is_searching_, false)) {
    EnableButtons();
    if (focus != nullptr) focus->setFocus();
  }
  return messages;
}

void frmMusicPlaces::Add(const std::vector<std::string>& paths) {
  const std::vector<std::string> messages = AddToPlaces(paths);
  Refresh();
  // A new folder is the last place.
  if (messages.size() < paths.size())
    list_->setCurrentItem(list_->topLevelItem(list_->topLevelItemCount() - 1));
  ShowMessage(messages);
  context_.changed();
}

void frmMusicPlaces::Remove() {
  const MusicPlace* const current = Current();
  if (current == nullptr || current->kind != PlaceKind::kFolder) return;
  RemoveMusicFolder(context_.tallow, std::string(current->root));
  Refresh();
  ShowMessage({});
  // A disabled button loses the focus to no useful widget.
  list_->setFocus();
  context_.changed();
}

void frmMusicPlaces::SearchNow() {
  is_searching_ = true;
  ShowMessage({});
  EnableButtons();
  context_.search();
  is_searching_ = false;
  ReadDrives();
  search_->setFocus();
}

void frmMusicPlaces::ShowMessage(const std::vector<std::string>& lines) {
  message_->setText(DisplayMessages(lines).join(QLatin1Char('\n')));
  message_->setVisible(!lines.empty());
}

void frmMusicPlaces::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  // Drives may have been connected or removed while another window was active.
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && !is_searching_) ReadDrives();
}

void frmMusicPlaces::dragEnterEvent(QDragEnterEvent* event) {
  event->setDropAction(Qt::CopyAction);
  event->setAccepted(!is_searching_ && !DraggedFiles(*event->mimeData()).empty());
}

void frmMusicPlaces::dropEvent(QDropEvent* event) {
  if (is_searching_) return event->ignore();
  event->setDropAction(Qt::CopyAction);
  event->accept();
  Add(DraggedFiles(*event->mimeData()));
}

void frmMusicPlaces::timerEvent(QTimerEvent* /*event*/) { Refresh(); }

}  // namespace tallow
