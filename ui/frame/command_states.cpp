// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/command_states.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include "jukebox/jukebox.h"
#include "jukebox/jukebox_clipboard.h"
#include "jukebox/special_folders.h"
#include "ui/frame/edit_in_text.h"
#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/support/display_text.h"

namespace tallow {
namespace {

/// What an edit command does in a text field.
TextEdit EditOf(FrameCommand command) {
  switch (command) {
    case FrameCommand::kUndo:
      return TextEdit::kUndo;
    case FrameCommand::kRedo:
      return TextEdit::kRedo;
    case FrameCommand::kCut:
      return TextEdit::kCut;
    case FrameCommand::kCopy:
      return TextEdit::kCopy;
    case FrameCommand::kPaste:
      return TextEdit::kPaste;
    default:
      return TextEdit::kDelete;
  }
}

/// The command of an item or a button; no value when it has none, and is never disabled.
std::optional<FrameCommand> CommandOf(const QAction& action) {
  if (!action.data().isValid()) return std::nullopt;
  return FrameCommand(action.data().toInt());
}

}  // namespace

CommandStates::CommandStates(const JukeboxArea& jukeboxes, const JukeboxClipboard& clipboard,
                             const TextFocus& text_focus, QMenuBar& menus, QToolBar& toolbar)
    : jukeboxes_(jukeboxes), clipboard_(clipboard), text_focus_(text_focus), toolbar_(toolbar) {
  for (const QAction* const menu : menus.actions()) {
    connect(menu->menu(), &QMenu::aboutToShow, this,
            [this, menu = menu->menu()] { MenuOpens(menu->actions()); });
    connect(menu->menu(), &QMenu::aboutToHide, this, [menu = menu->menu()] {
      for (QAction* const item : menu->actions())
        if (CommandOf(*item)) item->setEnabled(true);
    });
  }
  connect(&jukeboxes.Area(), &QMdiArea::subWindowActivated, this, &CommandStates::UpdateToolbar);
}

void CommandStates::Follow(frmMain& window) {
  connect(&window.PVExplorer1(), &PVExplorer::ListRefilled, this, &CommandStates::UpdateToolbar);
}

void CommandStates::MenuOpens(const QList<QAction*>& items) const {
  for (QAction* const item : items) {
    const std::optional<FrameCommand> command = CommandOf(*item);
    if (!command) continue;
    item->setEnabled(CouldAct(*command));
    if (*command == FrameCommand::kUndo || *command == FrameCommand::kRedo)
      NameStep(*item, *command);
  }
}

/// Names the step in the text of the item: "Undo Move 3 Songs".
void CommandStates::NameStep(QAction& item, FrameCommand command) const {
  const bool back = command == FrameCommand::kUndo;
  QString text = back ? tr("&Undo") : tr("&Redo");
  Jukebox* const jukebox = jukeboxes_.ActiveJukebox();
  if (jukebox != nullptr && !CanEditInText(text_focus_.Field(), EditOf(command))) {
    const EditHistory& history = jukebox->History();
    const std::string_view name = back ? history.NameToUndo() : history.NameToRedo();
    if (!name.empty()) text += QLatin1Char(' ') + DisplayText(name);
  }
  item.setText(text);
}

void CommandStates::UpdateToolbar() const {
  for (QAction* const button : toolbar_.actions())
    if (const std::optional<FrameCommand> command = CommandOf(*button))
      button->setEnabled(CouldAct(*command));
}

bool CommandStates::CouldAct(FrameCommand command) const {
  switch (command) {
    case FrameCommand::kClose:
      return jukeboxes_.Area().currentSubWindow() != nullptr;
    case FrameCommand::kUndo:
    case FrameCommand::kRedo:
    case FrameCommand::kCut:
    case FrameCommand::kCopy:
    case FrameCommand::kPaste:
    case FrameCommand::kDelete:
      if (const std::optional<bool> in_text = CanEditInText(text_focus_.Field(), EditOf(command)))
        return *in_text;
      return CouldEdit(command);
    case FrameCommand::kPlaySelectedSongs:
    case FrameCommand::kPlayAllSongsInFolder: {
      // Without a jukebox they say so.
      const Jukebox* const jukebox = jukeboxes_.ActiveJukebox();
      return jukebox == nullptr || jukebox->ListFolder() != nullptr;
    }
    case FrameCommand::kCascade:
    case FrameCommand::kTile:
      return HasWindow(false);
    case FrameCommand::kArrangeIcons:
      return HasWindow(true);
    default:
      return true;
  }
}

bool CommandStates::CouldEdit(FrameCommand command) const {
  frmMain* const window = jukeboxes_.ActiveWindow();
  if (command == FrameCommand::kUndo)
    return window != nullptr && window->Jukebox().History().CanUndo();
  if (command == FrameCommand::kRedo)
    return window != nullptr && window->Jukebox().History().CanRedo();
  // Without a jukebox they say so.
  if (window == nullptr) return true;
  const int pane = window->CurrentPaneWFocus();
  if (pane != kTreePane && pane != kListPane) return false;
  // Hits of a search are copied only.
  if (pane == kListPane && window->Jukebox().ShowsHits()) return command == FrameCommand::kCopy;
  if (command == FrameCommand::kPaste)
    return clipboard_.CopiedFolder() != nullptr || !clipboard_.Songs().empty();
  const Folder* const folder = window->FolderOfPane(pane);
  if (folder == nullptr) return false;
  // A special folder is not deleted, and says nothing. To cut it says why it is not cut.
  return command != FrameCommand::kDelete || pane == kListPane || OkToDelete(*folder);
}

bool CommandStates::HasWindow(bool minimized) const {
  const QList<QMdiSubWindow*> windows = jukeboxes_.Area().subWindowList();
  return std::any_of(windows.begin(), windows.end(), [minimized](const QMdiSubWindow* window) {
    return window->isVisible() && window->isMinimized() == minimized;
  });
}

}  // namespace tallow
