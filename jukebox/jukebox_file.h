// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jukebox/folder_tree.h"
#include "jukebox/jukebox_format.h"
#include "jukebox/saved_content.h"
#include "jukebox/song_links.h"

namespace tallow {

class clsMain;

/// A jukebox as it was read from a file, with its songs linked to the library.
struct LoadedJukebox {
  FolderTree folders;
  std::vector<std::string> columns;  ///< the headers of the list
};

/// The file of one jukebox: where it is, saving and loading, and whether the jukebox still has the
/// content of the file. The format is described in jukebox_format.h.
class JukeboxFile {
 public:
  /// The path of the file that was last loaded or saved; empty for none.
  const std::string& Path() const noexcept { return path_; }

  /// The directory for the file, ending in a separator; empty if the jukebox was never saved.
  const std::string& Location() const noexcept { return location_; }
  void Location(std::string_view folder) { location_ = folder; }

  /// Why the last Save, Load or LoadUnsaved failed, see there.
  const std::string& Problem() const noexcept { return problem_; }

  /// Encodes a jukebox as the bytes of its file. Songs that the library lacks keep the names that
  /// the loaded file had for them.
  std::string Encode(const FolderTree& folders, const std::vector<std::string>& columns,
                     const clsMain& library) const;

  /// Writes a jukebox to a file, replacing the file atomically. An existing file with other content
  /// is kept beside it as a ".bak" backup.
  ///
  /// \returns true on success; otherwise Problem() names the file, the problem and what to do, and
  /// the old file is unchanged
  bool Save(const std::string& path, const FolderTree& folders,
            const std::vector<std::string>& columns, const clsMain& library);

  /// Reads a jukebox from a file. Path() is then that file.
  ///
  /// \param ask see RelinkSongs; may be empty
  /// \returns null on failure; then Problem() names the file, the problem and what to do, and
  /// nothing else has changed
  std::unique_ptr<LoadedJukebox> Load(const std::string& path, const clsMain& library,
                                      const ResolveConfusedSongs& ask);

  /// Like Load, from bytes that were not saved in the file. The jukebox then differs from its file.
  ///
  /// \param path the path of the jukebox's file; empty for none
  /// \returns null on failure; then Problem() says briefly what is wrong with the bytes
  std::unique_ptr<LoadedJukebox> LoadUnsaved(std::string_view bytes, const std::string& path,
                                             const clsMain& library,
                                             const ResolveConfusedSongs& ask);

  /// Whether closing the jukebox would lose something: the jukebox was never saved, its file is
  /// gone, or its content differs from its file.
  bool HasUnsavedChanges(const FolderTree& folders, const clsMain& library) const;

  /// The content that the file has.
  SavedContent& Content() noexcept { return content_; }
  const SavedContent& Content() const noexcept { return content_; }

 private:
  /// \throws JukeboxFileError, std::bad_alloc; nothing has changed in that case
  std::unique_ptr<LoadedJukebox> Decode(std::string_view bytes, const std::string& path,
                                        const clsMain& library, const ResolveConfusedSongs& ask);

  std::string path_;
  std::string location_;
  std::string problem_;
  /// Songs that the file names but the library lacked when the file was loaded.
  SongNames absent_names_;
  SongPlaces absent_places_;
  SavedContent content_;
};

}  // namespace tallow
