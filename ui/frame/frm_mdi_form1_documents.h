// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include <QMdiSubWindow>
#include <QPointer>

#include "app/jukebox_documents.h"
#include "ui/frame/frm_mdi_form1.h"

namespace tallow {

/// The frame's implementation of the windows that the commands on jukebox files need.
class frmMDIForm1::Documents : public DocumentWindows {
 public:
  explicit Documents(frmMDIForm1& frame) : frame_(frame) {}

  Jukebox* ActiveJukebox() override;
  std::span<Jukebox* const> OpenJukeboxes() override;
  bool IsOpen(std::string_view caption) override;
  Jukebox& NewJukebox() override;
  void ShowJukebox(Jukebox& jukebox) override;
  bool SaveJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library) override;
  bool LoadJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library,
                   const ResolveConfusedSongs& ask) override;
  void DiscardJukebox(Jukebox& jukebox) override;
  std::optional<std::string> AskForFileToOpen(const std::string& folder) override;
  std::optional<std::string> AskForFileToSave(const std::string& folder) override;
  std::unique_ptr<LongWork> BeginWork(std::string_view text) override;
  MessageAnswer Show(const Message& message) override;
  void Notice(const std::vector<std::string>& lines) override;

 private:
  frmMDIForm1& frame_;
  std::vector<Jukebox*> open_;
  QPointer<QMdiSubWindow> active_before_;  ///< before NewJukebox()
};

}  // namespace tallow
