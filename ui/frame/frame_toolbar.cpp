// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_toolbar.h"

#include <QAction>
#include <QCoreApplication>
#include <QMainWindow>
#include <QToolBar>

#include "ui/support/frame_pictures.h"

namespace tallow {
namespace {

struct Button {
  const char* tooltip;  ///< null for a separator
  const char* picture;
  FrameCommand command;
  bool checks;  ///< whether the player's path must be set first
};

constexpr Button kSeparator{nullptr, nullptr, FrameCommand::kExit, false};

/// In the order of the button indexes, from 1.
constexpr Button kButtons[] = {
    {"Play Selected Songs", "play-selected", FrameCommand::kPlaySelectedSongs, false},
    {"Play All Songs in Folder", "play-all", FrameCommand::kPlayAllSongsInFolder, false},
    {"Play Next Track", "next", FrameCommand::kNextTrack, false},
    {"Play Previous Track", "previous", FrameCommand::kPreviousTrack, false},
    {"Pause", "pause", FrameCommand::kPause, false},
    {"Play", "play", FrameCommand::kPlay, true},
    {"Stop After Current Track", "stop-after", FrameCommand::kStopAfterTrack, false},
    kSeparator,
    {"Add Folder To Root", "folder-root", FrameCommand::kAddFolderToRoot, true},
    {"Add Folder To Current", "folder-selected", FrameCommand::kAddFolderToSelectedFolder, true},
    {"New Juke Box", "new", FrameCommand::kNew, false},
    {"Find Song", "find", FrameCommand::kFind, false},
    kSeparator,
    {"Bring In New Songs (Search Normal Directories)", "new-songs",
     FrameCommand::kNewSongsNormalLocations, false},
    {"Bring In New Songs (Search entire computer)", "new-songs-computer",
     FrameCommand::kNewSongsWholeComputerSearch, false},
    {"Background Picture", "picture", FrameCommand::kChangeBackgroundPicture, false},
    {"Help", "help", FrameCommand::kHelp, false},
};

/// Width and height of an icon, in pixels.
constexpr int kPictureSize = 24;

}  // namespace

QToolBar* AddFrameToolbar(QMainWindow& frame,
                          const std::function<void(FrameCommand command, bool checks)>& act) {
  const auto tr = [](const char* text) {
    return QCoreApplication::translate("FrameToolbar", text);
  };
  QToolBar* const bar = frame.addToolBar(tr("Toolbar"));
  bar->setObjectName(QStringLiteral("Toolbar1"));
  bar->setIconSize(QSize(kPictureSize, kPictureSize));
  int index = 0;
  for (const Button& button : kButtons) {
    ++index;
    QAction* const action = button.tooltip == nullptr
                                ? bar->addSeparator()
                                : bar->addAction(FramePicture(button.picture), tr(button.tooltip));
    action->setObjectName(QStringLiteral("Button%1").arg(index));
    if (button.tooltip == nullptr) continue;
    action->setToolTip(tr(button.tooltip));
    // A button that checks the player explains itself when it cannot act.
    if (!button.checks) action->setData(static_cast<int>(button.command));
    QObject::connect(
        action, &QAction::triggered, bar,
        [act, command = button.command, checks = button.checks] { act(command, checks); });
  }
  return bar;
}

}  // namespace tallow
