// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/jukebox_commands.h"

#include <algorithm>
#include <string>
#include <utility>

#include <QPointer>

#include "app/file_again_command.h"
#include "app/play_commands.h"
#include "app/tallow.h"
#include "jukebox/folders_of_song.h"
#include "jukebox/found_songs.h"
#include "jukebox/ranking.h"
#include "jukebox/special_folders.h"
#include "ui/jukebox/explorer/explorer_edits.h"
#include "ui/jukebox/explorer/shown_songs.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/support/display_text.h"

namespace tallow {

JukeboxCommands::JukeboxCommands(Tallow& tallow, Jukebox& jukebox, PVExplorer& explorer,
                                 ShowMessage show)
    : tallow_(tallow), jukebox_(jukebox), explorer_(explorer), show_(std::move(show)) {
  connect(&explorer, &PVExplorer::BeforeCut, this, &JukeboxCommands::BeforeCut);
  connect(&explorer, &PVExplorer::RanksChanged, this, &JukeboxCommands::SaveRanks);
  connect(&explorer, &PVExplorer::RankStepsWanted, this, &JukeboxCommands::RaiseRanks);
}

void JukeboxCommands::Run(TreeCommand command, Folder* node) {
  using enum TreeCommand;
  switch (command) {
    case kAddFolderToSelected:
      if (node != nullptr) explorer_.AddFolder(node);
      return;
    case kAddFolderToRoot:
      explorer_.AddFolder(nullptr);
      return;
    case kCutFolder:
      if (node != nullptr) explorer_.CutFolder(*node);
      return;
    case kCopyFolder:
      if (node != nullptr) explorer_.CopyFolder(*node);
      return;
    case kPasteFolder:
      explorer_.Paste(node);
      return;
    case kDeleteFolder:
      if (node != nullptr) DeleteFolder(*node);
      return;
    case kSortNodes:
      explorer_.SortNodes(node);
      return;
    case kMoveToRoot:
      if (node != nullptr) explorer_.MoveToRoot(*node);
      return;
    case kAddAlbumFolder:
      return AddAlbum();
    case kFolderProperties:
      if (node != nullptr) ShowPropertiesOf(*node);
      return;
    case kRename:
      if (node != nullptr && !IsSpecialFolder(*node)) explorer_.EditText(*node);
      return;
    case kPlayFolder:
    case kPlayFolderNext:
    case kAddFolderToQueue:
      if (node != nullptr) PlayFolder(command, *node);
      return;
    default:
      return;
  }
}

void JukeboxCommands::Run(ListCommand command, Folder* node) {
  if (node != nullptr) return ActOnList(command, *node);
  // Without any folder, songs and folders can still be pasted into the root.
  if (command == ListCommand::kPasteSongs) explorer_.Paste(nullptr);
}

void JukeboxCommands::ActOnList(ListCommand command, Folder& node) {
  using enum ListCommand;
  // Songs can be selected only in the list.
  const bool on_show = &node == jukebox_.ListFolder();
  // All commands of the list act on these songs.
  tallow_.SongsToPlay.clear();
  if (on_show) tallow_.SongsToPlay = SongsOf(node, explorer_.SelectedRows());
  const int rank_item = RankItemOf(command);
  const bool acts_on_selection =
      rank_item != 0 || command == kCutSongs || command == kDeleteSongs || command == kCopySongs ||
      command == kPlayFromHere || command == kPlayNext || command == kAddToQueue ||
      command == kShowInFolder || command == kProperties;
  if (IsOfHits(node) && RefusesForHits(command)) return;
  if (acts_on_selection && tallow_.SongsToPlay.empty())
    return emit Problem({tr("No song is selected.")});
  if (rank_item != 0) {
    if (on_show) RankSelectedSongs(rank_item);
    return;
  }
  switch (command) {
    case kPlayAllSongsInFolder:
      return Play(node, ShownSongsOf(node, tallow_.library),
                  IsOfHits(node) ? tr("No songs were found to play.")
                                 : tr("This folder holds no songs to play."));
    case kPlaySelectedSongs:
      return Play(node, tallow_.SongsToPlay, tr("No song is selected."));
    case kCutSongs:
    case kDeleteSongs:
      // Both move the songs to the clipboard.
      if (on_show) explorer_.CutSongs(command == kCutSongs ? "Cut" : "Delete");
      return;
    case kCopySongs:
      if (on_show) explorer_.CopySongs();
      return;
    case kPasteSongs:
      explorer_.Paste(&node);
      return;
    case kChangeBackgroundPicture:
      emit ChangeBackgroundPicture();
      return;
    case kPlayFromHere:
      return PlayFrom(node, explorer_.ChosenRow());
    case kPlayNext:
      emit PlayNext(tallow_.SongsToPlay, OriginOf(node));
      return;
    case kAddToQueue:
      emit AddToQueue(tallow_.SongsToPlay, OriginOf(node));
      return;
    case kShowInFolder:
      return ShowInFolder(explorer_.ChosenRow());
    case kProperties:
      emit ShowProperties(tallow_.SongsToPlay, {});
      return;
    default:
      return;
  }
}

/// Reports the commands that change a folder, because hits of a search are none.
bool JukeboxCommands::RefusesForHits(ListCommand command) {
  using enum ListCommand;
  if (command == kPasteSongs) {
    emit Problem({tr("The list shows the songs found. Songs can be pasted only into a folder.")});
    return true;
  }
  if (command != kCutSongs && command != kDeleteSongs) return false;
  emit Problem(
      {tr("The list shows the songs found. Show a song in its folder to remove it there.")});
  return true;
}

void JukeboxCommands::ShowInFolder(int row) {
  const Folder* const list = jukebox_.ListFolder();
  if (list == nullptr || row < 0) return;
  const std::int32_t song = ShownSongs::EntryAt(*list, row).record;
  const FolderOfSong place = FolderToShowSongIn(jukebox_, song, tallow_.library);
  if (place.folder == nullptr)
    return emit Problem({tr("No folder of this jukebox has this song.")});
  if (explorer_.SelectSong(*place.folder, place.index) < 0)
    return emit Problem({tr("The file of this song is missing.")});
  explorer_.GrabFocus(true);
}

void JukeboxCommands::ShowPropertiesOf(const Folder& node) {
  const std::vector<std::int32_t> songs = SongsBelow(node, tallow_.library);
  if (songs.empty()) return emit Problem({tr("This folder holds no songs.")});
  emit ShowProperties(songs, DisplayText(node.Text()));
}

void JukeboxCommands::OpenSong(int row) {
  const Folder* const folder = jukebox_.ListFolder();
  if (folder == nullptr) return;
  if (tallow_.library.Switches().plays_on)
    PlayFrom(*folder, row);
  else
    emit PlaySongs(SongsOf(*folder, {row}), OriginOf(*folder));
}

void JukeboxCommands::PlayFolder(TreeCommand command, const Folder& folder) {
  const std::vector<std::int32_t> songs = ShownSongsOf(folder, tallow_.library);
  const QString if_none = tr("This folder holds no songs to play.");
  if (command == TreeCommand::kPlayFolder) return Play(folder, songs, if_none);
  if (songs.empty()) return emit Problem({if_none});
  if (command == TreeCommand::kPlayFolderNext)
    emit PlayNext(songs, OriginOf(folder));
  else
    emit AddToQueue(songs, OriginOf(folder));
}

void JukeboxCommands::Play(const Folder& folder, const std::vector<std::int32_t>& songs,
                           const QString& if_none) {
  emit PlaySongs(songs, OriginOf(folder));
  if (songs.empty()) emit Problem({if_none});
}

void JukeboxCommands::PlayFrom(const Folder& folder, int row) {
  if (row < 0 || static_cast<std::size_t>(row) >= folder.Items().size()) return;
  const auto chosen = std::count_if(
      folder.Items().begin(), folder.Items().begin() + row,
      [this](const SongEntry& entry) { return !tallow_.library.IsHidden(entry.SubItem()); });
  emit PlayFromHere(ShownSongsOf(folder, tallow_.library), static_cast<std::size_t>(chosen),
                    OriginOf(folder));
}

SongsOrigin JukeboxCommands::OriginOf(const Folder& folder) const {
  return {&jukebox_, folder.Key()};
}

void JukeboxCommands::RankSelectedSongs(int item) {
  const std::vector<int> rows = explorer_.SelectedRows();
  ShowRanks(rows,
            RankSongs(jukebox_.History(), *jukebox_.ListFolder(), rows, item, tallow_.library));
}

void JukeboxCommands::RaiseRanks(int steps) {
  Folder* const shown = jukebox_.ListFolder();
  if (shown == nullptr) return;
  const auto raised = [steps](int rank) {
    const int now = std::clamp(rank, kNeverRanked, kBestRank);
    const int next = std::clamp(now + steps, kNeverRanked, kBestRank);
    return NewRank{std::to_string(next), next};
  };
  const std::vector<int> rows = explorer_.SelectedRows();
  ShowRanks(rows, RankSongs(jukebox_.History(), *shown, rows, raised, tallow_.library));
}

void JukeboxCommands::ShowRanks(const std::vector<int>& rows, bool saved) {
  Folder& shown = *jukebox_.ListFolder();
  // In the classic style, other entries of the songs show the rank when the list is labelled again.
  if (tallow_.preferences.switches().columns_of_details) ShowRanksAtAllEntries(shown, rows);
  ReportRanks(SongsOf(shown, rows), saved);
}

void JukeboxCommands::SaveRanks(const std::vector<std::int32_t>& songs) {
  jukebox_.RanksChanged(tallow_.library, songs);
  ReportRanks(songs, tallow_.library.Save());
}

void JukeboxCommands::ReportRanks(const std::vector<std::int32_t>& songs, bool saved) {
  jukebox_.PicturesChanged();
  emit RanksChanged(songs);
  const QStringList problems = DisplayMessages(tallow_.TakeProblems());
  if (!problems.isEmpty()) emit Problem(problems);
  if (!saved)
    show_({.text = "The ranks could not be saved. " + tallow_.library.SaveError() +
                   ".\n\nThe ranks are kept until you close Tallow, and are saved together with "
                   "the next successful change.",
           .icon = MessageIcon::kCritical});
}

void JukeboxCommands::DeleteFolder(Folder& node) {
  if (!OkToDelete(node)) return;
  // The folder and this window may be deleted while the message box is open.
  const std::uint32_t key = node.Key();
  const QPointer<JukeboxCommands> here(this);
  if (show_({.text = "Are you sure you want to delete this folder and all it's contents?",
             .icon = MessageIcon::kQuestion,
             .buttons = MessageButtons::kYesNoCancel}) != MessageAnswer::kYes ||
      here == nullptr)
    return;
  if (Folder* const folder = jukebox_.Nodes().FindKey(key)) explorer_.DeleteFolder(*folder);
}

void JukeboxCommands::AddAlbum() {
  if (!OffersAlbumFolder(jukebox_, tallow_.library)) return;
  const PVExplorer::Place place = explorer_.CurrentPlace();
  const FiledAgain filed = AddAlbumFolder(jukebox_, tallow_, begin_work_);
  explorer_.GoTo(place);
  if (const Folder* const album = FindAlbumFolder(jukebox_.Nodes())) explorer_.Select(*album);
  emit Problem(DisplayMessages(filed.lines));
}

void JukeboxCommands::BeforeCut(BeforeCutEvent& event) {
  std::string text;
  if (event.songs && IsAllSongs(event.folder))
    text = "Can not cut a song from 'All Songs.'  You can copy a song if you wish.";
  if (!event.songs && IsSpecialFolder(event.folder))
    text = "This is a special node that can not be cut.  It can be copied if you wish.";
  if (text.empty()) return;
  event.cancel = true;
  show_({.text = std::move(text), .icon = MessageIcon::kInformation});
}

}  // namespace tallow
