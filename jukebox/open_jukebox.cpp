// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/open_jukebox.h"

#include "jukebox/jukebox.h"
#include "jukebox/sorting.h"
#include "util/path_text.h"

namespace tallow {

bool OpenJukeboxFile(const std::string& path, std::string_view caption, Jukebox& jukebox,
                     clsMain& library, std::span<Jukebox* const> windows, const LoadFromFile& load,
                     const AskQuestion& ask, const TagCache* found_tags,
                     const FilingProgress& progress, const ReadTags& read_tags) {
  if (!load(path, ask ? AskAboutConfusedSongs(path, library, ask) : ResolveConfusedSongs()))
    return false;
  if (jukebox.ColumnHeaders().empty()) jukebox.AddColumnHeader(kNameHeader);
  // FillAutomaticFolders treats an empty caption as "all jukeboxes".
  jukebox.Caption(caption.empty() ? NameOfPath(path) : caption);
  jukebox.FileLocation(FolderOfPath(path));
  FillAutomaticFolders(kFillNewToo, false, jukebox.Caption(), library, windows, found_tags,
                       progress, read_tags);
  return true;
}

}  // namespace tallow
