// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <QMdiSubWindow>
#include <QPointer>

#include "app/jukebox_documents.h"

namespace tallow {

class BusyFrame;
class FrameMessages;
class JukeboxArea;
class JukeboxWindowMaker;
class PanelWindow;

/// The windows of the commands on jukebox files, in the frame window.
class FrameDocuments : public DocumentWindows {
 public:
  /// The parameters have to outlive this object.
  FrameDocuments(JukeboxWindowMaker& maker, JukeboxArea& jukeboxes, PanelWindow& panel,
                 FrameMessages& messages, BusyFrame& busy);

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
  JukeboxWindowMaker& maker_;
  JukeboxArea& jukeboxes_;
  PanelWindow& panel_;
  FrameMessages& messages_;
  BusyFrame& busy_;
  std::vector<Jukebox*> open_;
  QPointer<QMdiSubWindow> active_before_;  ///< before NewJukebox()
};

}  // namespace tallow
