// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/jukebox_places.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>

#include "app/tallow.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/frm_main.h"
#include "util/errors.h"
#include "util/path_text.h"

namespace tallow {
namespace {

QMdiSubWindow* SubwindowOf(const frmMain& window) {
  return qobject_cast<QMdiSubWindow*>(window.parentWidget());
}

bool IsNormal(const QMdiSubWindow& sub) {
  return sub.isVisible() && !sub.isMaximized() && !sub.isMinimized();
}

/// The part of a window that remains inside the area, in pixels.
constexpr int kMinInside = 100;

/// A place whose title bar can be reached.
QRect MovedInside(QRect place, const QSize& area) {
  place.setSize(place.size().boundedTo(area));
  const int left = std::clamp(place.left(), std::min(0, kMinInside - place.width()),
                              std::max(0, area.width() - kMinInside));
  const int top = std::clamp(place.top(), 0, std::max(0, area.height() - kMinInside));
  place.moveTo(left, top);
  return place;
}

}  // namespace

JukeboxPlaces::JukeboxPlaces(Tallow& tallow, JukeboxArea& jukeboxes, FrameMessages& messages)
    : tallow_(tallow), jukeboxes_(jukeboxes), messages_(messages) {
  connect(&jukeboxes, &JukeboxArea::ClosingAll, this, [this] {
    Store();
    is_ending_ = true;
  });
}

void JukeboxPlaces::Follow(frmMain& window) {
  QMdiSubWindow* const sub = SubwindowOf(window);
  sub->installEventFilter(this);
  connect(sub, &QObject::destroyed, this, [this](const QObject* gone) {
    normal_.remove(gone);
    StoreLater();
  });
}

void JukeboxPlaces::WindowShown() {
  // A window that is shown after all were closed shows that the program goes on.
  is_ending_ = false;
  StoreLater();
}

bool JukeboxPlaces::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
    // Queued, because the state may change right after the geometry.
    QMetaObject::invokeMethod(
        this,
        [this, sub = QPointer(qobject_cast<QMdiSubWindow*>(watched))] {
          if (sub != nullptr && IsNormal(*sub)) normal_[sub] = sub->geometry();
        },
        Qt::QueuedConnection);
  }
  return QObject::eventFilter(watched, event);
}

WindowPlace JukeboxPlaces::PlaceOf(const QMdiSubWindow& sub) const {
  const QRect normal = IsNormal(sub) ? sub.geometry() : normal_.value(&sub);
  WindowPlace place{WindowPlace::State::kNormal, normal.left(), normal.top(), normal.width(),
                    normal.height()};
  if (sub.isMaximized()) place.state = WindowPlace::State::kMaximized;
  if (sub.isMinimized()) place.state = WindowPlace::State::kMinimized;
  return place;
}

void JukeboxPlaces::StoreLater() {
  if (std::exchange(is_waiting_, true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        is_waiting_ = false;
        Store();
      },
      Qt::QueuedConnection);
}

void JukeboxPlaces::Store() {
  if (is_ending_ || !tallow_.preferences.switches().reopens_jukeboxes) return;
  const frmMain* const active = jukeboxes_.ActiveWindow();
  std::vector<OpenJukebox> open;
  for (const Jukebox* const jukebox : jukeboxes_.Open()) {
    const frmMain* const window = jukeboxes_.WindowOf(*jukebox);
    const QMdiSubWindow* const sub = SubwindowOf(*window);
    // A closed window is hidden until it is deleted, and a jukebox without a file cannot be opened.
    if (sub->isHidden() || !IsAbsolutePath(jukebox->FilePath())) continue;
    open.push_back(DescribeOpen(*jukebox));
    open.back().is_active = window == active;
    open.back().place = PlaceOf(*sub);
  }
  std::string problem;
  try {
    tallow_.open_jukeboxes.Store(open);
  } catch (const FileError& error) {
    problem = std::string("Tallow could not store which jukeboxes are open. ") + error.what() + ".";
  }
  if (std::exchange(problem_, problem) != problem && !problem.empty())
    messages_.AddNotice({problem});
}

void JukeboxPlaces::Restore(const std::vector<Placed>& placed, frmMain& front) {
  const QSize area = jukeboxes_.Area().viewport()->size();
  // A maximized window also gets its normal place, which it has when the user restores it. When one
  // window is restored, all are, so no window is maximized before all have their places.
  for (const auto& [window, place] : placed) {
    const bool has_size = place.width > 0 && place.height > 0;
    if (place.state == WindowPlace::State::kMaximized && !has_size) continue;
    QMdiSubWindow& sub = *SubwindowOf(*window);
    sub.showNormal();
    if (has_size)
      sub.setGeometry(MovedInside(QRect(place.left, place.top, place.width, place.height), area));
    normal_[&sub] = sub.geometry();
  }
  for (const auto& [window, place] : placed) {
    if (place.state == WindowPlace::State::kMaximized) SubwindowOf(*window)->showMaximized();
    if (place.state == WindowPlace::State::kMinimized) SubwindowOf(*window)->showMinimized();
  }
  jukeboxes_.Activate(front);
  if (!SubwindowOf(front)->isMinimized()) front.GrabFocus();
}

}  // namespace tallow
