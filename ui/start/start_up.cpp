// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/start/start_up.h"

#include <cstdio>
#include <utility>

#include <QLibraryInfo>

#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/support/message_box.h"
#include "ui/support/open_text.h"
#include "ui/support/qt_path.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/user_folders.h"

namespace tallow {
namespace {

void PrintError(const std::string& text) { std::fprintf(stderr, "%s\n", text.c_str()); }

}  // namespace

StartUp::StartUp(Tallow& tallow, frmMDIForm1& frame, bool silent)
    : tallow_(tallow), frame_(frame), silent_(silent) {}

frmSplash& StartUp::SplashWindow() {
  if (!splash_) {
    splash_ = std::make_unique<frmSplash>([this] { tallow_.SearchCancelled = true; });
    splash_->ShowOKButton(false);
    splash_->Load();
  }
  return *splash_;
}

void StartUp::ShowSplash() { SplashWindow().ShowForSearch(); }

SearchProgress& StartUp::Splash() { return SplashWindow(); }

SearchProgress* StartUp::LoadedSplash() { return splash_.get(); }

void StartUp::ShowCancelButton(bool visible) { SplashWindow().ShowCancelButton(visible); }

void StartUp::ShowFoundLine(bool visible) { SplashWindow().ShowFoundLine(visible); }

void StartUp::UnloadSplash() { splash_.reset(); }

Jukebox& StartUp::NewJukebox() { return frame_.NewJukeboxWindow().Jukebox(); }

void StartUp::ShowJukebox(Jukebox& jukebox) {
  frmMain* const window = frame_.WindowOf(jukebox);
  if (window == nullptr) return;
  frame_.ShowJukeboxWindow(*window);
  frame_.show();
  // Only a visible window keeps the focus.
  window->GrabFocus();
}

bool StartUp::LoadJukebox(Jukebox& jukebox, const std::string& path, const clsMain& /*library*/,
                          const ResolveConfusedSongs& ask) {
  frmMain* const window = frame_.WindowOf(jukebox);
  return window != nullptr && window->PVExplorer1().Load(path, ask);
}

std::span<Jukebox* const> StartUp::OpenJukeboxes() {
  open_ = frame_.OpenJukeboxes();
  return open_;
}

QWidget* StartUp::ParentOfMessages() {
  if (splash_) return splash_.get();
  return frame_.isVisible() ? &frame_ : nullptr;
}

MessageAnswer StartUp::Show(const Message& message) {
  if (!silent_) return ShowMessageBox(message, ParentOfMessages());
  PrintError(message.text);
  if (message.buttons == MessageButtons::kOk) return MessageAnswer::kOk;
  return message.can_be_dismissed ? MessageAnswer::kCancel : MessageAnswer::kNo;
}

std::optional<std::size_t> StartUp::Choose(const std::string& text,
                                           const std::vector<std::string>& choices) {
  if (silent_) {
    PrintError(text);
    return std::nullopt;
  }
  return ChooseInMessageBox(text, choices, ParentOfMessages());
}

void StartUp::Notice(const std::vector<std::string>& lines) {
  if (silent_)
    for (const std::string& line : lines) PrintError(line);
  frame_.Notice(lines);
}

void StartUp::NoticeScan(const std::vector<std::string>& lines) { frame_.NoticeScan(lines); }

void StartUp::DiscardJukebox(Jukebox& jukebox) {
  if (frmMain* const window = frame_.WindowOf(jukebox)) delete window->parentWidget();
}

void StartUp::SelectFolder(Jukebox& jukebox, Folder& folder) {
  if (frmMain* const window = frame_.WindowOf(jukebox)) window->PVExplorer1().Select(folder);
}

void StartUp::PlaceJukeboxes(const std::vector<PlacedJukebox>& placed, Jukebox& front) {
  std::vector<JukeboxPlaces::Placed> windows;
  for (const auto& [jukebox, place] : placed)
    if (frmMain* const window = frame_.WindowOf(*jukebox)) windows.emplace_back(window, place);
  if (frmMain* const window = frame_.WindowOf(front)) frame_.Places().Restore(windows, *window);
}

void StartUp::OpenInTextEditor(const std::string& path) {
  if (silent_) return;
  // If the path does not exist, falls back to the copy in the folder of the executable, which need
  // not be the application folder.
  std::string shipped(FolderOfPath(ExecutablePath()));
  shipped += NameOfPath(path);
  const std::string& opened = FileExists(path) ? path : shipped;
  OpenText(opened);
}

void StartUp::ShowTip() {
  if (before_tip_) before_tip_();
  tip_is_due_ = !silent_;
}

void StartUp::ShowDueTip() {
  if (std::exchange(tip_is_due_, false)) frame_.ShowTipOfStart();
}

RuntimeFile QtsRuntimeFile() {
  const QString folder = QLibraryInfo::path(QLibraryInfo::PluginsPath);
  return RequiredRuntimeFile(PathOfQt(folder));
}

}  // namespace tallow
