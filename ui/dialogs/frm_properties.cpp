// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_properties.h"

#include <algorithm>
#include <utility>

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "ui/support/display_text.h"
#include "ui/support/help_page.h"
#include "ui/support/muted_highlight.h"

namespace tallow {
namespace {

/// Width of the lists, in average characters, and heights, in lines.
constexpr int kListCharacters = 84;
constexpr int kFolderLines = 5;
constexpr int kMinPropertyLines = 8;
/// Additional lines of the list of properties at first, for values that are wrapped.
constexpr int kWrappedLines = 2;

/// Height of a list that shows this many rows of one line, in pixels.
int HeightOf(const QTreeWidget& list, int rows) {
  // The texts of the first column are not wrapped.
  const int row = list.topLevelItemCount() > 0
                      ? list.sizeHintForIndex(list.model()->index(0, 0)).height()
                      : list.fontMetrics().lineSpacing();
  const int header = list.isHeaderHidden() ? 0 : list.header()->sizeHint().height();
  return rows * row + header + 2 * list.frameWidth();
}

/// The room that a screen has for a dialog within the frame of its window, in pixels.
QSize RoomFor(const QWidget& dialog) {
  QSize frame(0, dialog.style()->pixelMetric(QStyle::PM_TitleBarHeight));
  // The dialog has a frame only when it is shown.
  if (const QWidget* const parent = dialog.parentWidget(); parent != nullptr)
    frame = frame.expandedTo(parent->window()->frameGeometry().size() - parent->window()->size());
  return dialog.screen()->availableSize() - frame;
}

/// Draws the cells with some space above and below the text, and breaks a long path at its
/// separators. The editor only lets the user select and copy.
class ValueDelegate : public QStyledItemDelegate {
 public:
  explicit ValueDelegate(QTreeWidget& list) : QStyledItemDelegate(&list), list_(list) {}

  QString displayText(const QVariant& value, const QLocale& /*locale*/) const override {
    QString text = value.toString();
    for (const char separator : {'/', '\\'})
      text.replace(QLatin1Char(separator), QLatin1Char(separator) + QString(kMayBreak));
    return text;
  }
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem limited = option;
    // The first column is as wide as its texts.
    limited.rect = index.column() == 0 ? QRect() : QRect(0, 0, list_.columnWidth(1), 1);
    return QStyledItemDelegate::sizeHint(limited, index) +
           QSize(0, option.fontMetrics.height() / kSpacesPerLine);
  }
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                        const QModelIndex& index) const override {
    if (index.column() == 0) return nullptr;
    auto* const field = new QLineEdit(parent);
    field->setReadOnly(true);
    field->setAccessibleName(index.siblingAtColumn(0).data().toString());
    return field;
  }
  void setModelData(QWidget* /*editor*/, QAbstractItemModel* /*model*/,
                    const QModelIndex& /*index*/) const override {}

 private:
  /// Zero-width space: a line may break here.
  static constexpr QChar kMayBreak{0x200B};
  /// Height of a line in heights of the space around it.
  static constexpr int kSpacesPerLine = 3;

  QTreeWidget& list_;
};

/// A list whose selection is grey while the keyboard is elsewhere.
class FocusedList : public QTreeWidget {
 public:
  explicit FocusedList(QWidget* parent) : QTreeWidget(parent) { ShowFocus(); }

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QTreeWidget::focusInEvent(event);
    ShowFocus();
  }
  void focusOutEvent(QFocusEvent* event) override {
    QTreeWidget::focusOutEvent(event);
    ShowFocus();
  }

 private:
  void ShowFocus() {
    // Colours that are not set here are those of the parent.
    QPalette colors;
    if (!hasFocus()) {
      const QPalette usual = parentWidget()->palette();
      for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        colors.setColor(group, QPalette::Highlight, MutedHighlight(usual));
        colors.setColor(group, QPalette::HighlightedText,
                        usual.color(QPalette::Active, QPalette::HighlightedText));
      }
    }
    setPalette(colors);
  }
};

QTreeWidget* MakeTwoColumns(QWidget* parent, const char* name) {
  auto* const list = new FocusedList(parent);
  list->setObjectName(QLatin1String(name));
  list->setColumnCount(2);
  list->setRootIsDecorated(false);
  list->setWordWrap(true);
  list->setItemDelegate(new ValueDelegate(*list));
  // The heights of the rows depend on the width of the second column. Queued, because the view
  // keeps heights that it computes while a section is resized.
  QObject::connect(list->header(), &QHeaderView::sectionResized, list, &QTreeView::doItemsLayout,
                   Qt::QueuedConnection);
  list->setMinimumWidth(kListCharacters * list->fontMetrics().averageCharWidth());
  return list;
}

