// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "jukebox/filing_tags.h"
#include "jukebox/folder_tree.h"

namespace tallow {

class Jukebox;
class TagCache;
class clsMain;

/// Thrown when some songs could not be filed completely. Thrown once, after everything else is
/// filed.
class FilingError : public std::runtime_error {
 public:
  /// \param problems at least one; each is a sentence that names the file or the entry
  explicit FilingError(std::vector<std::string> problems);
  const std::vector<std::string>& problems() const noexcept { return problems_; }

 private:
  std::vector<std::string> problems_;
};

/// Progress callback, called repeatedly with the number of songs filed so far and the number of
/// songs to file. Returns false to cancel the filing.
using FilingProgress = std::function<bool(std::size_t filed, std::size_t songs)>;

/// "Filed 12 of 50 songs".
std::string FilingLine(std::size_t filed, std::size_t songs);

/// The status text for songs that were not filed because the user cancelled: "Filing was
/// cancelled; ..."
std::string FilingCancelledLine();

/// Which folders FillAutomaticFolders fills besides the other automatic folders.
enum FillMode : int {
  kFillAllButNew = 1,  ///< leaves "New" as it is
  kFillNewToo = 2,
};

/// Files every song of the library that is not yet in a jukebox's "All Songs" into the automatic
/// folders of that jukebox: "All Songs", "New", "Artist", "Genre", "Year" and the decades.
///
/// Folders that a jukebox does not have are skipped; without "All Songs" no song is filed. A song
/// is filed into the artist folder whose text equals the song's artist, else into the first, in
/// tree order, whose text matches the beginning of the artist; both ignore case. Year folders work
/// in the same way. If no folder matches, a new one is added. These are the rules of the classic
/// style; the switches of the library (Switches) select others, and add "Album". A song already in
/// "All Songs" is not filed again, so folders that the user has rearranged stay unchanged. Every
/// jukebox visited becomes dirty.
///
/// \param mode      see FillMode; any value but kFillAllButNew fills "New"
/// \param skip_sort false: first sorts the library by record number
/// \param caption   empty: all open jukeboxes; otherwise only the one with this caption
/// \param windows   the open jukeboxes, in the order they were opened; visited from last to first
/// \param found_tags sealed cache of tags already read; null for none. Other tags are read from the
///   files
/// \param progress  called after each song and while waiting for one; may be empty. Songs not yet
///   filed when it cancels are in no folder, so the next filing includes them. The same holds for
///   songs on a drive that does not answer
/// \param read_tags reads newer tags with the switch `newer_tags`; empty: ID3v1 tags are used
/// \returns false when `progress` cancelled the filing
/// \throws FilingError after all songs are filed, if a tag has a year that is not a number (the
/// song is then in no year or decade folder), or if an entry of "All Songs" has a number that is
/// not in the library
bool FillAutomaticFolders(int mode, bool skip_sort, std::string_view caption, clsMain& library,
                          std::span<Jukebox* const> windows, const TagCache* found_tags = nullptr,
                          const FilingProgress& progress = {}, const ReadTags& read_tags = {});

/// Marks the songs to be filed: songs that are present and reachable and have no entry in the given
/// folder.
///
/// \param flags    one element for each row of the library, element 0 being row 1
/// \param problems receives a sentence for each entry whose number is not a row of the library, up
///                 to a limit, and one for the rest
void MarkSongsToFile(const Folder& folder, const clsMain& library, std::vector<char>& flags,
                     std::vector<std::string>& problems);

/// Updates the labels (position, full stop, two blanks, file name) and rank icons of a folder's
/// songs. Removes missing songs that are not remembered, and entries whose number is not in the
/// library. After each entry of the latter kind, one entry stays unlabelled in this pass. A
/// remembered missing song keeps its entry, without a label (clsMain::IsHidden), because it may
/// return.
///
/// Cost: O(entries), without file access.
///
/// \returns the positions, from 0, of the removed entries
std::vector<std::int32_t> RefreshFolderList(Folder& folder, const clsMain& library);

/// Returns the name of a genre number; empty if the number has none. The table is that of
/// MP3TagEditor::GenraLookupByID.
std::string_view GenreNameFromID(std::int32_t id) noexcept;

/// Replaces brackets in a tag text by blanks and trims blanks at both ends. Folder texts are used
/// as wildcard patterns, where a bracket would start a character list.
void StripBrackets(std::string& text);

}  // namespace tallow
