// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_splash.h"

#include <utility>

#include <QColor>
#include <QCoreApplication>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include "ui/support/display_text.h"
#include "ui/support/picture_resource.h"
#include "util/version.h"

namespace tallow {
namespace {

/// Minimum interval between two repaints, in ms. A screen shows about sixty frames per second, so
/// faster changes are not visible.
constexpr qint64 kShownAgainAfter = 16;

/// Numbers of the picture resources.
constexpr int kHeart = 101;
constexpr int kMom = 102;
constexpr int kMan = 103;

constexpr int kMargin = 24;

/// The background colour of the pictures.
constexpr QColor kPaper(0xF6, 0xEF, 0xE2);

QLabel* NewLabel(const char* name, QWidget* parent) {
  auto* const label = new QLabel(parent);
  label->setObjectName(QString::fromLatin1(name));
  label->setTextFormat(Qt::PlainText);
  return label;
}

void Enlarge(QLabel* label, double factor, bool bold) {
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * factor);
  font.setBold(bold);
  label->setFont(font);
}

}  // namespace

frmSplash::frmSplash(std::function<void()> cancel, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      cancel_(std::move(cancel)),
      label_(NewLabel("Label1", this)),
      version_(NewLabel("lblVersion", this)),
      status_label_(NewLabel("lStatus", this)),
      found_label_(NewLabel("lNoOfMP3Found", this)),
      website_(NewLabel("lWebsite", this)),
      copyright_(NewLabel("lCopyright", this)),
      heart_(NewLabel("ImageHeart", this)),
      mom_(NewLabel("ImageMom", this)),
      man_(NewLabel("ImageMan", this)),
      ok_(new QPushButton(tr("OK"), this)),
      cancel_button_(new QPushButton(tr("Cancel Search"), this)) {
  setObjectName(QStringLiteral("frmSplash"));
  setWindowTitle(tr("Tallow"));
  ok_->setObjectName(QStringLiteral("cmdOK"));
  cancel_button_->setObjectName(QStringLiteral("cmdCancel"));
  ok_->setAccessibleDescription(tr("Closes the window"));
  cancel_button_->setAccessibleDescription(
      tr("Stops before the next folder, or goes on without the disk that does not answer"));
  connect(ok_, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel_button_, &QPushButton::clicked, this, [this] {
    if (cancel_) cancel_();
  });
  // Enter must not cancel a search by accident.
  cancel_button_->setAutoDefault(false);

  label_->setText(tr("Tallow"));
  Enlarge(label_, 2.4, true);
  Enlarge(version_, 1.1, false);
  Enlarge(copyright_, 0.85, false);
  Enlarge(website_, 0.85, false);
  copyright_->setWordWrap(true);
  website_->setWordWrap(true);
  status_label_->setMinimumWidth(fontMetrics().averageCharWidth() * 48);
  for (QLabel* const label : {status_label_, found_label_}) {
    // A label keeps its space while it is empty or hidden, so that the layout does not jump.
    QSizePolicy policy = label->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    policy.setHorizontalPolicy(QSizePolicy::Ignored);
    label->setSizePolicy(policy);
    label->setMinimumHeight(fontMetrics().height());
  }
  QSizePolicy button_policy = cancel_button_->sizePolicy();
  button_policy.setRetainSizeWhenHidden(true);
  cancel_button_->setSizePolicy(button_policy);
  SetUpLayout();
}

void frmSplash::SetUpLayout() {
  // The panel behind the pictures has the pictures' background colour, whatever the desktop's
  // colours are.
  auto* const panel = new QFrame(this);
  panel->setAutoFillBackground(true);
  QPalette paper = panel->palette();
  paper.setColor(QPalette::Window, kPaper);
  panel->setPalette(paper);
  auto* const couple = new QHBoxLayout;
  couple->addWidget(mom_);
  couple->addStretch(1);
  couple->addWidget(heart_);
  auto* const pictures = new QVBoxLayout(panel);
  pictures->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  pictures->addWidget(man_);
  pictures->addLayout(couple);

  auto* const buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(cancel_button_);
  buttons->addWidget(ok_);

  auto* const side = new QVBoxLayout;
  side->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  side->addWidget(label_);
  side->addWidget(version_);
  side->addSpacing(kMargin);
  side->addWidget(status_label_);
  side->addWidget(found_label_);
  side->addStretch(1);
  side->addWidget(website_);
  side->addWidget(copyright_);
  side->addSpacing(kMargin / 2);
  side->addLayout(buttons);

  auto* const all = new QHBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->setSpacing(0);
  all->addWidget(panel);
  all->addLayout(side, 1);
}

void frmSplash::Load() {
  // At start-up the window has no frame, because it cannot be closed, moved or minimized.
  if (!show_ok_button_) setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
  website_->setText(tr("Written by the Tallow developers. The manual is in the Help menu."));
  copyright_->setText(tr(
      "Copyright 2026 the Tallow developers. Free software under the GNU General Public License, "
      "version 3 or later."));
  version_->setText(QStringLiteral("Version  %1.%2").arg(kMajorVersion).arg(kMinorVersion));
  ok_->setVisible(show_ok_button_);
  cancel_button_->setVisible(false);
  found_label_->setVisible(false);
  LoadPictureFromResource(kHeart, *heart_, "jpg");
  LoadPictureFromResource(kMom, *mom_, "jpg");
  LoadPictureFromResource(kMan, *man_, "gif");
  loaded_ = true;
  since_shown_.start();
  setFixedSize(sizeHint());
}

void frmSplash::WaitUntilPainted() {
  constexpr qint64 kMaxWait = 500;  // ms
  QElapsedTimer waited;
  waited.start();
  do {
    QCoreApplication::processEvents(QEventLoop::AllEvents, kShownAgainAfter);
  } while (waited.elapsed() < kMaxWait && !(windowHandle() && windowHandle()->isExposed()));
  repaint();
  QCoreApplication::processEvents();
}

void frmSplash::ShowForSearch() {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  move(screen.center() - rect().center());
  show();
  WaitUntilPainted();
}

void frmSplash::ShowCancelButton(bool visible) {
  cancel_button_->setVisible(visible);
  ShowLines();
  repaint();
}

void frmSplash::ShowFoundLine(bool visible) { found_label_->setVisible(visible); }

void frmSplash::SetStatus(std::string_view text) {
  status_ = text;
  ShowLines();
  status_is_new_ = true;
}

void frmSplash::SetFound(std::string_view text) { found_ = text; }

bool frmSplash::IsDue() const { return since_shown_.elapsed() >= kShownAgainAfter; }

void frmSplash::ShowLines() {
  const QString status = DisplayText(status_);
  status_label_->setText(status_label_->fontMetrics().elidedText(
      status, Qt::ElideMiddle, qMax(status_label_->width(), status_label_->minimumWidth())));
  status_label_->setToolTip(status);
  found_label_->setText(DisplayText(found_));
  status_is_new_ = false;
  since_shown_.restart();
}

void frmSplash::Repaint() {
  // A new status line (a new drive) is rare, and the work after it may take long, so it is shown
  // immediately.
  if (!IsDue() && !status_is_new_) return;
  ShowLines();
  repaint();
  painted_ = true;
}

void frmSplash::Yield() {
  if (IsDue() || status_is_new_) ShowLines();
  QCoreApplication::processEvents();
}

void frmSplash::YieldAfterSong() {
  // Processes events only if Repaint() has painted, so events are processed no more often than
  // that.
  if (!painted_) return;
  painted_ = false;
  QCoreApplication::processEvents();
}

void frmSplash::VisitFolder(std::string_view /*folder*/) {
  // The line shows only the drive, because folders change too fast to read. Events are still
  // processed, so that Cancel takes effect before the next folder.
  if (IsDue()) Yield();
}

void frmSplash::done(int result) {
  loaded_ = false;
  QDialog::done(result);
}

void frmSplash::reject() {
  // Esc closes the about box. At start-up Esc does nothing; only the button cancels the search.
  if (show_ok_button_) QDialog::reject();
}

}  // namespace tallow
