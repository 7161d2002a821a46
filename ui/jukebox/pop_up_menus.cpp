// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/pop_up_menus.h"

#include <string>

#include <QAction>
#include <QCoreApplication>
#include <QKeySequence>
#include <QMenu>

#include "app/playing/player_model.h"
#include "jukebox/folder_tree.h"
#include "jukebox/special_folders.h"
#include "ui/jukebox/rank_action.h"
#include "ui/jukebox/rank_picture.h"
#include "ui/support/display_text.h"

namespace tallow {
namespace {

/// Builds one pop-up menu.
/// \tparam Command the type of its commands
template <typename Command>
class Builder {
 public:
  Builder(QWidget* parent, const char* name, std::function<void(Command)> act)
      : menu_(new QMenu(parent)), act_(std::move(act)) {
    menu_->setObjectName(QLatin1String(name));
  }

  QMenu* Menu() { return menu_; }
  QAction* Add(const QString& caption, Command command) { return Add(*menu_, caption, command); }
  QAction* Add(QMenu& to, const QString& caption, Command command) {
    return Add(to, new QAction(caption, &to), command);
  }
  QAction* Add(QMenu& to, QAction* action, Command command) {
    to.addAction(action);
    action->setData(static_cast<int>(command));
    // The menu must not be the receiver: when it removes an action, it disconnects itself from it.
    QObject::connect(action, &QAction::triggered, action, [act = act_, command] { act(command); });
    return action;
  }
  /// Adds an item that displays a shortcut. The control handles the key itself, because it knows
  /// the pane.
  QAction* Add(const QString& caption, Command command, const QKeySequence& key) {
    QAction* const action = Add(caption, command);
    SetKey(*action, key);
    return action;
  }
  static void SetKey(QAction& action, const QKeySequence& key) {
    action.setShortcut(key);
    action.setShortcutContext(Qt::WidgetShortcut);
    action.setShortcutVisibleInContextMenu(true);
  }

