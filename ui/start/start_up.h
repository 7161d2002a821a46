// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "app/start/start_up_windows.h"
#include "app/system.h"
#include "ui/dialogs/frm_splash.h"
#include "ui/frame/frm_mdi_form1.h"

namespace tallow {

/// Implements the windows of start-up with real windows.
class StartUp : public StartUpWindows {
 public:
  /// \param frame  the frame window, shown with its first jukebox; must outlive this object
  /// \param silent shows no dialogs: messages go to standard error; questions are answered No or
  ///               left unanswered
  StartUp(Tallow& tallow, frmMDIForm1& frame, bool silent);

  void ShowSplash() override;
  SearchProgress& Splash() override;
  SearchProgress* LoadedSplash() override;
  void ShowCancelButton(bool visible) override;
  void ShowFoundLine(bool visible) override;
  void UnloadSplash() override;
  Jukebox& NewJukebox() override;
  void ShowJukebox(Jukebox& jukebox) override;
  bool LoadJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library,
                   const ResolveConfusedSongs& ask) override;
  std::span<Jukebox* const> OpenJukeboxes() override;
  MessageAnswer Show(const Message& message) override;
  std::optional<std::size_t> Choose(const std::string& text,
                                    const std::vector<std::string>& choices) override;
  void Notice(const std::vector<std::string>& lines) override;
  void NoticeScan(const std::vector<std::string>& lines) override;
  void DiscardJukebox(Jukebox& jukebox) override;
  void SelectFolder(Jukebox& jukebox, Folder& folder) override;
  void PlaceJukeboxes(const std::vector<PlacedJukebox>& placed, Jukebox& front) override;
  void OpenInTextEditor(const std::string& path) override;
  /// Sets a callback that runs at the end of start-up.
  void BeforeTip(std::function<void()> act) { before_tip_ = std::move(act); }
  /// Makes the tip due. It is shown by ShowDueTip, after the files that the user opens, so that it
  /// does not come before them.
  void ShowTip() override;
  /// Shows the tip of the start if it is due. The frame window keeps the keyboard focus.
  void ShowDueTip();

 private:
  frmSplash& SplashWindow();
  QWidget* ParentOfMessages();

  Tallow& tallow_;
  frmMDIForm1& frame_;
  bool silent_;
  std::function<void()> before_tip_;
  bool tip_is_due_ = false;
  std::unique_ptr<frmSplash> splash_;
  std::vector<Jukebox*> open_;
};

/// The runtime file that start-up checks first, at the path where Qt looks for it.
RuntimeFile QtsRuntimeFile();

}  // namespace tallow
