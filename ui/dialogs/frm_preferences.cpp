// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_preferences.h"

#include <algorithm>

#include <QCoreApplication>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>

#include "ui/dialogs/command_page.h"
#include "ui/dialogs/player_page.h"
#include "ui/dialogs/style_page.h"
#include "ui/support/help_page.h"

namespace tallow {
namespace {

/// Width of a page, in average characters. A small screen gets a smaller dialog.
constexpr int kPageCharacters = 80;
/// The dialog is at most this high at first, in lines of text; longer pages are scrolled.
constexpr int kMaxLines = 40;

QString Tr(const char* text) { return QCoreApplication::translate("frmPreferences", text); }

QWidget* MakeMusicPage(const PreferencesContext& context, QDialog& /*dialog*/) {
  return new CommandPage(Tr("Tallow searches the fixed disks of this computer for songs, or the "
                            "drives and folders that "
                            "you choose."),
                         "cmdWhere", Tr("&Where My Music Is..."), context.show_places, nullptr);
}

QWidget* MakeFilingPage(const PreferencesContext& context, QDialog& dialog) {
  // The progress of filing is shown in the frame window, which is disabled while a dialog is open.
  const auto command = [&dialog, file_again = context.file_again] {
    dialog.accept();
    file_again();
  };
  return new CommandPage(
      Tr("Songs stay in the automatic folders in which they were filed. When tags were changed by "
         "another program, file the songs again: those that are selected, those of the selected "
         "folder, or all."),
      "cmdFileAgain", Tr("File A&gain By Tags"), command, nullptr);
}

constexpr PreferencesPage kPages[] = {
    {"pageStyle", QT_TRANSLATE_NOOP("frmPreferences", "Style"), "styles",
     [](const PreferencesContext& context, QDialog& /*dialog*/) -> QWidget* {
       return new StylePage(context);
     }},
    {"pageMusic", QT_TRANSLATE_NOOP("frmPreferences", "Music"), "music-places", MakeMusicPage},
    {"pageFiling", QT_TRANSLATE_NOOP("frmPreferences", "Filing"), "styles", MakeFilingPage},
    {"pagePlayer", QT_TRANSLATE_NOOP("frmPreferences", "Player"), "player",
     [](const PreferencesContext& context, QDialog& /*dialog*/) -> QWidget* {
       return new PlayerPage(context);
     }},
};

/// A page that can be scrolled up and down. It scrolls to the control that gets the focus by any
/// key, not only by Tab.
class PageArea : public QScrollArea {
 public:
  PageArea(QWidget* page, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setWidget(page);
    setMinimumWidth(page->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width());
    for (QWidget* const control : page->findChildren<QWidget*>())
      if (control->focusPolicy() != Qt::NoFocus) control->installEventFilter(this);
  }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::FocusIn && watched != widget())
      ensureWidgetVisible(static_cast<QWidget*>(watched), 0, 3 * fontMetrics().lineSpacing());
    return QScrollArea::eventFilter(watched, event);
  }
};

}  // namespace

frmPreferences::frmPreferences(const PreferencesContext& context, QWidget* parent)
    : QDialog(parent), list_(new QListWidget(this)), pages_(new QStackedWidget(this)) {
  setObjectName(QStringLiteral("frmPreferences"));
  setWindowTitle(tr("Preferences"));
  setProperty(kHelpPage, QStringLiteral("styles"));
  list_->setObjectName(QStringLiteral("lstPages"));
  list_->setAccessibleName(tr("Pages"));
  list_->setAccessibleDescription(tr("Chooses the page of preferences that is shown"));
  auto* const label = new QLabel(tr("&Pages:"), this);
  label->setBuddy(list_);
  for (const PreferencesPage& page : kPages) AddPage(page, context);
  // Made after the pages, so that Tab reaches it after them.
  auto* const close = new QPushButton(tr("&Close"), this);
  close->setObjectName(QStringLiteral("cmdClose"));
  close->setDefault(true);
  close->setAccessibleDescription(tr("Closes the dialog; all changes are stored already"));
  auto* const layout = new QGridLayout(this);
  layout->addWidget(label, 0, 0);
  layout->addWidget(list_, 1, 0);
  layout->addWidget(pages_, 0, 1, 2, 1);
  layout->addWidget(close, 2, 1, Qt::AlignRight);
  layout->setColumnStretch(1, 1);
  // As wide as its longest entry, with room for a few characters.
  list_->setFixedWidth(list_->sizeHintForColumn(0) + 6 * fontMetrics().averageCharWidth() +
                       2 * list_->frameWidth());
  connect(list_, &QListWidget::currentRowChanged, pages_, &QStackedWidget::setCurrentIndex);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  list_->setCurrentRow(0);
  const QMargins margins = layout->contentsMargins();
  const int width = kPageCharacters * fontMetrics().averageCharWidth();
  const QSize around(
      list_->width() + layout->horizontalSpacing() + margins.left() + margins.right(),
      close->sizeHint().height() + layout->verticalSpacing() + margins.top() + margins.bottom());
  // The window's frame needs some of the screen, too.
  const int height = std::min(HeightOfPages(width), kMaxLines * fontMetrics().lineSpacing());
  resize((QSize(width, height) + around).boundedTo(screen()->availableSize() * 0.9));
}

int frmPreferences::HeightOfPages(int width) const {
  int height = 0;
  for (const auto* const area : pages_->findChildren<const QScrollArea*>())
    height = std::max(
        {height, area->widget()->heightForWidth(width), area->widget()->sizeHint().height()});
  return height;
}

void frmPreferences::AddPage(const PreferencesPage& page, const PreferencesContext& context) {
  QWidget* const made = page.make(context, *this);
  made->setObjectName(QLatin1String(page.name));
  auto* const area = new PageArea(made, pages_);
  area->setProperty(kHelpPage, QLatin1String(page.help));
  pages_->addWidget(area);
  list_->addItem(tr(page.caption));
}

}  // namespace tallow
