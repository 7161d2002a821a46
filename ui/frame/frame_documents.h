// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <QMdiSubWindow>
#include <QPointer>

#include "app/jukebox_documents.h"
#include "ui/frame/frame_windows_base.h"

namespace tallow {

class JukeboxWindowMaker;
class PanelWindow;

/// The windows of the commands on jukebox files, in the frame window.
class FrameDocuments : public FrameWindows<DocumentWindows> {
 public:
  /// The parameters have to outlive this object.
  FrameDocuments(JukeboxWindowMaker& maker, JukeboxArea& jukeboxes, PanelWindow& panel,
                 FrameMessages& messages, BusyFrame& busy);

  Jukebox* ActiveJukebox() override;
  bool IsOpen(std::string_view caption) override;
  Jukebox& NewJukebox() override;
  void ShowJukebox(Jukebox& jukebox) override;
  bool SaveJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library) override;
  bool LoadJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library,
                   const ResolveConfusedSongs& ask) override;
  void DiscardJukebox(Jukebox& jukebox) override;
  std::optional<std::string> AskForFileToOpen(const std::string& folder) override;
  std::optional<std::string> AskForFileToSave(const std::string& folder) override;

 private:
  JukeboxWindowMaker& maker_;
  PanelWindow& panel_;
  QPointer<QMdiSubWindow> active_before_;  ///< before NewJukebox()
};

}  // namespace tallow
