// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_find.h"

#include <algorithm>
#include <utility>

#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>

#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/support/help_page.h"

namespace tallow {
namespace {

/// Minimum width of the search text box, in average characters.
constexpr int kTextCharacters = 36;

bool IsFindKey(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter || event.key() == Qt::Key_F3;
}

}  // namespace

frmFind::frmFind(std::function<frmMain*()> active, const clsMain& library, ShowMessage show,
                 QWidget* parent)
    : QDialog(parent),
      active_(std::move(active)),
      library_(library),
      show_(std::move(show)),
      text_(new QLineEdit(this)) {
  setObjectName(QStringLiteral("frmFind"));
  setWindowTitle(tr("Find"));
  text_->setObjectName(QStringLiteral("Text1"));
  text_->setAccessibleName(tr("Part of the file name"));
  text_->setAccessibleDescription(tr("Not case-sensitive"));
  text_->setMinimumWidth(kTextCharacters * fontMetrics().averageCharWidth());
  auto* const label = new QLabel(tr("&Song:"), this);
  label->setBuddy(text_);
  auto* const find = new QPushButton(tr("&Find"), this);
  find->setObjectName(QStringLiteral("Command1"));
  find->setAutoDefault(true);
  find->setDefault(true);
  find->setAccessibleDescription(tr("Goes to the next song whose file name holds the text"));
  auto* const close = new QPushButton(tr("&Close"), this);
  close->setObjectName(QStringLiteral("Command3"));
  close->setAutoDefault(false);
  close->setAccessibleDescription(tr("Closes the dialog and leaves the song selected"));
  auto* const layout = new QGridLayout(this);
  layout->addWidget(label, 0, 0);
  layout->addWidget(text_, 0, 1);
  layout->addWidget(find, 0, 2);
  layout->addWidget(close, 1, 2);
  // On some desktops Enter clicks the button that has the keyboard focus.
  for (QWidget* const control :
       {static_cast<QWidget*>(text_), static_cast<QWidget*>(find), static_cast<QWidget*>(close)})
    control->installEventFilter(this);
  connect(text_, &QLineEdit::textChanged, this, [this] { search_.FirstRun(true); });
  connect(find, &QPushButton::clicked, this, &frmFind::FindNext);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  setProperty(kHelpPage, QStringLiteral("find"));
}

void frmFind::Begin() {
  has_found_ = false;
  search_.FirstRun(true);
  text_->selectAll();
  text_->setFocus();
  adjustSize();
  move(QGuiApplication::primaryScreen()->availableGeometry().center() - rect().center());
}

bool frmFind::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !IsFindKey(*static_cast<QKeyEvent*>(event)))
    return QDialog::eventFilter(watched, event);
  FindNext();
  return true;
}

void frmFind::keyPressEvent(QKeyEvent* event) {
  if (IsFindKey(*event)) return FindNext();
  QDialog::keyPressEvent(event);
}

void frmFind::FindNext() {
  const std::string text = text_->text().toStdString();
  search_.LookFor(text);
  frmMain* const window = active_();
  const Folder* const selected = window != nullptr ? window->Jukebox().selectednode() : nullptr;
  if (selected == nullptr) return;
  for (;;) {
    const SongSearch::Result found =
        search_.FindNext(text, window->Jukebox().Nodes(), *selected, library_);
    if (found.folder == nullptr) break;
    const int row = window->PVExplorer1().SelectSong(*found.folder, found.row);
    search_.FoundAt(row);
    // SelectSong showed the folder, which pruned the song; continue with the next match.
    if (row < 0) continue;
    has_found_ = true;
    MoveAwayFrom(window->PVExplorer1().PlaceOfRow(row));
    return;
  }
  show_({.text = "Can't find '" + text + "'"});
}

void frmFind::MoveAwayFrom(const QRect& row) {
  if (!frameGeometry().intersects(row)) return;
  constexpr int kGap = 8;  // pixels
  const QRect space = screen()->availableGeometry();
  const int below = row.bottom() + kGap;
  const int above = row.top() - kGap - frameGeometry().height();
  move(x(),
       below + frameGeometry().height() <= space.bottom() ? below : std::max(space.top(), above));
}

}  // namespace tallow
