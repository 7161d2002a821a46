// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_documents.h"

#include <QMdiArea>

#include "ui/dialogs/common_dialog.h"
#include "ui/frame/jukebox_window_maker.h"
#include "ui/frame/panel_window.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"

namespace tallow {

FrameDocuments::FrameDocuments(JukeboxWindowMaker& maker, JukeboxArea& jukeboxes,
                               PanelWindow& panel, FrameMessages& messages, BusyFrame& busy)
    : FrameWindows(jukeboxes, messages, busy), maker_(maker), panel_(panel) {}

Jukebox* FrameDocuments::ActiveJukebox() {
  const QMdiSubWindow* const active = jukeboxes_.Area().currentSubWindow();
  if (active == nullptr) return nullptr;
  frmMain* window = qobject_cast<frmMain*>(active->widget());
  if (panel_.IsActive()) {
    panel_.Minimize();
    window = jukeboxes_.LastActive();
  }
  return window != nullptr ? &window->Jukebox() : nullptr;
}

bool FrameDocuments::IsOpen(std::string_view caption) { return jukeboxes_.HasCaption(caption); }

Jukebox& FrameDocuments::NewJukebox() {
  active_before_ = jukeboxes_.Area().currentSubWindow();
  return maker_.NewJukeboxWindow().Jukebox();
}

void FrameDocuments::ShowJukebox(Jukebox& jukebox) {
  if (frmMain* const window = jukeboxes_.WindowOf(jukebox)) maker_.ShowJukeboxWindow(*window);
}

bool FrameDocuments::SaveJukebox(Jukebox& jukebox, const std::string& path,
                                 const clsMain& /*library*/) {
  frmMain* const window = jukeboxes_.WindowOf(jukebox);
  return window != nullptr && window->PVExplorer1().Save(path);
}

bool FrameDocuments::LoadJukebox(Jukebox& jukebox, const std::string& path,
                                 const clsMain& /*library*/, const ResolveConfusedSongs& ask) {
  frmMain* const window = jukeboxes_.WindowOf(jukebox);
  return window != nullptr && window->PVExplorer1().Load(path, ask);
}

void FrameDocuments::DiscardJukebox(Jukebox& jukebox) {
  if (frmMain* const window = jukeboxes_.WindowOf(jukebox)) delete window->parentWidget();
  if (active_before_ != nullptr) jukeboxes_.Area().setActiveSubWindow(active_before_);
}

std::optional<std::string> FrameDocuments::AskForFileToOpen(const std::string& folder) {
  return AskForFile(jukeboxes_.Area().window(), folder, kJukeboxFilter, FileDialogPurpose::kOpen);
}

std::optional<std::string> FrameDocuments::AskForFileToSave(const std::string& folder) {
  return AskForFile(jukeboxes_.Area().window(), folder, kJukeboxFilter, FileDialogPurpose::kSave);
}

}  // namespace tallow
