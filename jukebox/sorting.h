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

#include "jukebox/folder_tree.h"

namespace tallow {

class Jukebox;
class TagCache;
class clsMain;

/// Some songs could not be filed wholly. Raised once, when everything else has been filed.
class FilingError : public std::runtime_error {
 public:
  /// \param problems at least one, each a sentence that names the file or the entry
  explicit FilingError(std::vector<std::string> problems);
  const std::vector<std::string>& problems() const noexcept { return problems_; }

 private:
  std::vector<std::string> problems_;
};

/// Is told how many of the songs to be filed have been, again and again, and says whether to go on.
using FilingProgress = std::function<bool(std::size_t filed, std::size_t songs)>;

/// "Filed 12 of 50 songs".
std::string FilingLine(std::size_t filed, std::size_t songs);

/// What is said of songs that were not filed because the user did not want to wait: "The filing was cancelled . . ."
std::string FilingCancelledLine();

/// Which folders FillAutomaticFolders fills beside the others.
enum FillMode : int {
  kFillAllButNew = 1,  ///< leaves "New" as it is
  kFillNewToo = 2,
};

/// Files every song of the library that is not yet in a jukebox's "All Songs" into its automatic
/// folders: "All Songs", "New", "Artist", "Genre", "Year" and the decades.
///
/// A folder that a jukebox does not have is not filled; without "All Songs" nothing is. Artist and
/// year folders take every song whose artist or year begins with the folder's text, in any case,
/// the first such folder in the tree's order; a new one is made when there is none. A song already
/// in "All Songs" is not touched, so folders that the user has rearranged stay as they are. Every
/// jukebox visited counts as changed.
///
/// \param mode      see FillMode; any value but kFillAllButNew fills "New"
/// \param skip_sort false: the library is sorted by record number first
/// \param caption   empty: every open jukebox; else only the one with this caption
/// \param windows   the open jukeboxes, in the order they were opened; the last is visited first
/// \param found_tags tags that are known already, sealed; null for none. The others are read from
///         the files
/// \param progress  is called after each song, and while one is waited for; may be empty. A song that is not
///                  filed when it ends the filing is in no folder, so the next filing takes it, as it does
///                  with songs of a drive that does not answer
/// \returns false when `progress` ended the filing
/// \throws FilingError after all songs are filed: songs whose tag has a year that is no number
///         (they lie in no year and no decade folder), entries of "All Songs" whose number the
///         library has not
bool FillAutomaticFolders(int mode, bool skip_sort, std::string_view caption, clsMain& library,
                          std::span<Jukebox* const> windows, const TagCache* found_tags = nullptr,
                          const FilingProgress& progress = {});

/// Marks the songs to be filed: those that are there, not missing and not away, whose number no entry of a folder has.
///
/// \param flags    one element for each row of the library, element 0 being row 1
/// \param problems is told each entry whose number is no row of the library
void MarkSongsToFile(const Folder& folder, const clsMain& library, std::vector<char>& flags,
                     std::vector<std::string>& problems);

/// Gives the songs of a folder their labels (position, full stop, two blanks, file name) and rank
/// pictures. Removes the songs whose file is missing and that nothing is remembered of, and the entries whose number the library has
/// not; behind each of the latter one entry is left unlabelled in this pass. A missing song that is
/// remembered keeps its entry, without a label (clsMain::IsHidden): it may come back.
///
/// Cost: O(entries), without touching a file.
///
/// \returns the places, from 0, that the removed entries had
std::vector<std::int32_t> RefreshFolderList(Folder& folder, const clsMain& library);

/// The name of a genre number; empty for a number that has none. The numbers and names are those of
/// MP3TagEditor::GenraLookupByID.
std::string_view GenreNameFromID(std::int32_t id) noexcept;

/// Turns the brackets of a tag text into blanks and removes the blanks at both ends. Folder texts
/// take part in wildcard patterns, where a bracket would open a list of characters.
void StripBrackets(std::string& text);

}  // namespace tallow