QTreeWidgetItem* AddRow(QTreeWidget& list, const QString& first, const QString& second) {
  auto* const row = new QTreeWidgetItem(&list, {first, second});
  row->setToolTip(1, second);
  return row;
}

}  // namespace

frmProperties::frmProperties(PropertiesContext context, QWidget* parent)
    : QDialog(parent), context_(std::move(context)), list_(MakeList()) {
  setObjectName(QStringLiteral("frmProperties"));
  setWindowTitle(context_.title);
  setProperty(kHelpPage, QStringLiteral("jukebox"));
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(list_, 1);
  if (context_.show_file) {
    QTreeWidget* const folders = MakeFolders();
    auto* const label = new QLabel(tr("In these &folders of the open jukeboxes:"), this);
    label->setBuddy(folders);
    layout->addWidget(label);
    layout->addWidget(folders);
  }
  auto* const buttons = new QHBoxLayout;
  if (context_.show_file) {
    auto* const show = new QPushButton(tr("&Show In File Manager"), this);
    show->setObjectName(QStringLiteral("cmdShowFile"));
    show->setAutoDefault(false);
    show->setAccessibleDescription(tr("Shows the file of the song in its folder"));
    connect(show, &QPushButton::clicked, this, [this] { context_.show_file(); });
    buttons->addWidget(show);
  }
  buttons->addStretch(1);
  auto* const close = new QPushButton(tr("&Close"), this);
  close->setObjectName(QStringLiteral("cmdClose"));
  close->setDefault(true);
  close->setAccessibleDescription(tr("Closes the properties"));
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  buttons->addWidget(close);
  layout->addLayout(buttons);
  list_->setFocus();
  FitTheScreen();
}

void frmProperties::FitTheScreen() {
  const QSize room = RoomFor(*this);
  const int list_height = list_->sizeHint().expandedTo(list_->minimumSize()).height();
  const int others = sizeHint().height() - list_height;
  list_->setMinimumHeight(std::max(
      HeightOf(*list_, 1), std::min(HeightOf(*list_, kMinPropertyLines), room.height() - others)));
  const int rows = static_cast<int>(context_.properties.size()) + kWrappedLines;
  resize(QSize(sizeHint().width(), others + HeightOf(*list_, rows)).boundedTo(room));
}

QTreeWidget* frmProperties::MakeList() {
  QTreeWidget* const list = MakeTwoColumns(this, "lstProperties");
  list->setAccessibleName(tr("Properties"));
  list->setAccessibleDescription(
      tr("Ctrl+C copies a value. F2 or a double click lets you select a part of it."));
  list->header()->hide();
  for (const SongProperty& property : context_.properties)
    AddRow(*list, DisplayText(property.name), DisplayText(property.value))
        ->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable);
  list->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
  list->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  list->setCurrentItem(list->topLevelItem(0));
  // Without this, the list copies its first column.
  auto* const copy = new QShortcut(QKeySequence(QKeySequence::Copy), list);
  copy->setContext(Qt::WidgetShortcut);
  connect(copy, &QShortcut::activated, this, &frmProperties::CopyValue);
  return list;
}

QTreeWidget* frmProperties::MakeFolders() {
  QTreeWidget* const folders = MakeTwoColumns(this, "lstFolders");
  folders->setAccessibleName(tr("Folders that hold the song"));
  folders->setAccessibleDescription(tr("Enter shows the song in the folder"));
  folders->setEditTriggers(QAbstractItemView::NoEditTriggers);
  folders->setHeaderLabels({tr("Jukebox"), tr("Folder")});
  for (const FolderOfProperties& folder : context_.folders)
    AddRow(*folders, folder.jukebox, folder.folder);
  folders->setFixedHeight(HeightOf(*folders, kFolderLines));
  folders->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  folders->setColumnHidden(0, !context_.names_jukeboxes);
  // In a column that is hidden, the selection does not follow the keyboard.
  const int column = context_.names_jukeboxes ? 0 : 1;
  if (folders->topLevelItemCount() > 0) folders->setCurrentItem(folders->topLevelItem(0), column);
  // Enter emits itemActivated, and so does a double click or, on some desktops, a click.
  connect(folders, &QTreeWidget::itemActivated, this,
          [this, folders](QTreeWidgetItem* item) { Open(folders->indexOfTopLevelItem(item)); });
  return folders;
}

void frmProperties::Open(int folder) {
  if (folder < 0) return;
  accept();
  context_.folders[static_cast<std::size_t>(folder)].show();
}

void frmProperties::CopyValue() const {
  if (const QTreeWidgetItem* const item = list_->currentItem())
    QGuiApplication::clipboard()->setText(item->text(1));
}

}  // namespace tallow
