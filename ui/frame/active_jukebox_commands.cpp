// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/active_jukebox_commands.h"

#include "app/tallow.h"
#include "ui/dialogs/frm_find.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"

namespace tallow {
frmMain* ActiveJukeboxCommands::ActiveWindow() {
  frmMain* const window = jukeboxes_.ActiveWindow();
  if (window == nullptr)
    messages_.ShowStatus("No jukebox is open. Open one, or make a new one, and try again.");
  return window;
}

bool ActiveJukeboxCommands::HasJukebox() {
  if (jukeboxes_.LastActive() != nullptr) return true;
  ActiveWindow();
  return false;
}

bool ActiveJukeboxCommands::Run(FrameCommand command) {
  switch (command) {
    case FrameCommand::kUndo:
      Undo();
      return true;
    case FrameCommand::kRedo:
      Redo();
      return true;
    case FrameCommand::kCut:
      Edit(TextEdit::kCut, TreeCommand::kCutFolder, ListCommand::kCutSongs);
      return true;
    case FrameCommand::kCopy:
      Edit(TextEdit::kCopy, TreeCommand::kCopyFolder, ListCommand::kCopySongs);
      return true;
    case FrameCommand::kPaste:
      Edit(TextEdit::kPaste, TreeCommand::kPasteFolder, ListCommand::kPasteSongs);
      return true;
    case FrameCommand::kDelete:
      Edit(TextEdit::kDelete, TreeCommand::kDeleteFolder, ListCommand::kDeleteSongs);
      return true;
    case FrameCommand::kFind:
      Find();
      return true;
    case FrameCommand::kAddFolderToRoot:
      Run(TreeCommand::kAddFolderToRoot);
      return true;
    case FrameCommand::kAddFolderToSelectedFolder:
      Run(TreeCommand::kAddFolderToSelected);
      return true;
    case FrameCommand::kPlaySelectedSongs:
      Run(ListCommand::kPlaySelectedSongs);
      return true;
    case FrameCommand::kPlayAllSongsInFolder:
      Run(ListCommand::kPlayAllSongsInFolder);
      return true;
    default:
      return false;
  }
}

void ActiveJukeboxCommands::Undo() {
  if (EditInText(text_focus_.Field(), TextEdit::kUndo)) return;
  if (frmMain* const window = jukeboxes_.ActiveWindow()) window->PVExplorer1().Undo();
}

void ActiveJukeboxCommands::Redo() {
  if (EditInText(text_focus_.Field(), TextEdit::kRedo)) return;
  if (frmMain* const window = jukeboxes_.ActiveWindow()) window->PVExplorer1().Redo();
}

void ActiveJukeboxCommands::Run(TreeCommand command) {
  frmMain* const window = ActiveWindow();
  if (window == nullptr) return;
  if (Folder* const folder = window->Jukebox().selectednode())
    window->Run(command, folder);
  else
    messages_.ShowStatus(
        "This jukebox has no folders. To add one, right-click in the tree and choose New Folder.");
}

void ActiveJukeboxCommands::Run(ListCommand command) {
  frmMain* const window = ActiveWindow();
  if (window == nullptr) return;
  if (Folder* const folder = window->Jukebox().ListFolder()) window->Run(command, folder);
}

void ActiveJukeboxCommands::Edit(TextEdit of_text, TreeCommand of_tree, ListCommand of_list) {
  if (EditInText(text_focus_.Field(), of_text)) return;
  frmMain* const window = ActiveWindow();
  if (window == nullptr) return;
  const int pane = window->CurrentPaneWFocus();
  Folder* const folder = window->FolderOfPane(pane);
  if (pane == kTreePane) window->Run(of_tree, folder);
  if (pane == kListPane) window->Run(of_list, folder);
}

void ActiveJukeboxCommands::Find() {
  if (ActiveWindow() == nullptr) return;
  if (find_ == nullptr)
    find_ = new frmFind([this] { return jukeboxes_.ActiveWindow(); }, tallow_.library,
                        messages_.Shower(), &frame_);
  find_->Begin();
  find_->exec();
  frmMain* const window = jukeboxes_.ActiveWindow();
  if (window == nullptr || !find_->HasFound()) return;
  jukeboxes_.Activate(*window);
  window->PVExplorer1().GrabFocus(true);
}

}  // namespace tallow
