// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_work.h"

#include <utility>

#include <QApplication>

#include "app/tallow.h"
#include "ui/dialogs/frm_searching.h"
#include "ui/support/help_page.h"

namespace tallow {
namespace {

/// How often window events are processed, in ms. An event then waits less than 50 ms, if one step
/// of the work takes less than 30.
constexpr qint64 kEventInterval = 20;

/// Work that takes longer than this gets a progress window, in ms.
constexpr qint64 kShowAfter = 500;

}  // namespace

FrameWork::FrameWork(Tallow& tallow, QString text, std::function<void(bool)> enable)
    : tallow_(tallow), text_(std::move(text)), enable_(std::move(enable)) {
  tallow_.SearchCancelled = false;
  begun_.start();
  since_events_.start();
}

FrameWork::~FrameWork() {
  window_.reset();
  if (is_disabled_) enable_(true);
  tallow_.SearchCancelled = false;
}

bool FrameWork::GoOn(const std::function<std::string()>& line) {
  if (since_events_.hasExpired(kEventInterval)) {
    if (!std::exchange(is_disabled_, true)) enable_(false);
    if (!window_ && begun_.hasExpired(kShowAfter)) {
      // Only a child of a modal dialog accepts clicks while the dialog is open.
      window_ = std::make_unique<frmSearching>([this] { tallow_.SearchCancelled = true; }, text_,
                                               QApplication::activeModalWidget());
      window_->setProperty(kHelpPage, QStringLiteral("new-songs"));
      window_->Load();
      window_->show();
    }
    if (window_) {
      window_->SetFound(line());
      window_->Repaint();
    }
    QCoreApplication::processEvents();
    // The interval starts after the events, so that slow event handlers do not use it up.
    since_events_.start();
  }
  return !tallow_.SearchCancelled && !tallow_.is_shutting_down;
}

}  // namespace tallow
