// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frm_mdi_form1_documents.h"

#include <QMdiArea>

#include "ui/dialogs/common_dialog.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "util/text.h"

namespace tallow {

Jukebox* frmMDIForm1::Documents::ActiveJukebox() {
  QMdiSubWindow* active = frame_.area_->currentSubWindow();
  if (active != nullptr && active == frame_.panel_) {
    active->showMinimized();
    active = frame_.LastActiveJukebox();
  }
  auto* const window = active != nullptr ? qobject_cast<frmMain*>(active->widget()) : nullptr;
  return window != nullptr ? &window->Jukebox() : nullptr;
}

std::span<Jukebox* const> frmMDIForm1::Documents::OpenJukeboxes() {
  open_ = frame_.OpenJukeboxes();
  return open_;
}

bool frmMDIForm1::Documents::IsOpen(std::string_view caption) {
  for (const QMdiSubWindow* const sub : frame_.area_->subWindowList()) {
    if (!sub->isVisible()) continue;
    // The window title is the caption with undisplayable bytes replaced, so two captions may have
    // the same title.
    auto* const window = qobject_cast<frmMain*>(sub->widget());
    const std::string own = window != nullptr ? window->Jukebox().Caption()
                                              : sub->widget()->windowTitle().toStdString();
    if (EqualsIgnoringCase(own, caption)) return true;
  }
  return false;
}

Jukebox& frmMDIForm1::Documents::NewJukebox() {
  active_before_ = frame_.area_->currentSubWindow();
  return frame_.NewJukeboxWindow().Jukebox();
}

void frmMDIForm1::Documents::ShowJukebox(Jukebox& jukebox) {
  if (frmMain* const window = frame_.WindowOf(jukebox)) frame_.ShowJukeboxWindow(*window);
}

bool frmMDIForm1::Documents::SaveJukebox(Jukebox& jukebox, const std::string& path,
                                         const clsMain& /*library*/) {
  frmMain* const window = frame_.WindowOf(jukebox);
  return window != nullptr && window->PVExplorer1().Save(path);
}

bool frmMDIForm1::Documents::LoadJukebox(Jukebox& jukebox, const std::string& path,
                                         const clsMain& /*library*/,
                                         const ResolveConfusedSongs& ask) {
  frmMain* const window = frame_.WindowOf(jukebox);
  return window != nullptr && window->PVExplorer1().Load(path, ask);
}

void frmMDIForm1::Documents::DiscardJukebox(Jukebox& jukebox) {
  if (frmMain* const window = frame_.WindowOf(jukebox)) delete window->parentWidget();
  if (active_before_ != nullptr) frame_.area_->setActiveSubWindow(active_before_);
}

std::optional<std::string> frmMDIForm1::Documents::AskForFileToOpen(const std::string& folder) {
  return AskForFile(&frame_, folder, kJukeboxFilter, FileDialogPurpose::kOpen);
}

std::optional<std::string> frmMDIForm1::Documents::AskForFileToSave(const std::string& folder) {
  return AskForFile(&frame_, folder, kJukeboxFilter, FileDialogPurpose::kSave);
}

std::unique_ptr<LongWork> frmMDIForm1::Documents::BeginWork(std::string_view text) {
  return frame_.BeginWork(text);
}

MessageAnswer frmMDIForm1::Documents::Show(const Message& message) { return frame_.Show(message); }

void frmMDIForm1::Documents::Notice(const std::vector<std::string>& lines) { frame_.Notice(lines); }

}  // namespace tallow
