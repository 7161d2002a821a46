// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/waiting_files.h"

#include <utility>

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>

#include "app/jukebox_documents.h"
#include "jukebox/jukebox.h"
#include "ui/frame/bring_to_front.h"
#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/frm_main.h"
#include "util/file_system.h"

namespace tallow {
namespace {

/// How often the program retries to open waiting files, in ms.
constexpr int kRetryInterval = 200;

}  // namespace

void WaitingFiles::Open(const std::vector<std::string>& paths) {
  waiting_.insert(waiting_.end(), paths.begin(), paths.end());
  OpenWaiting();
}

void WaitingFiles::OpenWaiting() {
  QWidget& frame = *jukeboxes_.Area().window();
  // A dialog, a search or the start has to end first.
  if (!frame.isVisible() || !frame.isEnabled() || QApplication::activeModalWidget() != nullptr) {
    QTimer::singleShot(kRetryInterval, this, &WaitingFiles::OpenWaiting);
    return;
  }
  ComeToFront(frame);
  for (const std::string& path : std::exchange(waiting_, {})) {
    const frmMain* open = nullptr;
    for (const Jukebox* const jukebox : jukeboxes_.Open())
      if (!jukebox->FilePath().empty() && IsSamePath(jukebox->FilePath(), path))
        open = jukeboxes_.WindowOf(*jukebox);
    if (open != nullptr)
      BringToFront(jukeboxes_.Area(), *qobject_cast<QMdiSubWindow*>(open->parentWidget()));
    else
      documents_.OpenUnlessOpen(path);
  }
}

}  // namespace tallow
