// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_searching.h"

#include <utility>

#include <QCloseEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "ui/support/display_text.h"

namespace tallow {
namespace {

/// Minimum interval between two repaints of the lines, in ms.
constexpr qint64 kShowEvery = 40;

constexpr int kMargin = 24;

/// Width of the folder line, in average characters; a longer path is elided in the middle.
constexpr int kStatusCharacters = 60;

}  // namespace

frmSearching::frmSearching(std::function<void()> cancel, const QString& text, QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                          Qt::WindowStaysOnTopHint),
      cancel_(std::move(cancel)),
      label_(new QLabel(text, this)),
      status_label_(new QLabel(this)),
      found_label_(new QLabel(this)),
      cancel_button_(new QPushButton(tr("Cancel"), this)) {
  setObjectName(QStringLiteral("frmSearching"));
  setWindowTitle(tr("Tallow"));
  label_->setObjectName(QStringLiteral("Label1"));
  status_label_->setObjectName(QStringLiteral("lStatus"));
  found_label_->setObjectName(QStringLiteral("lNoOfMP3Found"));
  for (QLabel* const label : {label_, status_label_, found_label_})
    label->setTextFormat(Qt::PlainText);
  status_label_->setFixedWidth(kStatusCharacters * fontMetrics().averageCharWidth());
  cancel_button_->setObjectName(QStringLiteral("cmdCancel"));
  cancel_button_->setAccessibleDescription(tr("Stops after the folder that is being searched"));
  connect(cancel_button_, &QPushButton::clicked, this, &frmSearching::Cancel);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->addWidget(label_);
  layout->addWidget(status_label_);
  layout->addWidget(found_label_);
  layout->addWidget(cancel_button_, 0, Qt::AlignRight);
}

void frmSearching::Load() {
  adjustSize();
  const QRect screen = QGuiApplication::primaryScreen()->geometry();
  move(screen.x() + (screen.width() - width()) / 2, screen.y() + (screen.height() - height()) / 2);
}

void frmSearching::Redraw() {
  // User input is excluded, because the frame window is not disabled yet.
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  repaint();
  since_shown_.start();
}

void frmSearching::SetStatus(std::string_view text) { status_ = text; }

void frmSearching::SetFound(std::string_view text) { found_ = text; }

void frmSearching::Repaint() {
  if (since_shown_.isValid() && !since_shown_.hasExpired(kShowEvery)) return;
  since_shown_.start();
  status_label_->setText(status_label_->fontMetrics().elidedText(
      DisplayText(status_), Qt::ElideMiddle, status_label_->width()));
  found_label_->setText(DisplayText(found_));
  repaint();
}

void frmSearching::ProcessEvents() {
  if (since_events_.isValid() && !since_events_.hasExpired(kShowEvery)) return;
  since_events_.start();
  Repaint();
  QCoreApplication::processEvents();
}

void frmSearching::Yield() { ProcessEvents(); }

void frmSearching::YieldAfterSong() { ProcessEvents(); }

void frmSearching::VisitFolder(std::string_view folder) {
  if (!folder.empty()) SetStatus(folder);
  ProcessEvents();
}

void frmSearching::Cancel() {
  if (!cancel_button_->isEnabled()) return;
  cancel_button_->setEnabled(false);
  cancel_button_->setText(tr("Stopping . . ."));
  if (cancel_) cancel_();
}

void frmSearching::MayCancelAgain() {
  cancel_button_->setText(tr("Cancel"));
  cancel_button_->setEnabled(true);
}

void frmSearching::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape)
    Cancel();
  else
    QWidget::keyPressEvent(event);
}

void frmSearching::closeEvent(QCloseEvent* event) {
  // Closing the window only requests cancellation; the search hides the window when it has stopped.
  if (!event->spontaneous()) return QWidget::closeEvent(event);
  Cancel();
  event->ignore();
}

}  // namespace tallow
