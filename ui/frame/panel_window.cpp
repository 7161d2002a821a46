// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/panel_window.h"

#include <algorithm>
#include <utility>

#include <QMdiArea>
#include <QResizeEvent>

#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/frm_main.h"
#include "ui/player/frm_main_winamp.h"

namespace tallow {

PanelWindow::PanelWindow(JukeboxArea& jukeboxes) : jukeboxes_(jukeboxes) {
  jukeboxes_.Area().viewport()->installEventFilter(this);
}

frmMainWinamp* PanelWindow::Panel() const {
  return sub_ ? qobject_cast<frmMainWinamp*>(sub_->widget()) : nullptr;
}

void PanelWindow::Open(frmMainWinamp& panel) {
  QMdiArea& area = jukeboxes_.Area();
  sub_ = area.addSubWindow(&panel);
  sub_->setAttribute(Qt::WA_DeleteOnClose);
  // Jukebox windows are maximized; the panel would be hidden behind them.
  sub_->setWindowFlags(Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                       Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint);
  connect(sub_, &QMdiSubWindow::windowStateChanged, this,
          [this](Qt::WindowStates, Qt::WindowStates now) {
            if (now.testFlag(Qt::WindowMinimized)) jukeboxes_.ActivateLast();
          });
  sub_->show();
  sub_->resize(sub_->sizeHint());
  sub_->move(area.viewport()->rect().bottomRight() - sub_->rect().bottomRight());
}

void PanelWindow::Play() { Show(&frmMainWinamp::Play); }

void PanelWindow::ShowPlayer() { Show(&frmMainWinamp::ShowPlayer); }

void PanelWindow::Show(bool (frmMainWinamp::*open)()) {
  sub_->showNormal();
  // Commands and keys go to the jukebox again.
  jukeboxes_.ActivateLast();
  if (frmMain* const window = jukeboxes_.ActiveWindow()) window->GrabFocus();
  is_handing_over_ = true;
  const bool is_open = (Panel()->*open)();
  is_handing_over_ = false;
  // A panel without a player is useless.
  if (!is_open) delete sub_;
  if (std::exchange(is_to_close_, false)) Close();
}

void PanelWindow::Close() {
  is_to_close_ = is_handing_over_;
  if (sub_ && !is_handing_over_) sub_->close();
}

void PanelWindow::Delete() { delete sub_; }

bool PanelWindow::IsActive() const { return sub_ && jukeboxes_.Area().currentSubWindow() == sub_; }

void PanelWindow::Minimize() {
  if (sub_) sub_->showMinimized();
}

bool PanelWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) ClampPosition(static_cast<QResizeEvent*>(event)->oldSize());
  return QObject::eventFilter(watched, event);
}

void PanelWindow::ClampPosition(QSize before) {
  if (!sub_ || sub_->isMinimized()) return;
  const auto place = [](int at, int length, int old_space, int space) {
    // A panel that touched the far edge keeps touching it.
    if (at + length >= old_space) at = space - length;
    return std::max(0, std::min(at, space - length));
  };
  const QSize now = jukeboxes_.Area().viewport()->size();
  sub_->move(place(sub_->x(), sub_->width(), before.width(), now.width()),
             place(sub_->y(), sub_->height(), before.height(), now.height()));
}

}  // namespace tallow
