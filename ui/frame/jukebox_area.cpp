// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/jukebox_area.h"

#include <algorithm>
#include <utility>

#include <QMdiArea>
#include <QMdiSubWindow>

#include "ui/frame/bring_to_front.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "util/text.h"

namespace tallow {
namespace {

/// Size of a jukebox window that is no longer maximized, and its offset from the previous window,
/// in pixels.
constexpr QSize kJukeboxSize(760, 480);
constexpr int kCascadeStep = 28;

/// The jukebox window in a subwindow; null when the subwindow is null or holds something else.
frmMain* JukeboxIn(const QMdiSubWindow* sub) {
  return sub != nullptr ? qobject_cast<frmMain*>(sub->widget()) : nullptr;
}

QMdiSubWindow* SubwindowOf(const frmMain& window) {
  return qobject_cast<QMdiSubWindow*>(window.parentWidget());
}

}  // namespace

void JukeboxArea::Add(frmMain& window) {
  ++number_;
  QMdiSubWindow* const sub = area_.addSubWindow(&window);
  sub->resize(kJukeboxSize);
  sub->hide();
  FollowState(*sub, window);
  emit Added(window);
}

void JukeboxArea::FollowState(QMdiSubWindow& sub, frmMain& window) {
  connect(&sub, &QMdiSubWindow::windowStateChanged, this,
          [this, &window, pane = 0](Qt::WindowStates before, Qt::WindowStates now) mutable {
            if (now.testFlag(Qt::WindowMinimized)) {
              if (!before.testFlag(Qt::WindowMinimized)) pane = window.CurrentPaneWFocus();
              return ActivateUnminimized();
            }
            // A restored window gives the focus to its frame, or to its tree.
            if (before.testFlag(Qt::WindowMinimized))
              QMetaObject::invokeMethod(
                  &window,
                  [this, &window, pane] {
                    if (IsActive(window)) window.PVExplorer1().GrabFocus(pane == kListPane);
                  },
                  Qt::QueuedConnection);
            if (before.testFlag(Qt::WindowMaximized) && !now.testFlag(Qt::WindowMaximized))
              RestoreAll();
          });
}

void JukeboxArea::Show(frmMain& window) {
  window.show();
  window.parentWidget()->showMaximized();
  window.GrabFocus();
}

std::string JukeboxArea::NewCaption() {
  const std::vector<Jukebox*> open = Open();
  const auto is_used = [&](const std::string& caption) {
    return std::any_of(open.begin(), open.end(),
                       [&](const Jukebox* jukebox) { return jukebox->Caption() == caption; });
  };
  std::string caption = "JukeBox" + std::to_string(number_);
  while (is_used(caption)) caption = "JukeBox" + std::to_string(++number_);
  return caption;
}

std::vector<Jukebox*> JukeboxArea::Open() const {
  std::vector<Jukebox*> jukeboxes;
  for (const QMdiSubWindow* const sub : area_.subWindowList(QMdiArea::CreationOrder))
    if (frmMain* const window = JukeboxIn(sub)) jukeboxes.push_back(&window->Jukebox());
  return jukeboxes;
}

void JukeboxArea::ForEachWindow(const std::function<void(frmMain& window)>& act) const {
  for (const Jukebox* const jukebox : Open()) act(*WindowOf(*jukebox));
}

frmMain* JukeboxArea::WindowOf(const Jukebox& jukebox) const {
  for (const QMdiSubWindow* const sub : area_.subWindowList())
    if (frmMain* const window = JukeboxIn(sub))
      if (&window->Jukebox() == &jukebox) return window;
  return nullptr;
}

bool JukeboxArea::HasCaption(std::string_view caption) const {
  for (const QMdiSubWindow* const sub : area_.subWindowList()) {
    if (!sub->isVisible()) continue;
    // The window title is the caption with undisplayable bytes replaced, so two captions may have
    // the same title.
    frmMain* const window = JukeboxIn(sub);
    const std::string own = window != nullptr ? window->Jukebox().Caption()
                                              : sub->widget()->windowTitle().toStdString();
    if (EqualsIgnoringCase(own, caption)) return true;
  }
  return false;
}

frmMain* JukeboxArea::ActiveWindow() const {
  frmMain* const active = JukeboxIn(area_.currentSubWindow());
  return active != nullptr ? active : LastActive();
}

Jukebox* JukeboxArea::ActiveJukebox() const {
  frmMain* const window = ActiveWindow();
  return window != nullptr ? &window->Jukebox() : nullptr;
}

frmMain* JukeboxArea::LastActive() const {
  const QList<QMdiSubWindow*> windows = area_.subWindowList(QMdiArea::ActivationHistoryOrder);
  frmMain* minimized = nullptr;
  for (auto sub = windows.rbegin(); sub != windows.rend(); ++sub) {
    frmMain* const window = JukeboxIn(*sub);
    // Skips windows that are being made, or are closed and waiting for deletion.
    if (window == nullptr || (*sub)->isHidden()) continue;
    if (!(*sub)->isMinimized()) return window;
    if (minimized == nullptr) minimized = window;
  }
  return minimized;
}

bool JukeboxArea::IsActive(const frmMain& window) const {
  return area_.currentSubWindow() != nullptr && area_.currentSubWindow() == window.parentWidget();
}

void JukeboxArea::Activate(const frmMain& window) { area_.setActiveSubWindow(SubwindowOf(window)); }

void JukeboxArea::ActivateLast() {
  if (frmMain* const jukebox = LastActive()) Activate(*jukebox);
}

void JukeboxArea::KeepPlaces(const std::function<void()>& act) const {
  std::vector<std::pair<PVExplorer*, PVExplorer::Place>> places;
  for (const Jukebox* const jukebox : Open()) {
    PVExplorer& explorer = WindowOf(*jukebox)->PVExplorer1();
    places.emplace_back(&explorer, explorer.CurrentPlace());
  }
  act();
  for (const auto& [explorer, before] : places) {
    explorer->UpdateHiddenFolders();
    explorer->GoTo(before);
  }
}

bool JukeboxArea::CloseAll() {
  const QList<QMdiSubWindow*> windows = area_.subWindowList();
  for (QMdiSubWindow* const sub : windows) {
    frmMain* const window = JukeboxIn(sub);
    if (window == nullptr) continue;
    // The question is about the window in front.
    if (window->WillAsk()) {
      ComeToFront(*area_.window());
      BringToFront(area_, *sub);
    }
    if (window->AskBeforeClosing()) continue;
    for (const Jukebox* const jukebox : Open()) WindowOf(*jukebox)->KeepOpen();
    return false;
  }
  emit ClosingAll();
  for (QMdiSubWindow* const sub : windows)
    if (JukeboxIn(sub) != nullptr) sub->close();
  return true;
}

void JukeboxArea::FitInside(QMdiSubWindow& sub, int number) const {
  const QRect space = area_.viewport()->rect();
  if (space.contains(sub.geometry())) return;
  const QSize size = kJukeboxSize.boundedTo(space.size() * 4 / 5);
  const int steps = std::max(1, std::min((space.width() - size.width()) / kCascadeStep,
                                         (space.height() - size.height()) / kCascadeStep));
  const int step = number % steps * kCascadeStep;
  sub.setGeometry(QRect(QPoint(step, step), size));
}

void JukeboxArea::RestoreAll() {
  QMdiSubWindow* const active = area_.currentSubWindow();
  int number = 0;
  for (QMdiSubWindow* const sub : area_.subWindowList()) {
    if (JukeboxIn(sub) == nullptr || sub->isMinimized()) continue;
    if (sub->isMaximized()) sub->showNormal();
    FitInside(*sub, number++);
  }
  if (active != nullptr) area_.setActiveSubWindow(active);
}

void JukeboxArea::ActivateUnminimized() {
  const QList<QMdiSubWindow*> windows = area_.subWindowList(QMdiArea::ActivationHistoryOrder);
  for (auto sub = windows.rbegin(); sub != windows.rend(); ++sub) {
    if (!(*sub)->isVisible() || (*sub)->isMinimized()) continue;
    if (JukeboxIn(*sub) == nullptr) continue;
    area_.setActiveSubWindow(*sub);
    return;
  }
}

}  // namespace tallow
