// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_help.h"

#include <algorithm>

#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include "ui/support/readable_placeholder.h"

namespace tallow {
namespace {

/// Initial size in pixels: width of the text, height of the window.
constexpr QSize kFirstSize(860, 620);

/// Item data in the list of pages: the plain text of the page, used by the search.
constexpr int kTextRole = Qt::UserRole + 1;

QString TextOf(const QString& page) {
  QFile file(QStringLiteral(":/manual/%1.md").arg(page));
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Returns the text of a page without Markdown syntax and link targets.
QString PlainTextOf(const QString& page) {
  QTextDocument document;
  document.setMarkdown(TextOf(page));
  return document.toPlainText();
}

/// Returns the title of a page, which is its first line.
QString TitleOf(const QString& page) {
  return TextOf(page).section(QLatin1Char('\n'), 0, 0).remove(QLatin1Char('#')).trimmed();
}

}  // namespace

QStringList frmHelp::Pages() {
  // The pages are listed in the order of the links in the index page.
  QStringList pages{QStringLiteral("index")};
  const QString index = TextOf(pages.front());
  const QString mark = QStringLiteral(".md)");
  for (qsizetype end = index.indexOf(mark); end >= 0; end = index.indexOf(mark, end + 1)) {
    const qsizetype begin = index.lastIndexOf(QLatin1Char('('), end) + 1;
    const QString page = index.mid(begin, end - begin);
    if (!pages.contains(page)) pages.append(page);
  }
  return pages;
}

frmHelp::frmHelp(QWidget* parent)
    : QWidget(parent, Qt::Window),
      search_(new QLineEdit(this)),
      nothing_found_(new QLabel(this)),
      contents_(new QListWidget(this)),
      text_(new QTextBrowser(this)) {
  setObjectName(QStringLiteral("frmHelp"));
  setWindowTitle(tr("Tallow Help"));
  search_->setObjectName(QStringLiteral("Search"));
  search_->setPlaceholderText(tr("Search all pages"));
  MakePlaceholderReadable(*search_);
  search_->setAccessibleName(tr("Search all pages"));
  search_->setAccessibleDescription(tr("Lists only the pages that contain all the words"));
  search_->setClearButtonEnabled(true);
  contents_->setObjectName(QStringLiteral("Contents"));
  contents_->setAccessibleName(tr("Pages"));
  contents_->setAccessibleDescription(tr("The page that is chosen here is shown on the right"));
  text_->setObjectName(QStringLiteral("Page"));
  text_->setAccessibleName(tr("Page"));
  text_->setAccessibleDescription(tr("Tab goes to its links, Enter follows them"));
  text_->setOpenExternalLinks(true);
  for (const QString& page : Pages()) {
    auto* const item = new QListWidgetItem(TitleOf(page), contents_);
    item->setData(Qt::UserRole, page);
    item->setData(kTextRole, PlainTextOf(page));
  }
  nothing_found_->setObjectName(QStringLiteral("NothingFound"));
  nothing_found_->setText(tr("No page has all these words."));
  nothing_found_->setWordWrap(true);
  nothing_found_->hide();
  SetUpLayout();
  connect(contents_, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
    if (item != nullptr) ShowPage(item->data(Qt::UserRole).toString());
  });
  // Queued, because QTextBrowser emits sourceChanged before source() returns the new page.
  connect(text_, &QTextBrowser::sourceChanged, this, &frmHelp::PageOpened, Qt::QueuedConnection);
  connect(search_, &QLineEdit::textChanged, this, &frmHelp::Search);
  ShowPage({});
}

void frmHelp::SetUpLayout() {
  auto* const back = new QToolButton(this);
  back->setText(tr("&Back"));
  back->setEnabled(false);
  back->setAccessibleDescription(tr("Goes to the previous page"));
  connect(text_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
  connect(back, &QToolButton::clicked, text_, &QTextBrowser::backward);

  auto* const left = new QWidget(this);
  auto* const left_layout = new QVBoxLayout(left);
  left_layout->setContentsMargins(0, 0, 0, 0);
  left_layout->addWidget(search_);
  left_layout->addWidget(nothing_found_);
  left_layout->addWidget(contents_, 1);
  left_layout->addWidget(back);
  auto* const splitter = new QSplitter(this);
  splitter->addWidget(left);
  splitter->addWidget(text_);
  splitter->setStretchFactor(1, 1);
  splitter->setChildrenCollapsible(false);
  // The list of pages is as wide as the longest title.
  const int contents = contents_->sizeHintForColumn(0) + 2 * contents_->frameWidth() +
                       style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  splitter->setSizes({contents, kFirstSize.width()});
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(splitter);
  // Limits the size to 90 % of the screen, because with large fonts the window may be larger than a
  // small screen.
  resize((kFirstSize + QSize(contents, 0)).boundedTo(screen()->availableSize() * 9 / 10));
}

void frmHelp::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
  // While a search is active, Esc clears the search; otherwise Esc closes the window.
  if (search_->hasFocus() && !search_->text().isEmpty())
    search_->clear();
  else
    close();
}

void frmHelp::ShowPage(const QString& page) {
  const QString shown = Pages().contains(page) ? page : Pages().front();
  if (Page() != shown) text_->setSource(QUrl(QStringLiteral("qrc:/manual/%1.md").arg(shown)));
  MarkWords();
}

QString frmHelp::Page() const { return text_->source().fileName().section(QLatin1Char('.'), 0, 0); }

void frmHelp::PageOpened() {
  // Selects the page in the list, for a page that was opened by a link.
  for (int row = 0; row < contents_->count(); ++row)
    if (contents_->item(row)->data(Qt::UserRole).toString() == Page())
      contents_->setCurrentRow(row);
  MarkWords();
}

void frmHelp::Search(const QString& words) {
  const QStringList wanted = words.split(QLatin1Char(' '), Qt::SkipEmptyParts);
  QListWidgetItem* first = nullptr;
  for (int row = 0; row < contents_->count(); ++row) {
    QListWidgetItem* const item = contents_->item(row);
    const QString text = item->data(kTextRole).toString();
    const bool has_all = std::all_of(wanted.begin(), wanted.end(), [&](const QString& word) {
      return text.contains(word, Qt::CaseInsensitive);
    });
    item->setHidden(!has_all);
    if (has_all && first == nullptr) first = item;
  }
  nothing_found_->setVisible(first == nullptr);
  const QListWidgetItem* const current = contents_->currentItem();
  if (first != nullptr && (current == nullptr || current->isHidden()))
    contents_->setCurrentItem(first);
  MarkWords();
}

void frmHelp::MarkWords() {
  QList<QTextEdit::ExtraSelection> marks;
  for (const QString& word : search_->text().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    QTextCursor place(text_->document());
    for (place = text_->document()->find(word, place); !place.isNull();
         place = text_->document()->find(word, place)) {
      QTextEdit::ExtraSelection mark;
      mark.cursor = place;
      mark.format.setBackground(palette().color(QPalette::Highlight));
      mark.format.setForeground(palette().color(QPalette::HighlightedText));
      marks.append(mark);
    }
  }
  text_->setExtraSelections(marks);
}

}  // namespace tallow
