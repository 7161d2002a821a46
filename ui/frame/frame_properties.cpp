// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_properties.h"

#include <algorithm>

#include <QMdiSubWindow>
#include <QPointer>

#include "app/columns/song_columns.h"
#include "app/columns/song_properties.h"
#include "app/tallow.h"
#include "jukebox/folders_of_song.h"
#include "jukebox/jukebox.h"
#include "ui/dialogs/frm_properties.h"
#include "ui/frame/bring_to_front.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/support/display_text.h"
#include "ui/support/show_in_file_manager.h"
#include "util/number.h"

namespace tallow {
namespace {

/// "Artist / ABBA"
QString PathOf(const Folder& folder) {
  const QString text = DisplayText(folder.Text());
  return folder.Parent() == nullptr ? text
                                    : PathOf(*folder.Parent()) + QStringLiteral(" / ") + text;
}

}  // namespace

FrameProperties::FrameProperties(QWidget& frame, Tallow& tallow, JukeboxArea& jukeboxes,
                                 FrameMessages& messages)
    : frame_(frame),
      tallow_(tallow),
      jukeboxes_(jukeboxes),
      messages_(messages),
      show_file_(ShowInFileManager) {
  connect(&jukeboxes, &JukeboxArea::Added, this, [this](frmMain& window) {
    connect(&window, &frmMain::ShowProperties, this, &FrameProperties::Show);
  });
}

void FrameProperties::Show(const std::vector<std::int32_t>& songs, const QString& folder) {
  if (songs.empty()) return;
  const std::int32_t first = songs.front();
  const bool is_one = songs.size() == 1;
  PropertiesContext context;
  context.title = !folder.isEmpty() ? tr("Properties of the Songs of \"%1\"").arg(folder)
                  : is_one
                      ? tr("Properties of \"%1\"")
                            .arg(DisplayText(TitleOfSong(tallow_.library, tallow_.details, first)))
                      : tr("Properties of %1 Songs")
                            .arg(QString::fromStdString(
                                GroupedNumber(static_cast<std::int64_t>(songs.size()))));
  context.properties = PropertiesOf(songs, tallow_.library, tallow_.details, tallow_.play_counts);
  if (is_one) {
    context.folders = FoldersOf(first);
    context.names_jukeboxes = jukeboxes_.Open().size() > 1;
    context.show_file = [this, first] { ShowFileOf(first); };
  }
  frmProperties(std::move(context), &frame_).exec();
}

void FrameProperties::ShowFileOf(std::int32_t song) {
  if (tallow_.library.IsAway(song)) {
    messages_.Show({.text = tallow_.library.AwayText(song), .icon = MessageIcon::kInformation});
    return;
  }
  // The file manager may answer when the window is closed.
  const std::string path = tallow_.library.Song(song).Path();
  const QPointer<FrameProperties> here(this);
  show_file_(path, [here, path] {
    if (here != nullptr)
      here->messages_.Show({.text = "No file manager could be opened. The file is\n\n    " + path,
                            .icon = MessageIcon::kInformation});
  });
}

std::vector<FolderOfProperties> FrameProperties::FoldersOf(std::int32_t song) const {
  std::vector<FolderOfProperties> folders;
  for (const Jukebox* const jukebox : jukeboxes_.Open())
    for (const FolderOfSong& found : FoldersOfSong(*jukebox, song, tallow_.library))
      folders.push_back({.jukebox = DisplayText(jukebox->Caption()),
                         .folder = PathOf(*found.folder),
                         .show = [this, jukebox, key = found.folder->Key(), song] {
                           ShowSong(jukebox, key, song);
                         }});
  return folders;
}

void FrameProperties::ShowSong(const Jukebox* jukebox, std::uint32_t folder,
                               std::int32_t song) const {
  const std::vector<Jukebox*> open = jukeboxes_.Open();
  if (std::find(open.begin(), open.end(), jukebox) == open.end()) return;
  const Folder* const there = jukebox->Nodes().FindKey(folder);
  if (there == nullptr) return;
  const auto& entries = there->Items();
  const auto entry = std::find_if(entries.begin(), entries.end(), [song](const SongEntry& other) {
    return other.SubItem() == song;
  });
  if (entry == entries.end()) return;
  frmMain& window = *jukeboxes_.WindowOf(*jukebox);
  if (auto* const sub = qobject_cast<QMdiSubWindow*>(window.parentWidget()))
    BringToFront(jukeboxes_.Area(), *sub);
  window.PVExplorer1().SelectSong(*there, static_cast<int>(entry - entries.begin()));
  window.PVExplorer1().GrabFocus(true);
}

}  // namespace tallow