 private:
  QMenu* menu_;
  std::function<void(Command)> act_;
};

QString Tr(const char* text) { return QCoreApplication::translate("PopUpMenus", text); }

static_assert(RankCommand(kRankItems) == ListCommand::kRankWorst);

/// The object name of the menu of the ranks.
constexpr const char* kRankMenu = "RankMenu";
/// The object name of the item "Add Album Folder".
constexpr const char* kAlbumItem = "AddAlbumFolder";
/// The object name of the item "Properties..." of the tree, its last one.
constexpr const char* kFolderPropertiesItem = "FolderProperties";

const QKeySequence kCutKey(Qt::CTRL | Qt::Key_X);
const QKeySequence kCopyKey(Qt::CTRL | Qt::Key_C);
const QKeySequence kPasteKey(Qt::CTRL | Qt::Key_V);
const QKeySequence kDeleteKey(Qt::Key_Delete);
const QKeySequence kPropertiesKey(Qt::ALT | Qt::Key_Enter);
const QKeySequence kRenameKey(Qt::Key_F2);

/// The key of an item of the rank menu: Ctrl and its rank, or 0 for "No Rank"; none for the worst
/// item, whose rank is that of the item before it.
QKeySequence RankKey(int item) {
  if (item == kRankItems) return {};
  const int digit = item == kNoRankItem ? 0 : kBestRank + 1 - item;
  return QKeySequence(QKeyCombination(Qt::ControlModifier, Qt::Key(Qt::Key_0 + digit)));
}

/// Disables an item that the player cannot carry out; its tooltip says why.
void EnableForPlayer(QAction& action, const PlayerModel* player) {
  const std::string reason =
      player == nullptr ? std::string() : player->WhyNot(PlayerFeature::kPlayNext);
  action.setEnabled(reason.empty());
  action.setToolTip(DisplayText(reason));
  action.setWhatsThis(DisplayText(reason));
}

}  // namespace

QMenu* MakeListMenu(QWidget* parent, const std::function<void(ListCommand)>& act) {
  using enum ListCommand;
  Builder<ListCommand> builder(parent, "ListMenu", act);
  builder.Add(Tr("Play All Songs in Folder"), kPlayAllSongsInFolder);
  builder.Add(Tr("Play Selected Songs"), kPlaySelectedSongs);
  builder.Menu()->addSeparator();
  builder.Add(Tr("Cu&t"), kCutSongs, kCutKey);
  builder.Add(Tr("&Copy"), kCopySongs, kCopyKey);
  builder.Add(Tr("&Paste"), kPasteSongs, kPasteKey);
  builder.Add(Tr("&Delete"), kDeleteSongs, kDeleteKey);
  QMenu* const ranks = builder.Menu()->addMenu(Tr("&Rank"));
  ranks->setObjectName(QLatin1String(kRankMenu));
  ranks->setToolTipsVisible(true);
  for (int item = 1; item <= kNoRankItem; ++item) {
    const ListCommand command = RankCommand(item);
    const QString caption = command == kRankBest    ? Tr("Rank it - Best")
                            : command == kRankWorst ? Tr(".  .  .   to worst")
                            : command == kNoRank    ? Tr("No Rank")
                                                    : QString();
    const int picture = command == kNoRank ? kMinRankPicture : kBestRankPicture - (item - 1);
    // The worst item first shows the picture of no rank.
    const int rank = command == kRankWorst ? picture + 1 : picture;
    builder.SetKey(*builder.Add(*ranks, new RankAction(caption, picture, rank, ranks), command),
                   RankKey(item));
  }
  builder.Add(Tr("Change Background Picture . . ."), kChangeBackgroundPicture);
  builder.Menu()->addSeparator();
  builder.Add(Tr("Play &From Here"), kPlayFromHere);
  builder.Add(Tr("Play &Next"), kPlayNext);
  builder.Add(Tr("&Add To Queue"), kAddToQueue);
  builder.Add(Tr("&Show In Folder"), kShowInFolder);
  builder.Add(Tr("Pr&operties..."), kProperties, kPropertiesKey);
  builder.Menu()->setToolTipsVisible(true);
  return builder.Menu();
}

void AddColumnsItem(QMenu& list_menu, QMenu& columns) {
  const QList<QAction*> items = list_menu.actions();
  // "Properties..." stays the last item.
  list_menu.insertMenu(items.back(), &columns)->setData(static_cast<int>(ListCommand::kColumns));
}

void EnableListItems(QMenu& list_menu, const PlayerModel* player, bool paste) {
  for (QAction* const action : list_menu.actions()) {
    const auto command = ListCommand(action->data().toInt());
    if (command == ListCommand::kPlayNext) EnableForPlayer(*action, player);
    if (command == ListCommand::kPasteSongs) action->setEnabled(paste);
  }
}

void EnableItemsForHits(QMenu& list_menu, bool hits, bool finds) {
  using enum ListCommand;
  for (QAction* const action : list_menu.actions()) {
    const auto command = ListCommand(action->data().toInt());
    if (command == kCutSongs || command == kDeleteSongs) action->setEnabled(!hits);
    if (command == kPasteSongs && hits) action->setEnabled(false);
    if (command != kShowInFolder) continue;
    action->setVisible(hits || finds);
    action->setEnabled(hits);
  }
}

QMenu* MakeTreeMenu(QWidget* parent, const std::function<void(TreeCommand)>& act) {
  using enum TreeCommand;
  Builder<TreeCommand> builder(parent, "TreeMenu", act);
  QMenu* const folders = builder.Menu()->addMenu(Tr("New Folder"));
  folders->setObjectName(QStringLiteral("NewFolderMenu"));
  builder.Add(*folders, Tr("Add Folder to Selected Folder"), kAddFolderToSelected);
  builder.Add(*folders, Tr("Add Folder to Root"), kAddFolderToRoot);
  builder.Add(Tr("Cu&t"), kCutFolder, kCutKey);
  builder.Add(Tr("&Copy"), kCopyFolder, kCopyKey);
  builder.Add(Tr("&Paste"), kPasteFolder, kPasteKey);
  builder.Add(Tr("&Delete"), kDeleteFolder, kDeleteKey);
  builder.Add(Tr("Sort Nodes"), kSortNodes);
  builder.Add(Tr("Move To Root"), kMoveToRoot);
  builder.Add(Tr("Rena&me"), kRename, kRenameKey);
  builder.Menu()->addSeparator();
  builder.Add(Tr("Play &All Songs in Folder"), kPlayFolder);
  builder.Add(Tr("Play &Next"), kPlayFolderNext);
  builder.Add(Tr("Add To &Queue"), kAddFolderToQueue);
  builder.Menu()->setToolTipsVisible(true);
  QAction* const album = builder.Add(Tr("Add Al&bum Folder"), kAddAlbumFolder);
  album->setObjectName(QLatin1String(kAlbumItem));
  builder.Menu()->removeAction(album);
  builder.Add(Tr("Pr&operties..."), kFolderProperties, kPropertiesKey)
      ->setObjectName(QLatin1String(kFolderPropertiesItem));
  return builder.Menu();
}

void ShowMoreCommands(QMenu& list_menu, QMenu& tree_menu, bool on) {
  const auto show = [on](QMenu& menu, const auto&... commands) {
    for (QMenu* const part : {&menu, menu.findChild<QMenu*>(QLatin1String(kRankMenu))}) {
      if (part == nullptr) continue;
      for (QAction* const action : part->actions()) {
        const int command = action->data().toInt();
        if (((command == static_cast<int>(commands)) || ...)) action->setVisible(on);
      }
    }
  };
  show(list_menu, ListCommand::kNoRank, ListCommand::kProperties, ListCommand::kColumns);
  show(tree_menu, TreeCommand::kRename, TreeCommand::kPlayFolder, TreeCommand::kPlayFolderNext,
       TreeCommand::kAddFolderToQueue, TreeCommand::kFolderProperties);
}

void OfferAlbumFolder(QMenu& tree_menu, bool offers) {
  auto* const album = tree_menu.findChild<QAction*>(QLatin1String(kAlbumItem));
  if (offers)
    tree_menu.insertAction(tree_menu.findChild<QAction*>(QLatin1String(kFolderPropertiesItem)),
                           album);
  else
    tree_menu.removeAction(album);
}

void EnableTreeItems(QMenu& tree_menu, const Folder* folder, const PlayerModel* player,
                     bool paste) {
  using enum TreeCommand;
  for (QAction* const action : tree_menu.findChildren<QAction*>()) {
    const auto command = TreeCommand(action->data().toInt());
    if (command == kAddFolderToSelected || command == kCutFolder || command == kCopyFolder ||
        command == kPlayFolder || command == kAddFolderToQueue || command == kFolderProperties)
      action->setEnabled(folder != nullptr);
    // A special folder is not deleted, and says nothing. To cut it says why it is not cut.
    if (command == kDeleteFolder || command == kRename)
      action->setEnabled(folder != nullptr && OkToDelete(*folder));
    if (command == kPlayFolderNext) EnableForPlayer(*action, player);
    if (command == kPlayFolderNext && folder == nullptr) action->setEnabled(false);
    if (command == kMoveToRoot) action->setEnabled(folder != nullptr && folder->Level() > 0);
    if (command == kPasteFolder) action->setEnabled(paste);
  }
}

}  // namespace tallow
