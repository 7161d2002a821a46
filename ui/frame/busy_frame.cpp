// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/busy_frame.h"

#include <QApplication>
#include <QMdiArea>

#include "ui/frame/frame_work.h"
#include "ui/frame/jukebox_area.h"
#include "ui/frame/unsaved_keeper.h"
#include "ui/jukebox/frm_main.h"
#include "ui/support/display_text.h"

namespace tallow {

BusyFrame::BusyFrame(QWidget& frame, Tallow& tallow, JukeboxArea& jukeboxes, UnsavedKeeper& unsaved)
    : frame_(frame), tallow_(tallow), jukeboxes_(jukeboxes), unsaved_(unsaved) {}

void BusyFrame::EnableFrame(bool enabled) {
  if (!enabled) unsaved_.Keep();
  SetEnabled(enabled);
}

void BusyFrame::SetEnabled(bool enabled) {
  // A disabled window loses its focus widget.
  if (!enabled) saved_focus_ = frame_.focusWidget();
  frame_.setEnabled(enabled);
  if (!enabled) return;
  if (saved_focus_ != nullptr && saved_focus_->isVisible()) saved_focus_->setFocus();
  FocusJukebox();
}

std::unique_ptr<LongWork> BusyFrame::BeginWork(std::string_view text) {
  return std::make_unique<FrameWork>(tallow_, DisplayText(text),
                                     [this](bool enabled) { SetEnabled(enabled); });
}

void BusyFrame::FocusJukebox() {
  // After a dialog the focus may be on the area or on a window's frame, where keys do nothing.
  frmMain* const window = jukeboxes_.ActiveWindow();
  const QWidget* const focus = QApplication::focusWidget();
  if (window == nullptr || !jukeboxes_.IsActive(*window) || !frame_.isActiveWindow()) return;
  if (focus == nullptr || focus == &frame_ || focus == &jukeboxes_.Area() ||
      focus == window->parentWidget())
    window->GrabFocus();
}

}  // namespace tallow
