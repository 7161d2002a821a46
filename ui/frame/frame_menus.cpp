// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_menus.h"

#include <span>

#include <QAction>
#include <QCoreApplication>
#include <QKeySequence>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>

#include "ui/frame/bring_to_front.h"
#include "ui/frame/file_menu.h"
#include "ui/support/frame_pictures.h"
#include "ui/support/shown_title.h"

namespace tallow {
namespace {

struct MenuItem {
  const char* name;     ///< null for a separator
  const char* caption;  ///< the text of the item, kept exactly, misspellings included
  const char* key;      ///< null for none
  FrameCommand command;
  const char* picture;  ///< null for none
};

constexpr MenuItem kSeparator{nullptr, nullptr, nullptr, FrameCommand::kExit, nullptr};

constexpr MenuItem kEdit[] = {
    {"mnuUndo", "&Undo", "Ctrl+Z", FrameCommand::kUndo, nullptr},
    {"mnuRedo", "&Redo", "Ctrl+Shift+Z", FrameCommand::kRedo, nullptr},
    kSeparator,
    {"mnuCut", "Cu&t", "Ctrl+X", FrameCommand::kCut, "cut"},
    {"mnuCopy", "&Copy", "Ctrl+C", FrameCommand::kCopy, "copy"},
    {"mnuPaste", "&Paste", "Ctrl+V", FrameCommand::kPaste, "paste"},
    {"mnuDelete", "Delete", "Del", FrameCommand::kDelete, "delete"},
    kSeparator,
    {"mnuFind", "&Find", "Ctrl+F", FrameCommand::kFind, "find"},
    {"mnuFindField", "Find &While Typing", "Ctrl+E", FrameCommand::kFindField, nullptr},
    kSeparator,
    {"mnuAddFolderToRoot", "&Add Folder To Root", nullptr, FrameCommand::kAddFolderToRoot,
     "folder-root"},
    {"mnuAddFolderToSelectedFolder", "A&dd Folder To Selected Folder", nullptr,
     FrameCommand::kAddFolderToSelectedFolder, "folder-selected"},
};

constexpr MenuItem kSongs[] = {
    {"mnuNewSongsNormalLocations", "&Bring In New Songs (Look where I normally keep them)", nullptr,
     FrameCommand::kNewSongsNormalLocations, "new-songs"},
    {"mnuNewSongsWholeComputerSearch", "B&ring In New Songs (Search my whole computer)", nullptr,
     FrameCommand::kNewSongsWholeComputerSearch, "new-songs-computer"},
    kSeparator,
    {"mnuPlaySeletedSongs", "&Play Selected Songs", "Ctrl+P", FrameCommand::kPlaySelectedSongs,
     "play-selected"},
    {"mnuPlayAllTheSongInNode", "P&lay All Songs In Folder", "Ctrl+L",
     FrameCommand::kPlayAllSongsInFolder, "play-all"},
    kSeparator,
    {"mnuNextTrack", "&Next Track", "Ctrl+T", FrameCommand::kNextTrack, "next"},
    {"mnuPreviousTrack", "P&revious Track", "Ctrl+R", FrameCommand::kPreviousTrack, "previous"},
    {"mnuPause", "P&ause", "Ctrl+U", FrameCommand::kPause, "pause"},
    {"mnuPlay", "Pla&y", "Ctrl+Y", FrameCommand::kPlay, "play"},
    {"mnuStop", "&Stop", nullptr, FrameCommand::kStop, "stop"},
    {"mnuStopAfterTrack", "S&top After Track", nullptr, FrameCommand::kStopAfterTrack,
     "stop-after"},
    {"mnuCloseWinAmp", "&Close WinAmp", nullptr, FrameCommand::kCloseWinAmp, nullptr},
};

constexpr MenuItem kPicture[] = {
    {"mnuChangeBackgroup", "Change Backgroup Picture", nullptr,
     FrameCommand::kChangeBackgroundPicture, "picture"},
};

constexpr MenuItem kWindowList[] = {
    {"mnuCascade", "&Cascade", "Shift+F4", FrameCommand::kCascade, nullptr},
    {"mnuTile", "&Tile", "Shift+F5", FrameCommand::kTile, nullptr},
    {"mnuArrageIcons", "&Arrange Icons", nullptr, FrameCommand::kArrangeIcons, nullptr},
};

constexpr MenuItem kTools[] = {
    {"mnuPreferences", "&Preferences...", "Ctrl+,", FrameCommand::kPreferences, nullptr},
    {"mnuWhereMyMusicIs", "&Where My Music Is...", nullptr, FrameCommand::kWhereMyMusicIs, nullptr},
    {"mnuFileAgainByTags", "&File Again By Tags", nullptr, FrameCommand::kFileAgainByTags, nullptr},
    kSeparator,
    {"mnuPlayerBar", "Player &Bar", nullptr, FrameCommand::kPlayerBar, nullptr},
    {"mnuPlayerPanel", "Player Pa&nel", nullptr, FrameCommand::kPlayerPanel, nullptr},
    {"mnuQueue", "&Queue", "Ctrl+Shift+U", FrameCommand::kQueue, nullptr},
    {"mnuShowPlayingSong", "&Show Playing Song", "Ctrl+J", FrameCommand::kShowPlayingSong, nullptr},
};

constexpr MenuItem kHelp[] = {
    {"mnuHelpp", "&Help", nullptr, FrameCommand::kHelp, "help"},
    {"mnuTip", "&Tip", nullptr, FrameCommand::kTip, "tip"},
    {"mnuAbout", "&About", nullptr, FrameCommand::kAbout, nullptr},
};

QString Tr(const char* text) { return QCoreApplication::translate("FrameMenus", text); }

QMenu* AddMenu(QMenuBar& bar, const char* name, const char* caption,
               std::span<const MenuItem> items, const std::function<void(FrameCommand)>& act) {
  QMenu* const menu = bar.addMenu(Tr(caption));
  menu->setObjectName(QLatin1String(name));
  for (const MenuItem& item : items) {
    if (item.name == nullptr) {
      menu->addSeparator();
      continue;
    }
    QAction* const action = menu->addAction(Tr(item.caption));
    action->setObjectName(QLatin1String(item.name));
    action->setData(static_cast<int>(item.command));
    if (item.key != nullptr) action->setShortcut(QKeySequence(QLatin1String(item.key)));
    if (item.picture != nullptr) action->setIcon(FramePicture(item.picture));
    QObject::connect(action, &QAction::triggered, menu,
                     [act, command = item.command] { act(command); });
  }
  return menu;
}

FileMenu* AddFileMenu(QMenuBar& bar, const std::function<void(FrameCommand)>& act) {
  auto* const menu = new FileMenu(&bar);
  bar.addMenu(menu);
  const std::pair<void (FileMenu::*)(), FrameCommand> commands[] = {
      {&FileMenu::New, FrameCommand::kNew},          {&FileMenu::Open, FrameCommand::kOpen},
      {&FileMenu::CloseChild, FrameCommand::kClose}, {&FileMenu::Save, FrameCommand::kSave},
      {&FileMenu::SaveAs, FrameCommand::kSaveAs},    {&FileMenu::Exit, FrameCommand::kExit}};
  for (const auto& [signal, command] : commands)
    QObject::connect(menu, signal, menu, [act, command = command] { act(command); });
  menu->findChild<QAction*>(QStringLiteral("mnuClose"))
      ->setData(static_cast<int>(FrameCommand::kClose));
  return menu;
}

/// Lists the windows of the area in the menu, in the order they were opened.
void ListWindows(QMenu& menu, QMdiArea& area) {
  for (QAction* const action : menu.actions())
    if (action->property("of_window").toBool()) delete action;
  const QList<QMdiSubWindow*> windows = area.subWindowList(QMdiArea::CreationOrder);
  int number = 0;
  for (QMdiSubWindow* const window : windows) {
    if (!window->isVisible()) continue;
    if (++number == 1) menu.addSeparator()->setProperty("of_window", true);
    QString title = ShownTitle(*window->widget());
    title.replace(QLatin1Char('&'), QLatin1String("&&"));
    QAction* const action =
        menu.addAction(number < 10 ? QStringLiteral("&%1 %2").arg(number).arg(title) : title);
    action->setObjectName(QStringLiteral("WindowList%1").arg(number));
    action->setProperty("of_window", true);
    action->setCheckable(true);
    action->setChecked(window == area.currentSubWindow());
    QObject::connect(action, &QAction::triggered, window,
                     [&area, window] { BringToFront(area, *window); });
  }
}

}  // namespace

FileMenu* AddFrameMenus(QMenuBar& bar, const std::function<void(FrameCommand)>& act) {
  FileMenu* const file = AddFileMenu(bar, act);
  AddMenu(bar, "mnuEdit", "&Edit", kEdit, act);
  AddMenu(bar, "mnuSongs", "&Songs", kSongs, act);
  AddMenu(bar, "mnuPicture", "&Picture", kPicture, act);
  AddMenu(bar, "mnuWindowList", "&WindowList", kWindowList, act);
  AddMenu(bar, "mnuTools", "&Tools", kTools, act);
  AddMenu(bar, "mnuHelp", "&Help", kHelp, act);
  return file;
}

void KeepWindowList(QMenu& menu, QMdiArea& area) {
  QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu, &area] { ListWindows(menu, area); });
}

}  // namespace tallow
