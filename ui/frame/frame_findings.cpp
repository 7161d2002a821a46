// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_findings.h"

#include <utility>

#include <QEvent>
#include <QMouseEvent>
#include <QStatusBar>
#include <QTimer>

#include "app/playing/follow_returned_songs.h"
#include "app/tallow.h"
#include "jukebox/jukebox.h"
#include "library/size_finder.h"
#include "ui/dialogs/frm_findings.h"
#include "ui/support/help_page.h"

namespace tallow {
namespace {

/// How often sizes that were found are copied to the library, in ms.
constexpr int kStoreEvery = 200;

}  // namespace

FrameFindings::FrameFindings(QStatusBar& bar, Tallow& tallow, ShowMessage show,
                             std::function<std::vector<Jukebox*>()> jukeboxes)
    : bar_(bar), tallow_(tallow), show_(std::move(show)), jukeboxes_(std::move(jukeboxes)) {
  bar_.installEventFilter(this);
}

FrameFindings::~FrameFindings() {
  // Saves the sizes found so far, so that the next start need not determine them again.
  if (sizes_ != nullptr) {
    sizes_->StoreSizes(tallow_.library);
    SaveSizes();
  }
}

void FrameFindings::SaveSizes() {
  if (sizes_->HasFound()) tallow_.library.SaveFacts();
}

bool FrameFindings::HasFindings() const {
  return !tallow_.library.LeftOut().empty() || !tallow_.library.AwayPlaces().empty() ||
         !tallow_.library.UnreadFoldersNow().empty() || !tallow_.details.Unreadable().empty();
}

QString FrameFindings::FullText() const {
  return bar_.toolTip().isEmpty() ? bar_.currentMessage() : bar_.toolTip();
}

bool FrameFindings::IsTextTruncated() const {
  const QString text = FullText();
  if (bar_.currentMessage().isEmpty() || text == opened_) return false;
  // Width of the size grip and the bar's frame, in pixels.
  constexpr int kMargin = 24;
  return text.contains(QLatin1Char('\n')) ||
         bar_.fontMetrics().horizontalAdvance(text) > bar_.width() - kMargin;
}

void FrameFindings::ShowText() {
  opened_ = FullText();
  show_({.text = opened_.toStdString(), .icon = MessageIcon::kInformation});
  Changed();
}

void FrameFindings::Changed() {
  bar_.setCursor(HasFindings() || IsTextTruncated() ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

bool FrameFindings::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &bar_ && (event->type() == QEvent::Enter || event->type() == QEvent::Resize ||
                           event->type() == QEvent::ToolTipChange))
    Changed();
  if (watched == &bar_ && event->type() == QEvent::MouseButtonRelease &&
      static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton &&
      (HasFindings() || IsTextTruncated())) {
    // Queued, because the bar must finish handling the click before the modal list opens. A
    // truncated text is shown first; the next click opens the list.
    QMetaObject::invokeMethod(
        this, IsTextTruncated() ? &FrameFindings::ShowText : &FrameFindings::ShowList,
        Qt::QueuedConnection);
    return true;
  }
  return QObject::eventFilter(watched, event);
}

void FrameFindings::ShowList() {
  frmFindings list(
      tallow_.library, show_,
      [this] {
        bar_.showMessage(tr("The songs on the drive are now marked as missing."));
        bar_.setToolTip({});
        FollowReturnedSongs(tallow_.library.TakeReturned(), jukeboxes_(), tallow_);
        for (Jukebox* const jukebox : jukeboxes_()) jukebox->ListRefilled(tallow_.library);
        emit DriveForgotten();
      },
      bar_.window(), tallow_.details.Unreadable());
  list.setProperty(kHelpPage, QStringLiteral("away"));
  list.exec();
  Changed();
}

void FrameFindings::FindSizes() {
  sizes_ = std::make_unique<SizeFinder>(tallow_.library);
  StoreSizes();
}

void FrameFindings::StoreSizes() {
  if (sizes_ == nullptr) return;
  if (sizes_->StoreSizes(tallow_.library)) {
    QTimer::singleShot(kStoreEvery, this, &FrameFindings::StoreSizes);
    return;
  }
  SaveSizes();
  sizes_.reset();
}

}  // namespace tallow
